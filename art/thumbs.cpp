// The thumb of a win, raised over its ribbon; the game draws the number on it.
#include <algorithm>
#include <cmath>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
constexpr Colour kOutline{0.03, 0.18, 0.05};
constexpr int kSteps = 24;         // poses between a fist and a raised thumb
constexpr int kPoses = 9;          // more poses: the thumb bends back as it springs up
constexpr int kSide = 340;         // of the picture of a pose, pixels
constexpr Point kWrist{170, 292};  // pivot of the hand in it

// The hand, its thumb from 0 (folded over the fist) to kSteps (up) and beyond. Each pose is
// rendered once; the frames move it.
const Canvas& hand_pose(int pose) {
  static Memo<int> poses;
  return poses.get(pose, kSide, kSide, [=](Canvas& canvas) {
    const float up = static_cast<float>(pose) / kSteps;
    const float fold = std::min(1.0f, up), back = std::max(0.0f, up - 1);
    const float grip = 0.06f * step_s(0, 1, up);  // the fist closes as the thumb goes up
    Vec skin = linear(kFrogGreen), light = linear({0.84, 1.0, 0.36});
    Vec belly = linear({0.62, 0.92, 0.30});
    ClayScene scene;
    ClayPart palm;
    palm.blend = 0.42f;
    palm.gloss = 0.9f;
    palm.metal = 0.15f;
    palm.ball({0.10f, 0.0f, 0.05f}, {1.42f, 1.22f, 0.86f}, skin);
    palm.ball({0.78f, 0.20f, -0.25f}, {0.72f, 0.86f, 0.66f}, skin);
    palm.limb({0.10f, -1.0f, 0.1f}, 0.82f, {0.10f, -1.75f, 0.15f}, 0.72f, skin);
    palm.paint = [=](Vec p, Vec c) {
      // Spots on the back of the hand.
      struct Spot {
        float x, y, r;
      };
      for (Spot s :
           {Spot{1.22f, -0.35f, 0.20f}, Spot{0.90f, -0.82f, 0.14f}, Spot{1.30f, 0.38f, 0.13f}})
        c = lerp(linear({0.20, 0.62, 0.12}), c,
                 step_s(s.r - 0.03f, s.r + 0.03f, std::hypot(p.x - s.x, p.y - s.y)));
      return c;
    };
    scene.push_back(palm);
    for (int i = 0; i < 3; i++) {
      // Fingers come round from the back and lie over the palm, each with its pad.
      const float n = static_cast<float>(i), y = 0.66f - 0.68f * n, in = 0.10f * n * n;
      ClayPart finger;
      finger.blend = 0.20f;
      finger.gloss = 0.9f;
      finger.metal = 0.15f;
      Vec knuckle{-1.30f + in + grip, y, -0.30f}, bend{-0.98f + in + grip, y - 0.03f, -0.92f};
      finger.limb({-0.9f, y, 0.25f}, 0.42f, knuckle, 0.42f, skin);
      finger.limb(knuckle, 0.42f, bend, 0.40f, skin);
      finger.limb(bend, 0.38f, {0.16f - in + grip, y - 0.05f, -1.02f}, 0.34f, belly);
      finger.ball({0.34f - in + grip, y - 0.05f, -1.00f}, {0.52f, 0.42f, 0.40f}, light);
      scene.push_back(finger);
    }
    ClayPart thumb;
    thumb.blend = 0.30f;
    thumb.gloss = 0.9f;
    thumb.metal = 0.15f;
    Vec root{0.80f, 0.52f, -0.42f};
    Vec knuckle = lerp({0.62f, 1.18f, -0.92f}, {0.72f, 1.42f, -0.45f}, fold) +
                  Vec{0.30f * back, 0.05f * back, 0};
    Vec tip = lerp({-0.52f, 1.14f, -1.10f}, {0.56f, 2.20f, -0.40f}, fold) +
              Vec{1.30f * back, 0.10f * back, 0};
    // It swings out in an arc on its way.
    tip = tip + Vec{0.20f, 0.25f, -0.35f} * std::sin(kPi * fold);
    thumb.limb(root, 0.62f, knuckle, 0.50f, skin);
    thumb.limb(knuckle, 0.48f, tip, 0.42f, skin);
    Vec along = unit(tip - knuckle);
    thumb.ball(tip + along * 0.10f, {0.62f, 0.64f, 0.54f}, light);
    scene.push_back(thumb);
    // A cuff of gold with stones.
    ClayPart cuff;
    cuff.blend = 0.05f;
    cuff.gloss = 1.2f;
    cuff.glow = 0.30f;
    ClayPart stones;
    stones.blend = 0.01f;
    stones.gloss = 1.3f;
    stones.metal = 0.25f;
    const int links = 20;
    auto round = [](float a, float y, float r) {
      return Vec{0.10f + r * std::sin(a), y, 0.12f - r * std::cos(a)};
    };
    for (int i = 0; i < links; i++) {
      float a = static_cast<float>(i) * 2 * kPi / links, b = a + 2 * kPi / links;
      cuff.limb(round(a, -1.44f, 0.80f), 0.30f, round(b, -1.44f, 0.80f), 0.30f, linear(kGold));
      for (float y : {-1.16f, -1.74f})
        cuff.limb(round(a, y, 0.90f), 0.13f, round(b, y, 0.90f), 0.13f, linear(kGold));
      if (i % 2 == 0)
        stones.ball(round(a, -1.44f, 1.08f), {0.15f, 0.15f, 0.15f},
                    linear(i % 4 ? Colour{0.20, 0.62, 1.0} : Colour{1.0, 0.14, 0.24}));
    }
    scene.push_back(cuff);
    scene.push_back(stones);
    clay_draw(canvas, scene, {12, 57, {164, 206}}, kOutline, 3.5f);
  });
}

