// The turtles that carry frogs across the river: a single one, the gold one, and three in a row.
// They swim to the right.
#include <algorithm>
#include <cmath>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr int kStrokes = 25;  // frames of one paddle stroke; a sheet holds two
constexpr float kTurn = static_cast<float>(kTau);
constexpr float kDeg = kTurn / 360;
constexpr float kPitch = 46, kYaw = -10, kScale = 21.5f;
constexpr Point kPlace{61, 69};  // position of the shell's middle, at the water's level

struct Look {
  Vec plate, plate_deep, seam, rim, skin, spot;
  float metal, gloss;  // of the shell
};
const Look& look_of(bool gold) {
  static const Look plain{linear({0.96, 0.38, 0.18}),
                          linear({0.66, 0.12, 0.08}),
                          linear({1.0, 0.86, 0.50}),
                          linear({1.0, 0.80, 0.36}),
                          linear({0.68, 0.92, 0.30}),
                          linear({0.36, 0.70, 0.20}),
                          0.07f,
                          0.9f};
  // A wide white gloss would look like ivory.
  static const Look golden{linear({1.0, 0.74, 0.02}),
                           linear({0.84, 0.40, 0.0}),
                           linear({0.60, 0.29, 0.0}),
                           linear({1.0, 0.92, 0.34}),
                           linear({1.0, 0.80, 0.16}),
                           linear({0.90, 0.54, 0.02}),
                           0.16f,
                           0.3f};
  return gold ? golden : plain;
}

// One stroke: a strong pull back under water, then the way forward, raised. From 1 (ahead) to -1
// (behind).
struct Stroke {
  float at, lift;
};
Stroke stroke_at(float turn) {
  constexpr float kPull = 0.42f;
  float u = turn - std::floor(turn);
  if (u < kPull) {
    float v = u / kPull;
    return {std::cos(v * kTurn / 2), -0.25f * std::sin(v * kTurn / 2)};
  }
  float v = (u - kPull) / (1 - kPull);
  return {-std::cos(v * kTurn / 2), std::sin(v * kTurn / 2)};
}

class Turtle {
 public:
  Turtle(float turn, bool gold, float gleam) : turn_(turn), gleam_(gleam), look_(look_of(gold)) {
    // The pull lifts the bow, and the body a little later.
    float surge = std::sin(kTurn * (turn - 0.12f));
    ClayFrame tilt;
    tilt.x = unit({1, 0.045f * surge, 0});
    tilt.z = unit({0, 0.035f * std::cos(kTurn * turn), 1});
    tilt.y = cross(tilt.z, tilt.x);
    tilt.at = {0.06f * surge, 0.07f * std::sin(kTurn * (turn - 0.25f)), 0};
    body_ = frame_within(frame_yaw(-kYaw), tilt);
    shell();
    head();
    for (float side : {-1.0f, 1.0f}) {
      Stroke fore = stroke_at(turn - (side > 0 ? 0.04f : 0)), tip = stroke_at(turn - 0.09f);
      flipper({0.86f, 0.06f, side * 0.98f}, side, 16 + 44 * fore.at, 30 * (tip.at - fore.at),
              fore.lift, 1.42f, 0.36f);
      Stroke hind = stroke_at(turn + 0.5f);
      flipper({-1.06f, 0.04f, side * 0.84f}, side, -48 + 20 * hind.at, 0, 0.5f * hind.lift, 0.84f,
              0.30f);
    }
    ClayPart& tail = part(0.1f, 0.4f);
    float wag = 0.20f * std::sin(kTurn * (turn - 0.1f));
    tail.limb({-1.45f, 0.10f, 0}, 0.22f, {-2.05f, 0.08f, wag}, 0.07f, look_.skin);
    for (ClayPart& g : scene_)
      if (!g.glow) wet(g);
  }
  ClayScene& scene() { return scene_; }

 private:
  ClayPart& part(float blend, float gloss) {
    ClayPart& g = scene_.emplace_back();
    g.blend = blend;
    g.gloss = gloss;
    g.frame = body_;
    return g;
  }

