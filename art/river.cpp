// What floats on the river: logs, turtles and foam.
#include <array>
#include <cmath>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"

namespace art {

namespace {

struct LogColours {
  Colour lit, body, deep, face, ring;
};
constexpr LogColours kWoodLog{
    {0.80, 0.56, 0.32}, kBark, {0.22, 0.11, 0.05}, {0.93, 0.74, 0.46}, {0.55, 0.33, 0.14}};
constexpr LogColours kGoldLog{{1.0, 0.96, 0.58},
                              {0.98, 0.74, 0.12},
                              {0.58, 0.30, 0.02},
                              {1.0, 0.93, 0.58},
                              {0.82, 0.52, 0.06}};

void bark(cairo_t* c, double length, double top, double height, const LogColours& k) {
  Rng rng{static_cast<uint32_t>(length) * 7u + 1};
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  int lines = static_cast<int>(length / 5);
  for (int i = 0; i < lines; i++) {
    double y = top + height * (0.08 + 0.84 * rng.unit()), x = length * rng.unit();
    double run = rng.range(14, 60);
    bool light = rng.unit() < 0.3 && y < top + height * 0.55;
    set(c, light ? k.lit : k.deep, light ? 0.55 : rng.range(0.18, 0.5));
    cairo_set_line_width(c, rng.range(0.9, 2.4));
    cairo_move_to(c, x, y);
    cairo_curve_to(c, x + run * 0.3, y + rng.range(-2, 2), x + run * 0.6, y + rng.range(-2, 2),
                   x + run, y + rng.range(-1.5, 1.5));
    cairo_stroke(c);
  }
  // Knots, some way apart from each other.
  double x = 70 + 30 * rng.unit();
  while (x < length - 30) {
    double y = top + height * rng.range(0.35, 0.6);
    fill(c, ellipse(x, y, 8, 5), k.deep, 0.55);
    stroke(c, ellipse(x, y, 5, 3), k.lit, 1.2, 0.5);
    x += rng.range(90, 150);
  }
}

// Little waves along the foot, that run round once in a loop.
void waterline(cairo_t* c, double length, double y, double turn) {
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  for (int k = 0; k < 2; k++) {
    set(c, kFoam, k ? 0.85 : 0.40);
    cairo_set_line_width(c, k ? 2.0 : 4.5);
    for (int x = 10; x < static_cast<int>(length) - 10; x += 2) {
      double wave =
          std::sin(kTau * (x / 38.0 - turn)) * 1.3 + std::sin(kTau * (x / 17.0 + turn)) * 0.7;
      if (x <= 10)
        cairo_move_to(c, x, y + wave);
      else
        cairo_line_to(c, x, y + wave);
    }
    cairo_stroke(c);
  }
}

void draw_log(const Cell& cell, int cell_length, bool gold) {
  cairo_t* c = cell.ctx;
  const LogColours& k = gold ? kGoldLog : kWoodLog;
  const double w = cell_length, bob = 1.4 * std::sin(kTau * cell.turn());
  const double top = 6 + bob, height = 47, foot = top + height;
  cairo_rectangle(c, 0, 0, w, cell.height);
  cairo_clip(c);
  fill(c, round_rect(4, 34, w - 8, 26, 12), {0.02, 0.14, 0.28}, 0.45);
  Path body = round_rect(1.5, top, w - 3, height, 17);
  stroke(c, body, dim(k.deep, 0.7), 3);
  cairo_save(c);
  body(c);
  cairo_clip(c);
  cairo_pattern_t* g = cairo_pattern_create_linear(0, top, 0, foot);
  const std::array<std::pair<double, Colour>, 5> stops{{{0, dim(k.body, 0.85)},
                                                        {0.24, k.lit},
                                                        {0.52, k.body},
                                                        {0.86, k.deep},
                                                        {1, mix(k.deep, k.body, 0.35)}}};
  for (const auto& [at, colour] : stops)
    cairo_pattern_add_color_stop_rgb(g, at, colour.r, colour.g, colour.b);
  cairo_set_source(c, g);
  cairo_paint(c);
  cairo_pattern_destroy(g);
  bark(c, w, top, height, k);
  if (gold) {
    // A gleam that wanders along the log.
    double x = -30 + (w + 60) * cell.turn();
    for (int i = -1; i <= 1; i++)
      fill(c,
           polygon({{x + i * 9.0, top},
                    {x + 8 + i * 9.0, top},
                    {x - 10 + i * 9.0, foot},
                    {x - 18 + i * 9.0, foot}}),
           kWhite, i ? 0.18 : 0.42);
  }
  cairo_restore(c);
  // The sawn face at the left end shows where one log ends and the next begins.
  double fy = top + height / 2;
  puff(c, ellipse(14, fy, 11, 21.5), k.face, 14, fy, 22, 1.6, 0.2);
  for (double r : {0.78, 0.55, 0.32, 0.12})
    stroke(c, ellipse(14, fy, 11 * r, 21.5 * r), k.ring, 1.2, 0.7);
  if (!gold) {
    // Moss, so that a log isn't all brown.
    for (double x : {w * 0.30, w * 0.62, w * 0.86}) {
      fill(c, ellipse(x, top + 4, 13, 4.5), kLeafDark, 0.9);
      fill(c, ellipse(x - 2, top + 3, 9, 2.8), kLeaf);
    }
  } else {
    for (Point p :
         {Point{w * 0.36, top + 12}, Point{w * 0.68, top + 20}, Point{w * 0.88, top + 10}}) {
      double s = 4 + 3 * std::sin(kTau * cell.turn() + p.x);
      fill(c, star(p.x, p.y, s + 3, 1.3, 4), kWhite, 0.95);
    }
  }
  waterline(c, w, 55.5 + bob * 0.4, cell.turn());
}

constexpr int kStrokes = 25;  // frames of one paddle stroke; a sheet holds two

ClayScene turtle_scene(float turn, bool gold) {
  // Swims to the right.
  ClayScene scene;
  auto part = [&](float blend, float gloss) -> ClayPart& {
    scene.emplace_back();
    scene.back().blend = blend;
    scene.back().gloss = gloss;
    return scene.back();
  };
  float w = std::sin(static_cast<float>(kTau) * turn),
        v = std::cos(static_cast<float>(kTau) * turn);
  Vec plate = linear(gold ? Colour{1, 0.78, 0.12} : Colour{0.90, 0.40, 0.20});
  Vec seam = linear(gold ? Colour{0.70, 0.40, 0.04} : Colour{0.98, 0.80, 0.42});
  Vec skin = linear({0.46, 0.82, 0.42});
  Vec rim = linear(gold ? Colour{1.0, 0.92, 0.50} : Colour{0.98, 0.86, 0.48});
  ClayPart& shell = part(0.02f, gold ? 0.9f : 0.45f);
  shell.ball({0, 0.25f, 0}, {1.72f, 1.05f, 1.48f}, plate);
  shell.paint = [=](Vec p, Vec) {
    // Plates lie in a honeycomb: the seam is where the two nearest middles are equally far.
    const float a = 0.98f;
    float best = 9, second = 9;
    for (int q = -3; q <= 3; q++) {
      for (int r = -3; r <= 3; r++) {
        float hx = a * (static_cast<float>(q) + static_cast<float>(r) * 0.5f);
        float hz = a * 0.866f * static_cast<float>(r);
        float d = std::hypot(p.x - hx, p.z * 1.06f - hz);
        if (d < best) {
          second = best;
          best = d;
        } else if (d < second) {
          second = d;
        }
      }
    }
    float e = second - best;
    Vec c = lerp(plate * 0.55f, plate, step_s(0.10f, 0.34f, e));
    c = lerp(c, lerp(plate, {1, 1, 0.8f}, 0.35f), step_s(0.5f, 0.9f, e));
    return lerp(seam, c, step_s(0.06f, 0.10f, e));
  };
  ClayPart& edge = part(0.05f, 0.35f);
  const int links = 24;
  auto on_rim = [](int i) {
    float a = static_cast<float>(i) * static_cast<float>(kTau) / links;
    return Vec{1.72f * std::cos(a), 0.22f, 1.48f * std::sin(a)};
  };
  for (int i = 0; i < links; i++) edge.limb(on_rim(i), 0.19f, on_rim(i + 1), 0.19f, rim);
  float nod = 0.06f * v;
  ClayPart& head = part(0.25f, 0.35f);
  head.limb({1.4f, 0.25f, 0}, 0.34f, {2.1f, 0.45f + nod, 0}, 0.40f, skin);
  head.ball({2.2f, 0.45f + nod, 0}, {0.52f, 0.44f, 0.50f}, skin);
  for (float side : {-1.0f, 1.0f}) {
    scene.push_back(clay_eye({}, {2.30f, 0.82f + nod, side * 0.30f}, 0.25f, {0.35f, 1, -0.3f},
                             0.72f, skin, 0, {0, 0, 1}));
    ClayPart& fore = part(0.2f, 0.3f);
    Vec tip{1.15f - 0.45f * w, 0.15f + 0.16f * v, side * 2.0f};
    fore.limb({0.9f, 0.12f, side * 1.0f}, 0.36f, tip, 0.28f, skin);
    fore.ball(tip + Vec{0, 0, side * 0.08f}, {0.36f, 0.20f, 0.38f}, skin);
    ClayPart& hind = part(0.2f, 0.3f);
    hind.limb({-1.0f, 0.1f, side * 0.9f}, 0.30f, {-1.60f + 0.28f * w, 0.1f, side * 1.5f}, 0.26f,
              skin);
  }
  ClayPart& tail = part(0.1f, 0.3f);
  tail.limb({-1.5f, 0.12f, 0}, 0.20f, {-2.2f, 0.1f, 0.18f * w}, 0.08f, skin);
  return scene;
}

const Canvas& turtle_tile(int stroke_frame, bool gold) {
  static Memo<int> tiles;
  return tiles.get(stroke_frame + (gold ? kStrokes : 0), 128, 128, [=](Canvas& canvas) {
    float turn = static_cast<float>(stroke_frame) / kStrokes;
    cairo_t* c = canvas.ctx;
    double breath = std::sin(kTau * turn);
    soft_spot(c, 64, 72, 58, 42, {0.02, 0.12, 0.25}, 0.55);
    // Ripples that the strokes send out.
    for (int i = 0; i < 2; i++) {
      double k = std::fmod(turn + 0.5 * i, 1.0);
      stroke(c, ellipse(62, 70, 40 + 20 * k, 27 + 14 * k), kFoam, 2.2 - k,
             0.55 * (1 - k) * smooth(0, 0.2, k));
    }
    ClayScene scene = turtle_scene(turn, gold);
    Canvas clay(128, 128);
    clay_draw(clay, scene, {46, 22.5f, {61, 72 + 1.2 * breath}},
              gold ? Colour{0.30, 0.14, 0} : Colour{0.14, 0.08, 0.05}, 1.6f);
    paint_canvas(c, clay, 0, 0);
  });
}

void draw_turtle(const Cell& cell, bool gold) {
  paint_canvas(cell.ctx, turtle_tile(cell.frame % kStrokes, gold), 0, 0);
  if (!gold) return;
  for (int i = 0; i < 3; i++) {
    double k = 0.5 + 0.5 * std::sin(kTau * (2 * cell.turn() + i / 3.0));
    Point p = i == 0 ? Point{42, 46} : i == 1 ? Point{72, 42} : Point{66, 70};
    if (k > 0.35) fill(cell.ctx, star(p.x, p.y, 9 * k, 1.6 * k, 4), kWhite, 0.95);
  }
}

void draw_three_turtles(const Cell& cell) {
  // Out of step with each other, or they would look like one machine.
  const int ahead[3] = {0, 9, 17};
  for (int i = 0; i < 3; i++)
    paint_canvas(cell.ctx, turtle_tile((cell.frame + ahead[i]) % kStrokes, false), 127.0 * i, 0);
}

void draw_foam(const Cell& cell, int which) {
  // Repeats every 473 pixels across; nothing may lie beyond, since the neighbour's tile lies there.
  const double tile = 473, lowest = 282;
  cairo_t* c = cell.ctx;
  cairo_rectangle(c, 0, 0, tile, lowest);
  cairo_clip(c);
  Rng rng{which == 1 ? 1234u : 98765u};
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  for (int i = 0; i < 46; i++) {
    double x = tile * rng.unit(), y = rng.range(8, lowest - 10), run = rng.range(22, 74);
    double b1 = rng.range(-6, 6), b2 = rng.range(-6, 6), wide = rng.range(1.2, 2.8);
    double alpha = rng.range(0.16, 0.46), end = rng.range(-3, 3);
    bool pair = rng.unit() < 0.5;
    for (int copy = -1; copy <= 1; copy++) {
      double at = x + copy * tile;
      set(c, kFoam, alpha);
      cairo_set_line_width(c, wide);
      cairo_move_to(c, at, y);
      cairo_curve_to(c, at + run * 0.3, y + b1, at + run * 0.65, y + b2, at + run, y + end);
      cairo_stroke(c);
      if (pair) {
        set(c, kFoam, alpha * 0.7);
        cairo_set_line_width(c, wide * 0.6);
        cairo_move_to(c, at + run * 0.2, y + 5);
        cairo_curve_to(c, at + run * 0.4, y + 5 + b2 * 0.6, at + run * 0.6, y + 5 + b1 * 0.6,
                       at + run * 0.8, y + 5);
        cairo_stroke(c);
      }
    }
  }
}

constexpr CatalogueRow kRows[] = {
    sheet("anim_3turtles.tga", 2048, 2048, 4, 16, 50, Play::kLoop, draw_three_turtles),
    sheet("anim_1turtle.tga", 1024, 1024, 8, 8, 50, Play::kLoop,
          [](const Cell& c) { draw_turtle(c, false); }),
    sheet("anim_1turtlegold.tga", 1024, 1024, 8, 8, 50, Play::kLoop,
          [](const Cell& c) { draw_turtle(c, true); }),
    // A log fills its cell of the lane from edge to edge: two neighbours meet without a gap.
    sheet(
        "anim_log1.tga", 1024, 512, 2, 8, 15, Play::kLoop,
        [](const Cell& c) { draw_log(c, 386, false); }, Twin::kNone, kTouchLeft),
    sheet(
        "anim_log3.tga", 1024, 512, 2, 8, 15, Play::kLoop,
        [](const Cell& c) { draw_log(c, 302, false); }, Twin::kNone, kTouchLeft),
    sheet(
        "anim_log4.tga", 512, 512, 2, 8, 15, Play::kLoop,
        [](const Cell& c) { draw_log(c, 166, false); }, Twin::kNone, kTouchLeft),
    sheet(
        "anim_log4gold.tga", 512, 512, 2, 8, 15, Play::kLoop,
        [](const Cell& c) { draw_log(c, 166, true); }, Twin::kNone, kTouchLeft),
    still(
        "riverfoam_1.tga", 512, 512, [](const Cell& c) { draw_foam(c, 1); }, kTouchLeft),
    still(
        "riverfoam_2.tga", 512, 512, [](const Cell& c) { draw_foam(c, 2); }, kTouchLeft),
};

}  // namespace

const Family kRiverFamily{"art/river.cpp", kRows};

}  // namespace art
