// Plants: the foliage at the screen's edges, cattails, lily pads, grass; and the stones that the
// frogs start from.
#include <cmath>
#include <initializer_list>
#include <span>

#include "art/catalogue.h"
#include "art/flora.h"
#include "art/goal.h"
#include "art/palette.h"

namespace art {

namespace {

enum class Green { kLeaf, kFern, kFlower };
struct Sprig {
  Green kind;
  double x, y, angle, length, width, bend;  // a flower's radius is its width
  double shade;                             // 0 in the dark at the back, 1 in the sun
};

// The plants at the left edge, the farthest first; the right edge is a mirror image.
constexpr Sprig kUpper[] = {{Green::kLeaf, -12, 40, 0.62, 176, 34, 16, 0.0},
                            {Green::kLeaf, 40, -14, 0.86, 146, 30, -12, 0.1},
                            {Green::kFern, -6, 70, 0.92, 124, 0, 16, 0.3},
                            {Green::kFern, 96, -8, 0.62, 112, 0, 12, 0.35},
                            {Green::kLeaf, -10, 8, 0.28, 188, 30, 18, 0.5},
                            {Green::kLeaf, -12, 52, 1.12, 118, 28, 12, 0.6},
                            {Green::kLeaf, 20, -12, 1.02, 116, 26, 10, 0.8},
                            {Green::kLeaf, 74, -14, 0.46, 112, 24, 12, 0.9},
                            {Green::kLeaf, -12, -8, 0.66, 96, 26, 10, 1.0},
                            {Green::kFlower, 60, 62, 0, 0, 25, 0, 1}};
constexpr Sprig kMiddle[] = {{Green::kLeaf, -12, 150, -0.85, 132, 28, -14, 0.0},
                             {Green::kLeaf, -12, 156, 0.55, 126, 28, 14, 0.1},
                             {Green::kFern, -8, 150, -0.38, 142, 0, -14, 0.3},
                             {Green::kFern, -8, 156, 0.24, 136, 0, 16, 0.4},
                             {Green::kLeaf, -12, 146, -0.60, 104, 24, -10, 0.6},
                             {Green::kLeaf, -12, 160, 0.86, 96, 24, 10, 0.7},
                             {Green::kLeaf, -12, 152, -0.06, 104, 25, 10, 0.95},
                             {Green::kFlower, 40, 152, 0, 0, 21, 0, 1}};
// A sign hides the feet of these.
constexpr Sprig kLower[] = {{Green::kLeaf, 46, 268, -1.56, 218, 26, -14, 0.0},
                            {Green::kLeaf, 70, 268, -1.16, 206, 28, 20, 0.1},
                            {Green::kFern, 50, 262, -1.66, 176, 0, -14, 0.3},
                            {Green::kFern, 120, 262, -0.92, 160, 0, 22, 0.35},
                            {Green::kLeaf, 56, 268, -2.05, 176, 26, -10, 0.4},
                            {Green::kLeaf, 92, 268, -1.36, 162, 25, 12, 0.6},
                            {Green::kLeaf, 124, 268, -0.74, 150, 23, 18, 0.5},
                            {Green::kLeaf, 52, 268, -1.16, 152, 26, 16, 0.85},
                            {Green::kLeaf, 48, 268, -1.70, 134, 25, -8, 1.0},
                            {Green::kFlower, 58, 142, 0, 0, 27, 0, 1},
                            {Green::kFlower, 112, 172, 0, 0, 20, 0, 0.5}};

void draw_sprigs(const Cell& cell, std::span<const Sprig> sprigs, double phase, Colour petal,
                 Colour other) {
  for (size_t i = 0; i < sprigs.size(); i++) {
    const Sprig& g = sprigs[i];
    const double s = sway(cell, phase + 0.17 * static_cast<double>(i)),
                 lag = sway(cell, phase - 0.1);
    const Colour colour = mix({0.05, 0.30, 0.12}, {0.46, 0.78, 0.20}, g.shade);
    switch (g.kind) {
      case Green::kLeaf:
        draw_leaf(cell.ctx, {g.x, g.y}, g.angle + 0.05 * s, g.length, g.width, g.bend + 6 * lag,
                  colour);
        break;
      case Green::kFern:
        draw_fern(cell.ctx, {g.x, g.y}, g.angle + 0.07 * s, g.length, g.bend + 8 * lag, colour);
        break;
      case Green::kFlower:
        draw_flower(cell.ctx, g.x + 3.5 * s, g.y + 2.5 * lag, g.width, g.shade < 1 ? other : petal,
                    0.3 + 0.07 * s);
        break;
    }
  }
}

void draw_plant(const Cell& cell, int which) {
  cairo_t* c = cell.ctx;
  constexpr Colour kViolet{0.70, 0.48, 1.0}, kOrange{1.0, 0.58, 0.16};
  if (which >= 4) {
    cairo_translate(c, cell.width, 0);
    cairo_scale(c, -1, 1);
  }
  const double phase = 0.21 * which;
  switch (which) {
    case 1:
    case 5:
      return draw_sprigs(cell, kUpper, phase, which == 1 ? kPink : kOrange, kPink);
    case 2:
    case 4:
      return draw_sprigs(cell, kMiddle, phase, which == 2 ? kViolet : kPink, kPink);
    default:
      return draw_sprigs(cell, kLower, phase, which == 3 ? kYellow : kViolet, kPink);
  }
}

void draw_cattail(const Cell& cell, int which) {
  cairo_t* c = cell.ctx;
  if (which == 2) {
    cairo_translate(c, cell.width, 0);
    cairo_scale(c, -1, 1);
  }
  const double foot = 124;
  auto blade = [&](double x, double lean, double tall, double shade) {
    double s = sway(cell, x * 0.011 + shade);
    draw_leaf(c, {x, foot}, -kTau / 4 + lean + 0.05 * s, tall, 6.5, 14 * lean + 5 * s,
              mix({0.08, 0.36, 0.12}, {0.46, 0.76, 0.20}, shade));
  };
  soft_spot(c, 66, foot - 6, 44, 7, kForest, 0.55);
  blade(56, -0.34, 84, 0.0);
  blade(74, 0.10, 100, 0.1);
  blade(82, 0.42, 76, 0.2);
  struct Stem {
    double x, top, lean, size;
  };
  for (Stem stem : {Stem{78, 46, 11, 11}, Stem{60, 22, -7, 13}}) {
    double s = sway(cell, stem.x * 0.007);
    draw_bulrush(c, {stem.x, foot - 3}, {stem.x + stem.lean + 5 * s, stem.top}, stem.size);
  }
  blade(46, -0.22, 62, 0.7);
  blade(66, -0.05, 54, 1.0);
  blade(86, 0.22, 58, 0.8);
}

void draw_lily_pad(const Cell& cell) {
  cairo_t* c = cell.ctx;
  const double s = sway(cell, 0), k = cell.turn();
  soft_spot(c, 64, 78, 60, 42, {0.01, 0.10, 0.14}, 0.6);
  stroke(c, ellipse(64, 70, 55 + 5 * k, 38 + 4 * k), kFoam, 1.8, 0.7 * std::sin(kTau / 2 * k));
  draw_pad(c, 64, 64 + 1.3 * s, 54, 37, -0.9 + 0.05 * s);
  draw_lotus(c, 103, 102 + 0.8 * sway(cell, 0.15), 19, 1 + 0.05 * s, kPink);
}

void draw_dew(cairo_t* c, double x, double y, double r) {
  fill(c, ellipse(x + r * 0.2, y + r * 0.3, r * 1.15, r * 0.9), {0.02, 0.28, 0.08}, 0.55);
  fill_linear(c, ellipse(x, y, r, r * 0.8), {x - r, y - r}, {0.36, 0.74, 0.36}, {x + r, y + r},
              {0.86, 1.0, 0.84});
  fill(c, ellipse(x - r * 0.35, y - r * 0.3, r * 0.26, r * 0.2), kWhite);
}

void draw_big_lily_pad(const Cell& cell) {
  cairo_t* c = cell.ctx;
  soft_spot(c, 298, 274, 288, 216, {0.02, 0.08, 0.10}, 0.6);
  draw_pad(c, 295, 251, 274, 204, -0.75);
  for (Point p : {Point{110, 190}, Point{136, 162}, Point{86, 232}, Point{474, 330},
                  Point{460, 354}, Point{330, 78}})
    draw_dew(c, p.x, p.y, 7 + 0.012 * p.x);
  draw_lotus(c, 122, 470, 60, 1.0, kPink);
  draw_lotus(c, 468, 476, 68, 1.0, {1.0, 0.66, 0.84});
}

// A blade of the foreground: outlined, dark at its foot, its edge in the sun.
void draw_tall_blade(cairo_t* c, Point foot, Point tip, double width, double bend, Colour k) {
  const Path one = leaf(foot, tip, width, bend);
  stroke(c, one, {0.02, 0.15, 0.05}, 1.8);
  fill_linear(c, one, foot, mix(k, {0.03, 0.24, 0.08}, 0.75), tip, mix(k, kSunlight, 0.25));
}

void draw_grass_strip(cairo_t* c, double width, double height) {
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  cairo_pattern_t* g = cairo_pattern_create_linear(0, 92, 0, height);
  cairo_pattern_add_color_stop_rgba(g, 0, 0.04, 0.22, 0.07, 0);
  cairo_pattern_add_color_stop_rgba(g, 0.3, 0.04, 0.22, 0.07, 1);
  cairo_pattern_add_color_stop_rgba(g, 1, 0.02, 0.14, 0.05, 1);
  cairo_rectangle(c, 0, 92, width, height - 92);
  cairo_set_source(c, g);
  cairo_fill(c);
  cairo_pattern_destroy(g);
  for (int row = 0; row < 4; row++) {
    Rng rng{77u + static_cast<uint32_t>(row)};
    for (double x : places(rng, -20, width + 20, 3.4, 3.4)) {
      double lean = rng.range(-11, 11), grow = rng.unit(), tuft = fbm(x / 38, row * 3.7, 5, 3);
      double foot = 90 + row * 12, tall = (10 + 78 * tuft * tuft) * (0.55 + 0.6 * grow);
      Colour k = mix({0.10, 0.40, 0.10}, {0.58, 0.82, 0.22}, 0.12 * row + 0.55 * rng.unit());
      double at = x + rng.range(-3, 3);
      draw_tall_blade(c, {at, foot}, {at + lean, std::fmax(5, foot - tall)}, 3, lean * 0.35, k);
    }
    // Flowers grow between the rows.
    for (double x : places(rng, 40 * row, row < 3 ? width : 0, 70, 170)) {
      double at = x + rng.range(-20, 20), head = 78 + 12 * row - rng.range(4, 18);
      stroke(c, capsule({at, 104}, 0.3, {at + 2, head}, 0.3), {0.20, 0.50, 0.12}, 2);
      if (rng.unit() < 0.4)
        draw_dandelion(c, at + 2, head, rng.range(5.5, 7.5));
      else
        draw_daisy(c, at + 2, head, rng.range(6, 8), rng.unit() < 0.7 ? kWhite : kPink, rng.unit());
    }
  }
}

void draw_grass(const Cell& cell, double from_x) {
  // One strip for the whole screen, of which each half shows its part.
  static Memo<int> strips;
  const Canvas& strip = strips.get(0, LAYOUT_WIDTH, cell.height, [](Canvas& canvas) {
    draw_grass_strip(canvas.ctx, LAYOUT_WIDTH, 128);
  });
  cairo_rectangle(cell.ctx, 0, 0, 680, cell.height);
  cairo_clip(cell.ctx);
  paint_canvas(cell.ctx, strip, -from_x, 0);
}

// A circle that is slightly out of shape, like a stone.
Path slab(double x, double y, double rx, double ry, uint32_t seed) {
  return [=](cairo_t* c) {
    cairo_new_path(c);
    for (int i = 0; i < 60; i++) {
      double a = i * kTau / 60;
      double r = 1 + 0.12 * (noise(3 + 1.6 * std::cos(a), 3 + 1.6 * std::sin(a), seed) - 0.5);
      cairo_line_to(c, x + rx * r * std::cos(a), y + ry * r * std::sin(a));
    }
    cairo_close_path(c);
  };
}

// The launch place: a flat stone, worn by feet, with an inlaid ring in its player's colour.
void draw_patch(const Cell& cell, Colour accent, uint32_t seed) {
  cairo_t* c = cell.ctx;
  const double x = 128, y = 60, rx = 102, ry = 43, thick = 11;
  soft_spot(c, x + 4, y + 14, 122, 50, {0.01, 0.12, 0.05}, 0.75);
  const Path top = slab(x, y, rx, ry, seed), foot = slab(x, y + thick, rx, ry, seed);
  for (const Path& part : {foot, top}) stroke(c, part, {0.13, 0.12, 0.12}, 4);
  fill_linear(c, foot, {x - rx, y}, {0.52, 0.47, 0.42}, {x + rx, y}, {0.24, 0.22, 0.23});
  Canvas stone(cell.width, cell.height);
  paint_pixels(stone, [&](double px, double py) {
    double broad = fbm(px / 34, py / 15, seed, 3), fine = fbm(px / 5, py / 3, seed + 7, 2);
    Colour k = mix({0.60, 0.57, 0.53}, {0.90, 0.86, 0.77}, clamp01(1.5 * broad - 0.25));
    double lit = clamp01(0.62 - 0.0026 * (px - x) - 0.007 * (py - y));
    k = dim(k, (0.68 + 0.40 * lit) * (0.90 + 0.20 * fine));
    double crack = std::fabs(fbm(px / 40, py / 17, seed + 13, 2) - 0.37);
    return mix(k, {0.26, 0.23, 0.22}, 0.55 * smooth(0.012, 0.004, crack));
  });
  cairo_save(c);
  top(c);
  cairo_clip(c);
  paint_canvas(c, stone, 0, 0);
  stroke(c, slab(x + 1, y + 2, rx - 1, ry - 1, seed), kWhite, 3, 0.35);
  // The ring is cut in: shade on the side towards the light, light on the other.
  auto ring = [&](double dx, double dy, Colour k, double width, double alpha) {
    stroke(c, ellipse(x + dx, y + dy, 76, 30), k, width, alpha);
  };
  ring(-0.8, -1.2, {0.16, 0.13, 0.10}, 9, 0.75);
  ring(1, 1.4, kWhite, 9, 0.55);
  ring(0, 0, accent, 7, 1);
  ring(0, -1, mix(accent, kWhite, 0.5), 2, 0.8);
  soft_spot(c, x, y, 58, 22, {1, 0.98, 0.86}, 0.5);
  cairo_restore(c);
  Rng rng{seed * 31u};
  for (int i = 0; i < 90; i++) {
    // Moss on the rim, in pads, and tufts at the foot.
    double a = kTau * rng.unit(), patch = noise(4 + 2 * std::cos(a), 4 + 2 * std::sin(a), seed + 3);
    if (patch < 0.5) continue;
    double r = rng.range(0.90, 1.02);
    fill(c, ellipse(x + rx * r * std::cos(a), y + ry * r * std::sin(a), 6, 3.6),
         mix({0.14, 0.38, 0.08}, {0.58, 0.78, 0.24}, rng.unit()));
  }
  for (int i = 0; i < 54; i++) {
    double a = -0.25 + (kTau / 2 + 0.5) * i / 53 + rng.range(-0.05, 0.05), lean = rng.range(-6, 6);
    double tall = rng.range(8, 19), bx = x + 107 * std::cos(a), by = y + 13 + 45 * std::sin(a);
    draw_tall_blade(c, {bx, by}, {bx + lean, by - tall}, 2.6, lean * 0.3,
                    mix({0.14, 0.44, 0.10}, {0.56, 0.82, 0.24}, rng.unit()));
  }
  for (double a : {0.42, 1.15, 2.1, 2.75})
    draw_daisy(c, x + 106 * std::cos(a), y + 10 + 44 * std::sin(a), 6.5,
               a > 1 && a < 2 ? Colour{1.0, 0.70, 0.84} : kWhite, a);
}

constexpr CatalogueRow kRows[] = {
    // The foliage is cut off at the screen's edges.
    sheet(
        SHEET_PLANTS1, 256, 256, Play::kLoop, [](const Cell& c) { draw_plant(c, 1); }, Twin::kNone,
        kTouchLeft | kTouchTop),
    sheet(
        SHEET_PLANTS2, 256, 256, Play::kLoop, [](const Cell& c) { draw_plant(c, 2); }, Twin::kNone,
        kTouchLeft),
    sheet(
        SHEET_PLANTS3, 512, 256, Play::kLoop, [](const Cell& c) { draw_plant(c, 3); }, Twin::kNone,
        kTouchLeft | kTouchBottom),
    sheet(
        SHEET_PLANTS4, 256, 256, Play::kLoop, [](const Cell& c) { draw_plant(c, 4); }, Twin::kNone,
        kTouchRight),
    sheet(
        SHEET_PLANTS5, 256, 256, Play::kLoop, [](const Cell& c) { draw_plant(c, 5); }, Twin::kNone,
        kTouchRight | kTouchTop),
    sheet(
        SHEET_PLANTS6, 512, 256, Play::kLoop, [](const Cell& c) { draw_plant(c, 6); }, Twin::kNone,
        kTouchRight | kTouchBottom),
    sheet(SHEET_FINISH, 512, 256, Play::kLoop, draw_goal),
    sheet(SHEET_LILYPAD3, 128, 128, Play::kLoop, draw_lily_pad),
    sheet(SHEET_CTAIL1, 128, 128, Play::kLoop, [](const Cell& c) { draw_cattail(c, 1); }),
    sheet(SHEET_CTAIL2, 128, 128, Play::kLoop, [](const Cell& c) { draw_cattail(c, 2); }),
    still(
        PANEL_GRASS_LFT, 1024, 128, [](const Cell& c) { draw_grass(c, 0); },
        kTouchLeft | kTouchBottom),
    still(
        PANEL_GRASS_RT, 1024, 128, [](const Cell& c) { draw_grass(c, LAYOUT_WIDTH * 0.5); },
        kTouchLeft | kTouchBottom),
    still(PANEL_DPATCH, 256, 128, [](const Cell& c) { draw_patch(c, {0.30, 0.74, 0.14}, 11); }),
    still(PANEL_DPATCH2, 256, 128, [](const Cell& c) { draw_patch(c, {1.0, 0.80, 0.12}, 23); }),
    still(PANEL_LRG_LILYPAD, 1024, 512, draw_big_lily_pad),
};

}  // namespace

const Family kPlantsFamily{"art/plants.cpp", kRows};

}  // namespace art