  // Below the water's level everything looks bluish, and there is foam at the waterline.
  void wet(ClayPart& g) const {
    ClayFrame f = g.frame;
    float turn = turn_;
    g.paint = [f, turn, dry = g.paint](Vec p, Vec colour) {
      if (dry) colour = dry(p, colour);
      Vec w = f.out(p);
      float level = 0.02f + 0.03f * std::sin(3.1f * w.x + kTurn * turn) +
                    0.02f * std::sin(5.3f * w.z - kTurn * turn);
      Vec under = lerp(colour * Vec{0.45f, 0.85f, 1}, linear({0.12, 0.50, 0.78}), 0.34f);
      colour = lerp(under, colour, step_s(level - 0.06f, level, w.y));
      float foam = 1 - step_s(0.015f, 0.045f, std::fabs(w.y - level));
      return lerp(colour, {1.0f, 1.1f, 1.1f}, 0.75f * foam);
    };
  }

  Vec plates(Vec p) const {
    // Plates form a honeycomb: a seam is where the two nearest centres are equally far.
    constexpr float a = 0.96f;
    float best = 9, second = 9, from_x = 0, from_z = 0;
    for (int r = -2; r <= 2; r++) {
      float hz = a * 0.866f * static_cast<float>(r), half = 0.5f * static_cast<float>(r & 1);
      for (int q = -3; q <= 3; q++) {
        float dx = p.x - a * (static_cast<float>(q) + half), dz = p.z * 1.04f - hz;
        float d = std::hypot(dx, dz);
        if (d < best) {
          second = best;
          best = d;
          from_x = dx;
          from_z = dz;
        } else if (d < second) {
          second = d;
        }
      }
    }
    float edge = second - best;
    // Each plate is a cushion: lit at the upper left, dark at the other side.
    float lean = (-0.7f * from_x + 0.7f * from_z) / a, bevel = 1 - step_s(0.25f, 0.62f, edge);
    Vec c = lerp(look_.plate_deep, look_.plate, step_s(0.08f, 0.42f, edge + 0.35f * lean));
    c = lerp(c, lerp(look_.plate, {1, 0.95f, 0.75f}, 0.45f), bevel * step_s(0.10f, 0.42f, lean));
    return lerp(look_.seam, c, step_s(0.08f, 0.13f, edge));
  }

  void shell() {
    ClayPart& top = part(0.02f, look_.gloss);
    top.metal = look_.metal;
    top.soft = 0.25f;
    top.ball({0, 0.20f, 0}, {1.62f, 1.06f, 1.38f}, look_.plate);
    top.paint = [this_ = *this](Vec p, Vec) {
      Vec c = this_.plates(p);
      float band = std::fabs(p.x - 0.5f * p.z - this_.gleam_);
      return lerp(c, {1.5f, 1.35f, 0.7f}, 0.75f * (1 - step_s(0.10f, 0.34f, band)));
    };
    ClayPart& edge = part(0.05f, 0.8f);
    edge.metal = 0.6f * look_.metal;
    constexpr int kLinks = 24;
    auto on_rim = [](int i) {
      float a = static_cast<float>(i) * kTurn / kLinks;
      return Vec{1.66f * std::cos(a), 0.16f, 1.42f * std::sin(a)};
    };
    for (int i = 0; i < kLinks; i++) edge.limb(on_rim(i), 0.20f, on_rim(i + 1), 0.20f, look_.rim);
    const Vec notch = look_.plate_deep;
    edge.paint = [=](Vec p, Vec c) {
      float a = std::atan2(p.z / 1.42f, p.x / 1.66f) / kTurn * 18 + 36;
      return lerp(notch, c, step_s(0.05f, 0.13f, std::fabs(a - std::round(a))));
    };
  }

