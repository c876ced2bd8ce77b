// The river scene behind everything, in two halves, and the shade at the sides of the screen.
#include <algorithm>
#include <cmath>
#include <vector>

#include "art/catalogue.h"
#include "art/flora.h"
#include "art/ground.h"
#include "art/palette.h"

namespace art {

namespace {

double any_x(Rng& rng) {
  return rng.range(-10, kScreenWidth + 10);
}

// n heights, the farthest first, so that near things are drawn over far ones.
std::vector<double> heights(Rng& rng, int n, double far_y, double near_y) {
  std::vector<double> ys;
  ys.reserve(static_cast<size_t>(n));
  for (int i = 0; i < n; i++) ys.push_back(rng.range(far_y, near_y));
  std::sort(ys.begin(), ys.end());
  return ys;
}

// Sun through leaves outside of the picture: soft shafts down to the water.
void draw_sunrays(cairo_t* c) {
  for (int i = 0; i < 6; i++) {
    double x = 150 + 104.0 * i + 30 * std::sin(i * 2.3), wide = 24 + 13 * (i % 3);
    cairo_save(c);
    cairo_translate(c, x, 18);
    cairo_rotate(c, -0.62);
    soft_spot(c, 0, 30, wide, 110, {1, 0.98, 0.72}, 0.17);
    cairo_restore(c);
  }
}

void draw_far_bank(cairo_t* c, Rng& rng) {
  // Three rows of bushes, paler with distance.
  for (double x : places(rng, -20, kScreenWidth + 30, 17, 34))
    draw_bush(c, rng, x, 15 + rng.range(-4, 4), rng.range(17, 27),
              mix({0.62, 0.80, 0.58}, {0.50, 0.74, 0.40}, rng.unit()));
  soft_spot(c, 240, -10, 620, 40, {1, 0.98, 0.76}, 0.65);
  soft_spot(c, 1080, -14, 420, 30, {0.94, 1, 0.84}, 0.40);
  for (double x : places(rng, -10, kScreenWidth + 30, 52, 104)) {
    draw_bush(c, rng, x, 38 + rng.range(-5, 4), rng.range(15, 25),
              mix({0.22, 0.52, 0.24}, {0.44, 0.68, 0.24}, rng.unit()));
  }
  for (double y : heights(rng, 1500, 26, 59)) {
    double x = any_x(rng), tall = rng.range(4, 8.5), lean = rng.range(-2.5, 3.5);
    if (y > far_shore(x) - 5) continue;
    draw_blade(c, {x, y}, {x + lean, y - tall}, 1.3, lean * 0.3,
               mix({0.16, 0.42, 0.12}, {0.66, 0.84, 0.32}, rng.unit()), 0.75);
  }
}

void draw_far_shore(cairo_t* c, Rng& rng) {
  const Colour petals[] = {kWhite, {1, 0.84, 0.24}, {0.98, 0.50, 0.70}, {0.74, 0.60, 1}};
  for (int i = 0; i < 74; i++) {
    double x = any_x(rng), y = rng.range(34, 52);
    draw_daisy(c, x, y, rng.range(2.2, 3.4), petals[static_cast<int>(4 * rng.unit())], rng.unit());
  }
  for (double x : places(rng, 8, kScreenWidth, 40, 96)) {
    int count = 2 + static_cast<int>(4 * rng.unit());
    double big = rng.range(6, 11);
    for (double dy : heights(rng, count, -6, 3)) {
      double at = x + rng.range(-22, 22), r = rng.unit() < 0.4 ? big : rng.range(2.6, 5);
      draw_stone(c, rng, at, far_shore(at) - 2 + dy, r,
                 mix({0.46, 0.48, 0.48}, {0.80, 0.77, 0.70}, rng.unit()),
                 r > 5 && rng.unit() < 0.6 ? rng.range(0.3, 0.9) : 0);
    }
  }
  for (double x : places(rng, 20, kScreenWidth, 60, 150)) {
    draw_bush(c, rng, x, far_shore(x) - 3, rng.range(9, 15),
              mix({0.16, 0.46, 0.14}, {0.36, 0.64, 0.16}, rng.unit()));
  }
  // Reeds in clumps of a few stalks.
  for (double x : places(rng, 40, kScreenWidth, 70, 150)) {
    // They would obstruct a goal.
    if (std::fabs(x - kScreenWidth / 4) < 170 || std::fabs(x - kScreenWidth * 3 / 4) < 170)
      continue;
    int stalks = static_cast<int>(rng.range(7, 15));
    for (int i = 0; i < stalks; i++) {
      double at = x + rng.range(-17, 17), foot = far_shore(at) + 2, tall = rng.range(15, 34);
      double lean = rng.range(-6, 6);
      if (i % 4 == 3)
        draw_bulrush(c, {at, foot}, {at + lean * 0.6, foot - tall}, 4.6);
      else
        draw_blade(c, {at, foot}, {at + lean, foot - tall}, 2, lean * 0.4,
                   mix({0.16, 0.44, 0.12}, {0.62, 0.82, 0.28}, rng.unit()));
    }
  }
  // A line of foam where the water meets the bank.
  for (double x : places(rng, 0, kScreenWidth, 14, 40)) {
    double y = far_shore(x) + rng.range(0.5, 3), run = rng.range(10, 30);
    draw_blade(c, {x, y}, {x + run, y + rng.range(-1, 1)}, 1.1, rng.range(-1, 1), kFoam, 0.5);
  }
}

// The river's current in strokes, shorter with distance.
void draw_current(cairo_t* c, Rng& rng) {
  for (double y : heights(rng, 1500, 72, 352)) {
    double x = any_x(rng), t = (y - 64) / 296, run = rng.range(16, 62) * (0.6 + 0.8 * t);
    double slope = 14 * (fbm(x / 150, y / 46, 41, 3) - 0.47), wide = rng.range(0.8, 2.2) + t;
    double side = std::fmin(x, kScreenWidth - x), pick = rng.unit();
    Colour k = pick < 0.45  ? Colour{0.02, 0.22, 0.42}
               : pick < 0.8 ? mix({0.10, 0.50, 0.68}, {0.24, 0.70, 0.80}, t)
                            : Colour{0.66, 0.92, 0.96};
    double alpha = (pick < 0.8 ? 0.30 : 0.26) * (0.5 + 0.5 * smooth(0, 200, side));
    draw_blade(c, {x, y}, {x + run, y + slope * run / 60}, wide, rng.range(-3, 3), k, alpha);
  }
  // Glints come in groups where the sun falls on the waves.
  for (int flock = 0; flock < 20; flock++) {
    double x = any_x(rng), y = rng.range(92, 342), sun = smooth(1200, 200, x + 2 * (y - 60));
    int count = 4 + static_cast<int>(7 * rng.unit());
    for (int i = 0; i < count; i++) {
      double at = x + rng.range(-60, 60), on = y + rng.range(-12, 12), run = rng.range(5, 16);
      draw_blade(c, {at, on}, {at + run, on + rng.range(-0.6, 0.6)}, 1.3, -1, kWhite,
                 0.35 + 0.4 * sun);
    }
  }
}

void draw_middle_bank(cairo_t* c, Rng& rng) {
  // Moss hangs over the water in a lip with a dark line under it.
  for (double x : places(rng, -6, kScreenWidth + 6, 2.2, 2.2)) {
    double y = near_shore(x), high = rng.range(1, 5);
    draw_blade(c, {x, y + 5}, {x + rng.range(-4, 4), y - high}, 3.6, 0, {0.03, 0.13, 0.08}, 0.8);
  }
  for (int pass = 0; pass < 3; pass++) {
    for (double x : places(rng, -6, kScreenWidth + 6, 2.4, 2.4)) {
      double y = near_shore(x) + 3.5 * pass, thick = fbm(x / 40, 1.5, 63, 3);
      if (pass > 0 && thick < 0.40) continue;
      Colour k =
          mix({0.16, 0.36, 0.09}, {0.62, 0.78, 0.26}, clamp01(0.22 * pass + 0.5 * rng.unit()));
      double lean = rng.range(-4, 4), tall = rng.range(4, 8) * (0.6 + thick);
      draw_blade(c, {x, y + 5}, {x + lean, y + 5 - tall}, 2.2, lean * 0.2, k, 0.9);
    }
  }
  // Stones and pebbles lie in heaps, with room for a frog between them.
  for (double x : places(rng, 20, kScreenWidth, 58, 130)) {
    int count = 2 + static_cast<int>(4 * rng.unit());
    double big = rng.range(6, 11.5);
    for (double y : heights(rng, count, 366, 386)) {
      double r = y < 374 ? big : rng.range(2.4, big * 0.62);
      draw_stone(c, rng, x + rng.range(-24, 24), y, r,
                 mix({0.46, 0.46, 0.46}, {0.82, 0.77, 0.68}, rng.unit()),
                 r > 6 ? rng.range(0.2, 0.9) : 0);
    }
  }
  for (double x : places(rng, 66, kScreenWidth, 110, 240))
    draw_bush(c, rng, x, 391, rng.range(10, 15),
              mix({0.18, 0.50, 0.14}, {0.36, 0.66, 0.18}, rng.unit()));
}

void draw_meadow(cairo_t* c, Rng& rng) {
  // Broad strokes first, then rows of blades. Both stay close to the ground's own green, because
  // green bugs must stand out.
  for (double y : heights(rng, 2600, 398, 700)) {
    double x = any_x(rng), run = rng.range(14, 34);
    Colour k = dim(meadow_green(x, y), rng.range(0.84, 1.14));
    draw_blade(c, {x, y}, {x + run, y + rng.range(-4, 2)}, rng.range(2, 4.5), rng.range(-3, 3), k,
               0.38);
  }
  for (double y : heights(rng, 15000, 394, 716)) {
    double x = any_x(rng), depth = (y - 392) / 300,
           lean = rng.range(-3.4, 4.2) * (0.7 + 0.5 * depth);
    if (y < meadow_edge(x) + 2) continue;
    double lush = fbm(x / 26, y / 12, 76, 2), tall = (4.5 + 5 * lush) * (0.75 + 0.55 * depth);
    double light = rng.unit();
    Colour k = light < 0.45
                   ? mix(dim(meadow_green(x, y), 0.76), kShade, 0.12)
                   : mix(meadow_green(x, y), {0.80, 0.92, 0.30}, 0.30 * (light - 0.45) / 0.55);
    draw_blade(c, {x, y}, {x + lean, y - tall}, 1.5 + 0.4 * depth, lean * 0.3, k, 0.72);
  }
  // The uncut ridge between two lanes, and the fringe over the bank.
  for (int lane = 0; lane <= kLanes; lane++) {
    double base = kLaneFoot + kLaneStep * (lane - 0.5) + 2;
    for (double x : places(rng, -8, kScreenWidth + 8, 3.4, 3.4)) {
      double thick = fbm(x / 44, lane * 4.7, 77, 3), y = base + rng.range(-3.5, 3.5);
      if (lane == 0) y = meadow_edge(x) + rng.range(2, 8);
      if (thick < (lane == 0 ? 0.25 : 0.43)) continue;
      double lean = rng.range(-4, 5), tall = rng.range(6, 13) * (0.55 + thick);
      Colour k = mix(dim(meadow_green(x, y), 0.66), mix(meadow_green(x, y), {0.8, 0.92, 0.3}, 0.4),
                     rng.unit());
      draw_blade(c, {x, y}, {x + lean, y - tall}, 1.9, lean * 0.3, k, 0.9);
    }
  }
}

// Clover and flowers in patches: on the ridges and at the sides, seldom in a lane.
void draw_blossoms(cairo_t* c, Rng& rng) {
  struct Patch {
    double x, y;
    int kind;
  };
  std::vector<Patch> patches;
  patches.reserve(50);
  for (int i = 0; i < 50; i++) {
    double side = rng.unit(), x = any_x(rng);
    if (side < 0.36) x = 130 * rng.unit() + (side < 0.18 ? 0 : kScreenWidth - 130);
    double y = kLaneFoot + kLaneStep * (static_cast<int>(rng.range(0, 6)) - 0.5) + rng.range(-4, 6);
    patches.push_back({x, std::fmax(y, meadow_edge(x) + 9), static_cast<int>(4 * rng.unit())});
  }
  std::sort(patches.begin(), patches.end(), [](auto& a, auto& b) { return a.y < b.y; });
  for (const Patch& p : patches) {
    const double size = 0.75 + 0.5 * (p.y - 392) / 300;
    int count = p.kind == 0 ? 12 : 2 + static_cast<int>(4 * rng.unit());
    for (double dy : heights(rng, count, -7, 7)) {
      double x = p.x + rng.range(-26, 26), y = p.y + dy;
      if (p.kind == 0)
        draw_clover(c, x, y, rng.range(4.0, 5.6) * size, kTau * rng.unit(),
                    mix({0.16, 0.46, 0.16}, {0.34, 0.62, 0.22}, rng.unit()));
      else if (p.kind == 1)
        draw_dandelion(c, x, y, rng.range(3.8, 5.2) * size);
      else
        draw_daisy(c, x, y, rng.range(4.0, 5.4) * size,
                   p.kind == 2 ? kWhite : Colour{0.98, 0.66, 0.82}, kTau * rng.unit());
    }
  }
}

void draw_near_bank(cairo_t* c, Rng& rng) {
  for (double y : heights(rng, 3400, 676, 792)) {
    double x = any_x(rng), t = clamp01((y - 680) / 90), tuft = fbm(x / 46, 2.5, 78, 3);
    if (y < bank_edge(x) + 30 * (0.5 - tuft)) continue;
    double tall = rng.range(9, 20) * (0.5 + 1.3 * tuft), lean = rng.range(-8, 8);
    Colour lit = mix(meadow_green(x, 670), {0.20, 0.47, 0.12}, t);
    draw_blade(c, {x, y}, {x + lean, y - tall * (0.8 + 0.4 * t)}, 2 + 0.8 * t, lean * 0.35,
               mix(mix({0.10, 0.34, 0.09}, {0.03, 0.18, 0.06}, t), lit, rng.unit()));
  }
}

// The same sun on the meadow: flat pale and dark spots.
void draw_dapples(cairo_t* c, Rng& rng) {
  for (int i = 0; i < 46; i++) {
    double x = any_x(rng), y = rng.range(404, 690), r = rng.range(16, 44);
    soft_spot(c, x, y, r, r * 0.4, {0.95, 0.98, 0.45}, 0.13);
  }
  for (int i = 0; i < 40; i++) {
    double side = rng.unit(), x = 230 * side * side, y = rng.range(400, 700), r = rng.range(24, 60);
    if (i % 2) x = kScreenWidth - x;
    soft_spot(c, x, y, r, r * 0.42, {0.01, 0.15, 0.11}, 0.26);
  }
}

void draw_scene(cairo_t* c) {
  Rng rng{42};
  draw_far_bank(c, rng);
  draw_far_shore(c, rng);
  draw_current(c, rng);
  draw_sunrays(c);
  draw_middle_bank(c, rng);
  draw_meadow(c, rng);
  draw_dapples(c, rng);
  draw_blossoms(c, rng);
  draw_near_bank(c, rng);
}

void draw_backdrop(const Cell& cell, double from_x) {
  // The scene is painted as one, so its halves always match.
  static Memo<int> scenes;
  const Canvas& scene = scenes.get(0, static_cast<int>(kScreenWidth),
                                   static_cast<int>(kScreenHeight), [](Canvas& canvas) {
                                     paint_pixels(canvas, ground);
                                     draw_scene(canvas.ctx);
                                   });
  paint_canvas(cell.ctx, scene, -from_x, 0);
}

// Things that come in at the sides come out of the leaves' shade. It is as narrow as possible,
// because it is blended over the whole height of the screen.
void draw_shadow(const Cell& cell) {
  constexpr double kWide = 184;
  cairo_t* c = cell.ctx;
  cairo_pattern_t* g = cairo_pattern_create_linear(0, 0, kWide, 0);
  for (int i = 0; i <= 8; i++) {
    double t = i / 8.0;
    cairo_pattern_add_color_stop_rgba(g, t, 0.01, 0.06, 0.06, 0.85 * (1 - t) * (1 - t));
  }
  cairo_rectangle(c, 0, 0, std::fmin(kWide, cell.width), kScreenHeight);
  cairo_set_source(c, g);
  cairo_fill(c);
  cairo_pattern_destroy(g);
}

constexpr CatalogueRow kRows[] = {
    still(
        PANEL_BKDROP_LFT, LAYOUT_WIDTH / 2, LAYOUT_HEIGHT,
        [](const Cell& c) { draw_backdrop(c, 0); }, kTouchAll),
    still(
        PANEL_BKDROP_RT, LAYOUT_WIDTH / 2, LAYOUT_HEIGHT,
        [](const Cell& c) { draw_backdrop(c, kScreenWidth / 2); }, kTouchAll),
    still(PANEL_SHADOW, 256, 1024, draw_shadow, kTouchLeft | kTouchTop),
};

}  // namespace

const Family kBackdropFamily{"art/backdrop.cpp", kRows};

}  // namespace art
