// The frog that eats bugs over its board in the attract sequence.
#include <cmath>

#include "art/catalogue.h"
#include "art/frog_model.h"
#include "art/palette.h"

namespace art {

namespace {

// The attract frog's poses: mouth in quarters, eyes to the left, ahead or to the right, or shut.
struct Sitting {
  int mouth;  // 0 to 4
  int gaze;   // -1, 0, 1
  bool shut;
  int gulp;  // 0 to 2
};

const Canvas& sitting_frog(Sitting s) {
  static Memo<int> poses;
  int key = s.mouth + 5 * (s.gaze + 1) + 15 * (s.shut ? 1 : 0) + 30 * s.gulp;
  return poses.get(key, 512, 512, [=](Canvas& canvas) {
    FrogPose pose = frog_upright();
    pose.yaw_deg = 180;
    pose.mouth = static_cast<float>(s.mouth) / 4;
    ClayScene scene = frog_scene(pose, kPlayerFrog);
    clay_draw(canvas, scene, {34, 84, {256, 446}}, {0.03, 0.18, 0.05}, 3.0f);
  });
}

constexpr Point kMouth{256, 372};

void fly(cairo_t* c, Point p, double turn, double size, Colour body) {
  cairo_save(c);
  cairo_translate(c, p.x, p.y);
  cairo_scale(c, size, size);
  double flap = 0.75 + 0.25 * std::sin(kTau * turn * 16);
  for (double side : {-1.0, 1.0}) {
    cairo_save(c);
    cairo_scale(c, side, flap);
    puff(c, leaf({3, -4}, {34, -30}, 11, 0), {0.82, 0.94, 1.0}, 18, -18, 24, 1.5, 0.2);
    cairo_restore(c);
  }
  puff(c, ellipse(0, 4, 13, 16), body, 0, 4, 18, 2, 0.5);
  eye(c, -7, -10, 7.5, {0, 0.3});
  eye(c, 7, -10, 7.5, {0, 0.3});
  cairo_restore(c);
}

void tongue(cairo_t* c, Point tip) {
  Point mid{(kMouth.x + tip.x) / 2, (kMouth.y + tip.y) / 2 + 16};
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  struct Pass {
    Colour colour;
    double width;
  };
  for (Pass p :
       {Pass{{0.45, 0.05, 0.12}, 24}, Pass{{0.95, 0.36, 0.44}, 17}, Pass{{1.0, 0.62, 0.66}, 6}}) {
    set(c, p.colour);
    cairo_set_line_width(c, p.width);
    cairo_move_to(c, kMouth.x, kMouth.y);
    cairo_curve_to(c, mid.x, mid.y, mid.x, mid.y, tip.x, tip.y);
    cairo_stroke(c);
  }
  puff(c, circle(tip.x, tip.y, 16), {0.98, 0.42, 0.50}, tip.x, tip.y, 17, 3, 0.4);
}

// A bug comes, is caught at `at` and is swallowed; times are parts of the run.
struct Meal {
  double comes, caught;
  Point from, at;
  Colour body;
};
constexpr Meal kMeals[] = {{0.00, 0.20, {-40, 60}, {92, 150}, {0.95, 0.20, 0.14}},
                           {0.26, 0.46, {560, 40}, {424, 120}, {0.40, 0.34, 0.95}},
                           {0.52, 0.74, {-40, 220}, {104, 84}, {1.0, 0.76, 0.10}}};
constexpr double kOut = 0.035, kBack = 0.05, kSwallow = 0.07;

void draw_attract_frog(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // The first frame stands for a second before the sheet runs, and the last one is like it.
  double t = cell.run();
  Sitting s{1, 0, false, 0};
  double reach = -1;
  const Meal* meal = nullptr;
  for (const Meal& m : kMeals) {
    if (t < m.comes || t > m.caught + kOut + kBack + kSwallow) continue;
    meal = &m;
    s.gaze = m.at.x < 256 ? -1 : 1;
    double u = t - (m.caught - kOut);
    if (u > -0.02 && u < kOut + kBack) s.mouth = 4;
    if (u >= 0 && u <= kOut) reach = u / kOut;
    if (u > kOut && u <= kOut + kBack) reach = 1 - (u - kOut) / kBack;
    if (u > kOut + kBack) {
      s.mouth = 0;
      s.gaze = 0;
      s.shut = true;
      s.gulp = u - kOut - kBack < kSwallow / 2 ? 2 : 1;
    }
  }
  if (t > 0.88 && t < 0.95) s.mouth = 2;
  soft_spot(c, 256, 470, 214, 36, kBlack, 0.45);
  paint_canvas(c, sitting_frog(s), 0, 0);
  if (!meal) return;
  bool held = t > meal->caught;
  Point tip = mix(kMouth, meal->at, std::fmax(0, reach));
  if (reach > 0.02) tongue(c, tip);
  if (held) {
    if (reach > 0.02) fly(c, tip, t, 1 - 0.5 * (1 - reach), meal->body);
    return;
  }
  double u = clamp01((t - meal->comes) / (meal->caught - meal->comes));
  Point p = mix(meal->from, meal->at, smooth(0, 0.85, u));
  p.x += 12 * std::sin(kTau * u * 3) * (1 - u);
  p.y += 22 * std::sin(kTau * u * 2) * (1 - u);
  // It flies in from beside the cell; inside it, nothing may be cut, so it grows as it comes.
  p.x = std::fmin(512 - 44, std::fmax(44, p.x));
  p.y = std::fmax(44, p.y);
  if (u > 0) fly(c, p, t, 0.15 + 0.85 * smooth(0, 0.30, u), meal->body);
}

constexpr CatalogueRow kRows[] = {
    sheet("anim_frog_attract.png", 4096, 4096, 8, 8, 63, Play::kOnce, draw_attract_frog),
};

}  // namespace

const Family kAttractFrogFamily{"art/attract_frog.cpp", kRows};

}  // namespace art