// A sun behind the hand, with opaque rays, which need no blending.
void rays(cairo_t* c, double grow, double turn) {
  if (grow < 0.05) return;
  const double x = 256, y = 188, outer = 170 * grow, inner = 122 * grow;
  Path burst = star(x, y, outer, inner, 14, turn * kTau / 14);
  stroke(c, burst, {0.62, 0.30, 0.02}, 10);
  cairo_pattern_t* g = cairo_pattern_create_radial(x, y, 30 * grow, x, y, outer);
  cairo_pattern_add_color_stop_rgb(g, 0, 1.0, 1.0, 0.80);
  cairo_pattern_add_color_stop_rgb(g, 0.55, 1.0, 0.90, 0.36);
  cairo_pattern_add_color_stop_rgb(g, 1, 1.0, 0.62, 0.06);
  burst(c);
  cairo_set_source(c, g);
  cairo_fill(c);
  cairo_pattern_destroy(g);
  Path core = star(x, y, outer * 0.78, inner * 0.74, 14, (0.5 - turn) * kTau / 14);
  fill(c, core, {1.0, 0.97, 0.66});
}

// Stars that fly up from behind the ends of the ribbon and fall beside it, twice a turn. `since` is
// the turn at which the first one flew.
void fountain(cairo_t* c, double turn, double since) {
  constexpr int kStars = 9;
  const Colour colours[] = {kYellow, kPink, {0.36, 0.80, 1.0}, kWhite};
  for (double side : {-1.0, 1.0}) {
    Rng rng{side < 0 ? 5u : 23u};
    for (int i = 0; i < kStars; i++) {
      const double from = rng.range(110, 170), to = from + rng.range(-10, 76);
      const double height = rng.range(120, 270), size = rng.range(12, 20);
      const double u = std::fmod(2 * turn + static_cast<double>(i) / kStars, 1);
      if (u > 2 * (turn - since)) continue;
      const double x = 256 + side * (from + (to - from) * u), y = 306 - height * 4 * u * (1 - u);
      const double r = size * std::fmin(1.0, 4 * (1 - u));
      const Path shape = star(x, y, r, r * 0.5, 5, kTau * side * u);
      stroke(c, shape, {0.24, 0.06, 0.10}, 5);
      fill(c, shape, colours[i % 4]);
    }
  }
}

