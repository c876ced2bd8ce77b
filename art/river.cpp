// What floats on the river: logs and foam.
#include <array>
#include <cmath>

#include "art/catalogue.h"
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