  void head() {
    float nod = 0.10f * std::sin(kTurn * (turn_ - 0.30f)), reach = 0.08f * std::cos(kTurn * turn_);
    const Vec c{2.12f + reach, 0.56f + nod, 0}, radii{0.62f, 0.54f, 0.60f};
    ClayPart& g = part(0.25f, 0.6f);
    g.soft = 0.6f;
    g.metal = 0.4f * look_.metal;
    g.limb({1.35f, 0.20f, 0}, 0.36f, {1.95f + reach, 0.42f + nod, 0}, 0.38f, look_.skin);
    g.ball(c, radii, look_.skin);
    const Vec mouth = look_.plate_deep * 0.5f, cheek = linear({1.0, 0.45, 0.35});
    g.paint = [=](Vec p, Vec skin) {
      Vec d = unit({(p.x - c.x) / radii.x, (p.y - c.y) / radii.y, (p.z - c.z) / radii.z});
      if (p.x < 1.8f) return skin;
      float away = std::fabs(d.z + 0.22f);
      if (std::fabs(d.y + 0.22f - 0.45f * away * away) < 0.07f && away < 0.55f) return mouth;
      return lerp(skin, cheek, 0.6f * step_s(0.92f, 0.97f, dot(d, unit({0.30f, 0.0f, -0.95f}))));
    };
    for (float side : {1.0f, -1.0f})
      scene_.push_back(clay_big_eye(body_, {c.x + 0.20f, c.y + 0.42f, side * 0.36f}, 0.33f,
                                    {0.62f, 0.50f, -0.60f}));
  }

  // An arm, and a flat blade that swings about the shoulder; its outer half lags by bend degrees.
  void flipper(Vec shoulder, float side, float sweep_deg, float bend_deg, float lift, float length,
               float width) {
    auto along = [&](float deg, float rise) {
      return unit({std::sin(deg * kDeg), rise, side * std::cos(deg * kDeg)});
    };
    const float rise = -0.10f + 0.34f * lift;
    Vec arm = along(sweep_deg, rise), blade = along(sweep_deg + bend_deg - 22, rise - 0.12f);
    Vec elbow = shoulder + arm * (0.45f * length);
    ClayPart& g = part(0.16f, 0.5f);
    g.soft = 0.6f;
    g.metal = 0.4f * look_.metal;
    // The blade turns: edge on through the air, flat against the water in the pull.
    ClayFrame own;
    own.x = blade;
    own.z = unit(cross(own.x, {0.35f * (lift > 0 ? -lift : 0.8f), 1, 0}));
    own.y = cross(own.z, own.x);
    own.at = elbow;
    g.frame = frame_within(body_, own);
    g.limb(own.in(shoulder), width * 0.85f, {0, 0, 0}, width * 0.72f, look_.skin);
    g.ball({0.30f * length, 0, 0}, {0.46f * length, 0.17f, width}, look_.skin);
    g.ball({0.58f * length, 0, 0.08f}, {0.24f * length, 0.13f, width * 0.62f}, look_.skin);
    const Vec spot = look_.spot;
    g.paint = [=](Vec p, Vec c) {
      float best = 9;
      const Vec spots[] = {{0.10f, 0, 0.10f}, {0.44f, 0, -0.10f}, {0.70f, 0, 0.08f}};
      for (const Vec& s : spots)
        best = std::min(best, std::hypot(p.x - s.x * length, p.z - s.z) / (0.26f - 0.10f * s.x));
      return lerp(spot, c, step_s(0.46f, 0.60f, best));
    };
  }

  ClayScene scene_;
  ClayFrame body_;
  float turn_, gleam_;
  Look look_;
};

