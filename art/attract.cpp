// The thumb of a win.
#include <cmath>

#include "art/catalogue.h"
#include "art/clay.h"
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

constexpr CatalogueRow kRows[] = {
    sheet("anim_thumbs_up.png", 4096, 4096, 8, 8, 58, Play::kOnce, draw_thumb_up),
    sheet("anim_thumbs_idle.png", 4096, 2048, 8, 4, 28, Play::kLoop, draw_thumb_idle, Twin::kSwing),
};

}  // namespace

const Family kAttractFamily{"art/attract.cpp", kRows};

}  // namespace art