struct Show {
  double pose = 0;             // of the thumb; 1 is up
  double x = 0, y = 0;         // displacement of the hand, pixels
  double tilt = 0;             // to the right, radians
  double scale = 1, tall = 1;  // of the hand; tall above 1 stretches it
  double sun = 1, sun_turn = 0;
  double ribbon = 1, gleam = 0;
  double shout = 1;         // size of the word
  double turn = 0;          // of lamps and stars
  double stars_since = -1;  // the turn of the first star
};

// Lamps round the ribbon's band: light runs along them.
void lamps(cairo_t* c, double turn) {
  constexpr int kAcross = 12, kDown = 2, kAll = 2 * (kAcross + kDown);
  for (int i = 0; i < kAll; i++) {
    const int half = i % (kAcross + kDown);
    Point p =
        half < kAcross ? Point{-165.0 + 30 * half, -60} : Point{180, -22.0 + 38 * (half - kAcross)};
    if (i != half) p = {-p.x, -6 - p.y};
    const double lit = 0.5 + 0.5 * std::cos(kTau * (i / 4.0 - 3 * turn));
    if (lit > 0.4) soft_spot(c, p.x, p.y, 15, 15, {1, 0.92, 0.40}, 0.8 * lit);
    fill(c, circle(p.x, p.y, 7.5), {0.32, 0.10, 0.0});
    fill(c, circle(p.x, p.y, 5.5), mix({0.80, 0.34, 0.02}, {1, 1, 0.84}, lit));
  }
}

// Satin behind the number, calm and dark enough for white digits.
void ribbon(cairo_t* c, const Show& s) {
  cairo_save(c);
  cairo_translate(c, 256, 345);
  cairo_scale(c, s.ribbon, s.ribbon);
  for (double side : {-1.0, 1.0}) {
    puff(c,
         polygon({{side * 140, -26},
                  {side * 236, -8},
                  {side * 212, 26},
                  {side * 236, 62},
                  {side * 140, 50}}),
         {0.60, 0.04, 0.10}, side * 180, 0, 80, 4.5, 0.1);
    fill(c, polygon({{side * 140, 50}, {side * 178, 58}, {side * 178, 40}}), {0.30, 0.0, 0.04});
  }
  Path band = round_rect(-180, -60, 360, 114, 26);
  stroke(c, band, {0.28, 0.10, 0.0}, 13);
  stroke(c, band, kGold, 8);
  fill_linear(c, band, {0, -60}, {0.86, 0.10, 0.14}, {0, 54}, {0.52, 0.02, 0.08});
  cairo_save(c);
  band(c);
  cairo_clip(c);
  // A sheen along the upper edge, and sometimes a gleam that crosses the satin.
  fill(c, ellipse(0, -60, 190, 20), {1.0, 0.45, 0.42}, 0.55);
  if (s.gleam > 0 && s.gleam < 1) {
    double x = -240 + 480 * s.gleam;
    fill(c, polygon({{x - 26, -60}, {x + 8, -60}, {x - 22, 54}, {x - 56, 54}}), {1.0, 0.62, 0.55},
         0.28);
  }
  cairo_restore(c);
  lamps(c, s.turn);
  cairo_translate(c, 0, 100);
  cairo_scale(c, s.shout, s.shout);
  WordStyle style{Face::kChunky, 66, kWhite, {1.0, 0.86, 0.24}, {0.36, 0.03, 0.04}, 8};
  words(c, "WINNER!", style, 0, 0, 320);
  cairo_restore(c);
}

void draw_show(const Cell& cell, const Show& s) {
  cairo_t* c = cell.ctx;
  rays(c, s.sun, s.sun_turn);
  fountain(c, s.turn, s.stars_since);
  int pose = std::clamp(static_cast<int>(std::lround(s.pose * kSteps)), 0, kSteps + kPoses);
  cairo_save(c);
  cairo_translate(c, 252 + s.x, 282 + s.y);
  cairo_rotate(c, s.tilt);
  cairo_scale(c, s.scale / std::sqrt(s.tall), s.scale * s.tall);
  paint_canvas(c, hand_pose(pose), -kWrist.x, -kWrist.y);
  cairo_restore(c);
  if (s.ribbon > 0.02) ribbon(c, s);
}

