// Short things: water, rings, sparks and hearts.
#include <cmath>

#include "art/catalogue.h"
#include "art/palette.h"

namespace art {

namespace {

void drop(cairo_t* c, double x, double y, double r, double alpha) {
  fill(c, circle(x, y, r + 1.2), {0.10, 0.40, 0.66}, alpha * 0.8);
  fill(c, circle(x, y, r), {0.66, 0.90, 1.0}, alpha);
  fill(c, circle(x - r * 0.3, y - r * 0.35, r * 0.4), kWhite, alpha);
}

void draw_water_crown(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // The frog fell in at the foot: a crown of water rises, falls apart, and rings run out.
  const double t = cell.run(), x = 256, y = 214;
  double rise = std::sin(kTau / 2 * std::pow(clamp01(t / 0.85), 0.7));
  for (int i = 0; i < 3; i++) {
    double k = t * 1.25 - 0.16 * i;
    if (k <= 0.02 || k >= 1) continue;
    stroke(c, ellipse(x, y, 26 + 200 * k, (26 + 200 * k) * 0.15), kFoam, 5 * (1 - k) + 1,
           0.85 * (1 - k));
  }
  double wide = 34 + 62 * std::sqrt(t), fade = 1 - smooth(0.62, 0.95, t);
  double tall = 128 * rise;
  if (fade > 0 && tall > 3) {
    auto crown = [=](double spread, double height, double back) -> Path {
      return [=](cairo_t* k) {
        const int points = 9;
        cairo_new_path(k);
        cairo_move_to(k, x - wide * spread * 0.72, y + back);
        for (int i = 0; i < points; i++) {
          double u = -1 + 2.0 * i / (points - 1);
          double h = height * (0.55 + 0.45 * (1 - u * u)) * (i % 2 ? 0.62 : 1.0);
          double px = x + u * wide * spread, py = y - h + back;
          cairo_curve_to(k, px - wide * 0.06, y - h * 0.35, px - 3, py + h * 0.2, px, py);
          if (i + 1 < points) {
            double v = u + 1.0 / (points - 1);
            cairo_curve_to(k, px + 3, py + h * 0.2, x + v * wide * spread * 0.94, y - h * 0.5,
                           x + v * wide * spread * 0.92, y - h * 0.42 + back);
          }
        }
        cairo_curve_to(k, x + wide * spread * 0.8, y + 4, x + wide * spread * 0.5, y + 12 + back, x,
                       y + 13 + back);
        cairo_curve_to(k, x - wide * spread * 0.5, y + 12 + back, x - wide * spread * 0.72, y + 8,
                       x - wide * spread * 0.72, y + back);
        cairo_close_path(k);
      };
    };
    for (int layer = 0; layer < 2; layer++) {
      Path p = crown(layer ? 0.80 : 1.0, tall * (layer ? 0.78 : 1.0), layer ? 5 : 0);
      stroke(c, p, {0.06, 0.34, 0.60}, 4, 0.75 * fade);
      cairo_pattern_t* g = cairo_pattern_create_linear(0, y - tall, 0, y + 14);
      cairo_pattern_add_color_stop_rgba(g, 0, 0.94, 0.99, 1, 0.95 * fade);
      cairo_pattern_add_color_stop_rgba(g, 1, 0.24, 0.62, 0.88, 0.80 * fade);
      p(c);
      cairo_set_source(c, g);
      cairo_fill(c);
      cairo_pattern_destroy(g);
    }
  }
  Rng rng{5};
  for (int i = 0; i < 26; i++) {
    double a = rng.range(-1.15, 1.15), speed = rng.range(0.55, 1.0), size = rng.range(2.5, 6.5);
    double late = rng.range(0, 0.10), u = t - late;
    if (u <= 0) continue;
    double px = x + std::sin(a) * 210 * speed * u,
           py = y - 430 * speed * std::cos(a) * u + 470 * u * u;
    if (py > y + 14 || py < 8) continue;
    drop(c, px, py, size * (1 - 0.4 * u), 1 - smooth(0.75, 1.0, t));
  }
  // The last frame still shows the water closing.
  stroke(c, ellipse(x, y, 30 + 30 * t, 5 + 4 * t), kFoam, 3, 0.6);
}

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

void draw_small_splash(const Cell& cell) {
  cairo_t* c = cell.ctx;
  double t = cell.run(), fade = 1 - smooth(0.7, 1.05, t);
  stroke(c, ellipse(32, 46, 6 + 20 * t, 2 + 6 * t), kFoam, 2.5 - t, 0.9 * fade);
  for (int i = 0; i < 7; i++) {
    double a = (i - 3) * 0.32, u = t;
    double x = 32 + std::sin(a) * 30 * u, y = 44 - 92 * std::cos(a) * u + 92 * u * u;
    if (y < 48) drop(c, x, y, 3.4 - 1.8 * t, fade);
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
    sheet("anim_gfrog_splash.tga", 4096, 1024, 8, 4, 20, Play::kOnce, draw_water_crown),
    sheet("anim_splash.tga", 256, 256, 4, 4, 16, Play::kOnce, draw_small_splash),
    sheet("anim_spark.tga", 512, 512, 4, 4, 16, Play::kOnce, draw_spark),
    sheet("anim_hearts.tga", 512, 256, 8, 4, 30, Play::kOnce, draw_hearts),
};

}  // namespace

const Family kEffectsFamily{"art/effects.cpp", kRows};

}  // namespace art
