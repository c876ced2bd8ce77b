// Short things: rings, sparks and hearts.
#include <cmath>

#include "art/catalogue.h"
#include "art/palette.h"

namespace art {

namespace {

void draw_rings(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // Drawn 132 pixels left of the frog at its height, so that this point lies below its feet.
  const double x = 260, y = 250, flat = 0.40;
  const int rings = 3;
  soft_spot(c, x, y, 120, 120 * flat, {0.55, 1.0, 0.30}, 0.35);
  for (int i = 0; i < rings; i++) {
    double k = std::fmod(cell.turn() + static_cast<double>(i) / rings, 1.0);
    double r = 36 + 200 * k, alpha = smooth(0, 0.15, k) * (1 - smooth(0.45, 1.0, k));
    if (alpha <= 0) continue;
    stroke(c, ellipse(x, y, r, r * flat), {0.05, 0.40, 0.04}, 17 * (1 - 0.6 * k), 0.45 * alpha);
    stroke(c, ellipse(x, y, r, r * flat), {0.42, 0.96, 0.16}, 11 * (1 - 0.6 * k), 0.95 * alpha);
    stroke(c, ellipse(x, y - 1.5, r, r * flat), {0.88, 1.0, 0.66}, 4 * (1 - 0.6 * k), 0.9 * alpha);
  }
}

void draw_spark(const Cell& cell) {
  cairo_t* c = cell.ctx;
  double t = cell.run(), grow = std::sin(kTau / 2 * (0.12 + 0.80 * t));
  soft_spot(c, 64, 64, 58 * grow, 58 * grow, {1, 0.95, 0.45}, 0.8);
  fill(c, star(64, 64, 56 * grow, 9 * grow, 8, 0.5 * t), {1.0, 0.78, 0.15}, 0.9);
  fill(c, star(64, 64, 42 * grow, 8 * grow, 8, 0.2 - 0.5 * t), kWhite);
  for (int i = 0; i < 8; i++) {
    double a = i * kTau / 8 + 0.3, r = 16 + 38 * t;
    fill(c, circle(64 + r * std::cos(a), 64 + r * std::sin(a), 4.2 - 3 * t), kYellow);
  }
}

void draw_hearts(const Cell& cell) {
  cairo_t* c = cell.ctx;
  double t = cell.run();
  struct Start {
    double x, late, size;
  };
  for (Start s : {Start{32, 0, 9.5}, Start{20, 0.16, 6.5}, Start{44, 0.26, 7.5}}) {
    double u = (t - s.late) / (1 - s.late);
    if (u < 0) continue;
    double grow = smooth(-0.15, 0.25, u), fade = 1 - smooth(0.72, 1.06, u);
    double x = s.x + 5 * std::sin(kTau * (u + s.x * 0.05)), y = 52 - 39 * u, size = s.size * grow;
    if (fade <= 0.02) continue;
    cairo_push_group(c);
    puff(c, heart(x, y, size), {0.98, 0.22, 0.40}, x, y, size * 1.2, 1.6, 0.7);
    cairo_pop_group_to_source(c);
    cairo_paint_with_alpha(c, fade);
  }
}

constexpr CatalogueRow kRows[] = {
    sheet("anim_grn_rings.png", 4096, 2048, 8, 4, 30, Play::kLoop, draw_rings),
    sheet("anim_spark.tga", 512, 512, 4, 4, 16, Play::kOnce, draw_spark),
    sheet("anim_hearts.tga", 512, 256, 8, 4, 30, Play::kOnce, draw_hearts),
};

}  // namespace

const Family kEffectsFamily{"art/effects.cpp", kRows};

}  // namespace art