// An oscillation that starts with 0 at a and dies away.
double spring(double t, double a, double waves, double decay) {
  double u = t - a;
  return u <= 0 ? 0 : std::exp(-decay * u) * std::sin(kTau * waves * u);
}

// The show continues with the frame that the idle sheet would have reached by itself, so the last
// frames of the first sheet must move like the idle sheet.
constexpr double kUpSeconds = 1.25, kIdleSeconds = 1.5;

Show idle_show(double turn) {
  const double s = 0.5 - 0.5 * std::cos(kTau * turn);
  Show show;
  show.pose = 1 + 0.18 * s;
  show.y = -7 * s;
  show.tilt = 0.07 * std::sin(kTau * turn);
  show.tall = 1 + 0.035 * s;
  show.sun = 1 + 0.02 * s;
  show.sun_turn = 2 * turn;
  show.gleam = (turn - 0.25) / 0.5;
  show.shout = 1 + 0.05 * std::sin(2 * kTau * turn);
  show.turn = turn;
  return show;
}

void draw_thumb_up(const Cell& cell) {
  // The fist swings up from below, dips to gather strength, and the thumb springs out. The number
  // grows over the first quarter, and the ribbon with it.
  const double t = cell.run();
  const double in = clamp01(t / 0.24), come = 1 - (1 - in) * (1 - in) * (1 - in);
  const double gather = smooth(0.24, 0.36, t) * (1 - smooth(0.36, 0.42, t));
  const double pop = clamp01((t - 0.37) / 0.08), jolt = spring(t, 0.40, 5.5, 9);
  const Show idle = idle_show(cell.turn() * kUpSeconds / kIdleSeconds);
  const double calm = smooth(0.60, 0.90, t);  // how far it already moves like the idle sheet
  Show s;
  s.scale = 0.30 + 0.70 * come + 0.10 * spring(t, 0.12, 3, 9) + 0.05 * jolt;
  s.x = -30 * (1 - come) * std::cos(2.2 * in);
  s.y = 50 * (1 - come) + 16 * gather - 12 * jolt + calm * idle.y;
  s.tilt = -1.1 * (1 - come) + 0.16 * spring(t, 0.10, 3, 8) - 0.15 * gather + 0.10 * jolt +
           calm * idle.tilt;
  s.tall = 1 - 0.09 * gather + 0.10 * jolt + calm * (idle.tall - 1);
  s.pose = pop + (pop >= 1 ? 0.36 * spring(t, 0.45, 6, 8) : 0) + calm * (idle.pose - 1);
  s.sun = smooth(0.10, 0.24, t) * 0.62 + 0.38 * smooth(0.38, 0.46, t) +
          0.10 * spring(t, 0.44, 5, 9) + calm * (idle.sun - 1);
  s.sun_turn = idle.sun_turn - 1.5 * (1 - smooth(0, 1, t));
  s.ribbon = clamp01(0.15 + t / 0.27) + 0.05 * spring(t, 0.20, 4, 10);
  s.gleam = (t - 0.50) / 0.22;
  s.shout = 1 + calm * (idle.shout - 1);
  s.turn = idle.turn;
  // The thumb springs out, and the first stars with it; by the end all of them fly.
  s.stars_since = 0.40 * kUpSeconds / kIdleSeconds;
  draw_show(cell, s);
}

void draw_thumb_idle(const Cell& cell) {
  draw_show(cell, idle_show(cell.turn()));
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_THUMBS_UP, 512, 512, Play::kOnce, draw_thumb_up),
    sheet(SHEET_THUMBS_IDLE, 512, 512, Play::kLoop, draw_thumb_idle),
};

}  // namespace

const Family kThumbsFamily{"art/thumbs.cpp", kRows};

}  // namespace art
