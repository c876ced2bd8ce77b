// Large pictures in motion: the thumb of a win, and the frog that eats bugs over its board.
#include <cmath>

#include "art/catalogue.h"
#include "art/frog_model.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
constexpr int kBends = 6;  // poses between a fist and a thumb held up

// The fist, its thumb from 0 (folded) to kBends (up). Rendered once each; frames move it.
const Canvas& thumb_pose(int bend) {
  static Memo<int> poses;
  return poses.get(bend, 512, 512, [=](Canvas& canvas) {
    float up = static_cast<float>(bend) / kBends;
    Vec skin = linear(kFrogGreen), light = linear({0.72, 0.95, 0.36});
    ClayScene scene;
    ClayPart palm;
    palm.blend = 0.30f;
    palm.limb({0.2f, -1.9f, 0.4f}, 0.62f, {0.1f, -0.6f, 0.1f}, 0.74f, skin);
    palm.ball({0.0f, 0.0f, 0}, {1.22f, 1.05f, 0.80f}, skin);
    scene.push_back(palm);
    for (int i = 0; i < 3; i++) {
      // Fingers curl over the palm towards us.
      float y = 0.52f - 0.56f * static_cast<float>(i), in = 0.06f * static_cast<float>(i);
      ClayPart finger;
      finger.blend = 0.16f;
      finger.limb({-1.05f + in, y, -0.15f}, 0.33f, {-0.85f + in, y - 0.02f, -0.80f}, 0.32f, skin);
      finger.limb({-0.85f + in, y - 0.02f, -0.80f}, 0.31f, {0.30f - in, y - 0.04f, -0.95f}, 0.28f,
                  skin);
      finger.ball({0.42f - in, y - 0.04f, -0.92f}, {0.40f, 0.34f, 0.30f}, light);
      scene.push_back(finger);
    }
    ClayPart thumb;
    thumb.blend = 0.22f;
    Vec root{0.62f, 0.55f, -0.35f};
    Vec knuckle = lerp({0.25f, 1.05f, -0.85f}, {0.70f, 1.45f, -0.35f}, up);
    Vec tip = lerp({-0.55f, 0.92f, -0.95f}, {0.52f, 2.35f, -0.30f}, up);
    thumb.limb(root, 0.52f, knuckle, 0.42f, skin);
    thumb.limb(knuckle, 0.42f, tip, 0.36f, skin);
    thumb.ball(tip, {0.56f, 0.60f, 0.50f}, light);
    scene.push_back(thumb);
    clay_draw(canvas, scene, {14, 66, {256, 244}}, {0.03, 0.18, 0.05}, 3.5f);
  });
}

// A plate for the number, over the wrist.
void number_plate(cairo_t* c, double grow) {
  cairo_save(c);
  cairo_translate(c, 256, 347);
  cairo_scale(c, grow, grow);
  for (double side : {-1.0, 1.0})
    puff(c,
         polygon({{side * 150, -30},
                  {side * 222, -16},
                  {side * 200, 16},
                  {side * 222, 50},
                  {side * 150, 38}}),
         {0.66, 0.08, 0.08}, side * 180, 0, 70, 4, 0);
  puff(c, round_rect(-168, -56, 336, 106, 22), kRed, 0, 0, 190, 5, 0.15);
  stroke(c, round_rect(-156, -45, 312, 84, 14), kYellow, 3.5, 0.9);
  WordStyle style{Face::kChunky, 62, kWhite, {1.0, 0.90, 0.40}, {0.40, 0.03, 0.03}, 7};
  words(c, "TICKETS!", style, 0, 92, 300);
  cairo_restore(c);
}

void sparkles(cairo_t* c, double turn, double strength) {
  const Point at[] = {{110, 90}, {400, 70}, {440, 210}, {86, 220}, {330, 30}, {170, 40}};
  for (int i = 0; i < 6; i++) {
    double k = strength * (0.5 + 0.5 * std::sin(kTau * (turn + i * 0.37)));
    if (k < 0.12) continue;
    fill(c, star(at[i].x, at[i].y, 26 * k, 5 * k, 4), {1, 0.96, 0.5});
    fill(c, star(at[i].x, at[i].y, 17 * k, 3.4 * k, 4), kWhite);
  }
}

void draw_thumb(const Cell& cell, int bend, double y, double scale, double tilt, double plate,
                double sparkle_turn, double sparkle) {
  cairo_t* c = cell.ctx;
  soft_spot(c, 256, 250, 236 * scale, 236 * scale, {1, 1, 0.55}, 0.55 * scale);
  cairo_save(c);
  cairo_translate(c, 256, 330 + y);
  cairo_rotate(c, tilt);
  cairo_scale(c, scale, scale);
  cairo_translate(c, -256, -330);
  paint_canvas(c, thumb_pose(bend), 0, 0);
  cairo_restore(c);
  if (plate > 0.02) number_plate(c, plate);
  sparkles(c, sparkle_turn, sparkle);
}

void draw_thumb_up(const Cell& cell) {
  // The fist jumps up, swings, and the thumb springs out; it ends as the idle sheet begins.
  double t = cell.run();
  double in = clamp01(t / 0.26);
  double over = 1 + 0.18 * std::sin(kTau / 2 * clamp01(t / 0.36)) * (1 - in) - 0;
  double scale = (0.25 + 0.75 * smooth(0, 1, in)) * over;
  double thumb = clamp01((t - 0.34) / 0.18);
  double spring = t > 0.5 ? std::exp(-9 * (t - 0.5)) * std::sin(28 * (t - 0.5)) : 0;
  double shake = t > 0.24 && t < 0.40 ? std::sin(kTau * (t - 0.24) / 0.16) : 0;
  draw_thumb(cell, static_cast<int>(std::lround(thumb * kBends)),
             60 * (1 - smooth(0, 1, in)) - 16 * spring, scale * (1 + 0.05 * spring),
             -0.16 * shake + 0.10 * spring, 0.2 + 0.8 * smooth(0.0, 0.30, t), 0,
             smooth(0.45, 0.65, t));
}

void draw_thumb_idle(const Cell& cell) {
  double s = 0.5 - 0.5 * std::cos(kTau * cell.turn());
  draw_thumb(cell, kBends, -9 * s, 1 + 0.03 * s, 0.05 * s, 1, 0.5 * s, 1);
}

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
    FrogPose pose;
    pose.yaw_deg = 180;
    pose.rear_deg = 30;
    pose.stand = 1;
    pose.look_up = 0.15f;
    pose.mouth = static_cast<float>(s.mouth) / 4;
    // Seen from the front, its left is our right.
    pose.head_deg = -40 * static_cast<float>(s.gaze);
    pose.blink = s.shut ? 0.92f : 0.0f;
    pose.breathe = 0.6f * static_cast<float>(s.gulp);
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
    // The first rows take longest, so that two threads end at about the same time.
    sheet("anim_frog_attract.png", 4096, 4096, 8, 8, 63, Play::kOnce, draw_attract_frog),
    sheet("anim_thumbs_up.png", 4096, 4096, 8, 8, 58, Play::kOnce, draw_thumb_up),
    sheet("anim_thumbs_idle.png", 4096, 2048, 8, 4, 28, Play::kLoop, draw_thumb_idle, Twin::kSwing),
};

}  // namespace

const Family kAttractFamily{"art/attract.cpp", kRows};

}  // namespace art