// Foam round the shell, and ripples from the strokes and behind the turtle.
void draw_water(cairo_t* c, double turn) {
  soft_spot(c, 60, 77, 56, 34, {0.01, 0.08, 0.22}, 0.60);
  double gone = (1 - turn) * smooth(0, 0.15, turn);
  stroke(c, ellipse(61 - 4 * turn, 70, 43 + 9 * turn, 30 + 6 * turn), kFoam, 3.4 - 1.6 * turn,
         0.75 * gone);
  // The bow wave runs back along both sides, opens and fades.
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  cairo_pattern_t* fade = cairo_pattern_create_linear(6, 0, 70, 0);
  cairo_pattern_add_color_stop_rgba(fade, 0, kFoam.r, kFoam.g, kFoam.b, 0);
  cairo_pattern_add_color_stop_rgba(fade, 1, kFoam.r, kFoam.g, kFoam.b, 0.9);
  cairo_set_source(c, fade);
  cairo_pattern_destroy(fade);
  for (double side : {-1.0, 1.0}) {
    double swell = 1.6 * std::sin(kTau * (turn - 0.2));
    cairo_set_line_width(c, 4.4);
    cairo_move_to(c, 103, 69 + side * 6);
    cairo_curve_to(c, 92, 70 + side * (30 + swell), 52, 70 + side * (28 + swell), 8,
                   70 + side * (35 - swell));
    cairo_stroke(c);
  }
  Path ring = [turn](cairo_t* p) {
    for (int i = 0; i <= 90; i++) {
      double a = kTau * i / 90,
             r = 1 + 0.030 * std::sin(5 * a + kTau * turn) + 0.022 * std::sin(9 * a - kTau * turn);
      cairo_line_to(p, 61 + 43 * r * std::cos(a), 69.5 + 29.5 * r * std::sin(a));
    }
    cairo_close_path(p);
  };
  fill(c, ring, kFoam, 0.85);
}

void draw_tile(Canvas& canvas, float turn, bool gold, float gleam) {
  draw_water(canvas.ctx, turn);
  Turtle turtle(turn, gold, gleam);
  clay_draw_fine(canvas, turtle.scene(), {kPitch, kScale, kPlace},
                 gold ? Colour{0.26, 0.11, 0.0} : Colour{0.05, 0.07, 0.14}, 1.6f, 2);
}

const Canvas& turtle_tile(int stroke_frame) {
  static Memo<int> tiles;
  return tiles.get(stroke_frame, 128, 128, [=](Canvas& canvas) {
    draw_tile(canvas, static_cast<float>(stroke_frame) / kStrokes, false, 9);
  });
}

void draw_turtle(const Cell& cell) {
  paint_canvas(cell.ctx, turtle_tile(cell.frame % kStrokes), 0, 0);
}

void draw_gold_turtle(const Cell& cell) {
  Canvas tile(cell.width, cell.height);
  const float turn = static_cast<float>(cell.turn());
  draw_tile(tile, 2 * turn, true, -3 + 10 * turn);
  paint_canvas(cell.ctx, tile, 0, 0);
  // Glints flare up one after the other.
  constexpr Point kGlints[] = {{40, 50}, {84, 58}, {58, 78}, {66, 40}};
  for (int i = 0; i < 4; i++) {
    double k = std::sin(kTau * (cell.turn() * 2 + i / 4.0));
    if (k < 0.3) continue;
    const Point p = kGlints[i];
    fill(cell.ctx, star(p.x, p.y, 11 * k, 2.2 * k, 4, 0.3 * k), kGoldLight);
    fill(cell.ctx, star(p.x, p.y, 8.5 * k, 1.6 * k, 4, 0.3 * k), kWhite);
  }
}

void draw_three_turtles(const Cell& cell) {
  // Out of step with each other, so that they don't look like one machine.
  const int ahead[3] = {0, 9, 17};
  for (int i = 0; i < 3; i++)
    paint_canvas(cell.ctx, turtle_tile((cell.frame + ahead[i]) % kStrokes), 127.0 * i, 0);
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_3TURTLES, 512, 128, Play::kLoop, draw_three_turtles),
    sheet(SHEET_1TURTLE, 128, 128, Play::kLoop, draw_turtle),
    sheet(SHEET_1TURTLEGOLD, 128, 128, Play::kLoop, draw_gold_turtle),
};

}  // namespace

const Family kTurtlesFamily{"art/turtles.cpp", kRows};

}  // namespace art
