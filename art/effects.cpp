// Short things: rings on the ground, sparks, hearts.
#include <cmath>

#include "art/catalogue.h"
#include "art/palette.h"

namespace art {

namespace {

// A band on the ground, seen from the front and above: broader towards the viewer. The fill rule is
// even-odd, so that the inner edge cuts a hole.
Path ground_band(double x, double y, double r, double wide, double flat) {
  return [=](cairo_t* k) {
    cairo_new_path(k);
    cairo_save(k);
    cairo_translate(k, x, y + wide * 0.10);
    cairo_scale(k, r + wide / 2, (r + wide / 2) * flat + wide * 0.06);
    cairo_new_sub_path(k);
    cairo_arc(k, 0, 0, 1, 0, kTau);
    cairo_restore(k);
    cairo_save(k);
    cairo_translate(k, x, y - wide * 0.06);
    double inner = std::fmax(1, r - wide / 2);
    cairo_scale(k, inner, std::fmax(1, inner * flat - wide * 0.06));
    cairo_new_sub_path(k);
    cairo_arc(k, 0, 0, 1, 0, kTau);
    cairo_restore(k);
    cairo_set_fill_rule(k, CAIRO_FILL_RULE_EVEN_ODD);
  };
}

void draw_rings(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // The game draws it 132 pixels left of the frog at its height, so this point is below the frog's
  // feet.
  const double x = 260, y = 250, flat = 0.40;
  const int rings = 3;
  soft_spot(c, x, y, 104, 104 * flat, {0.66, 1.0, 0.30},
            0.45 + 0.15 * std::cos(kTau * rings * cell.turn()));
  // The outermost first: younger ones are brighter.
  for (int i = rings - 1; i >= 0; i--) {
    double k = std::fmod(rings * cell.turn(), 1.0) / rings + static_cast<double>(i) / rings;
    // It starts fast and slows down, like a wave.
    double out = 1 - std::pow(1 - k, 1.7), r = 40 + 192 * out;
    double alpha = smooth(0, 0.10, k) * (1 - smooth(0.55, 1.0, k)), wide = 26 - 16 * k;
    if (alpha <= 0.01) continue;
    // A glow trails behind the bright lip.
    fill(c, ground_band(x, y, r - wide * 0.75, wide * 1.7, flat), {0.20, 0.80, 0.10}, 0.34 * alpha);
    fill(c, ground_band(x, y, r, wide * 1.15, flat), {0.03, 0.36, 0.03}, 0.70 * alpha);
    fill(c, ground_band(x, y, r, wide * 0.82, flat), {0.36, 0.94, 0.12}, alpha);
    fill(c, ground_band(x, y - 1, r + wide * 0.08, wide * 0.34, flat), {0.92, 1.0, 0.66}, alpha);
  }
}

// Four long points and four short ones.
void glint(cairo_t* c, double x, double y, double size, double turn, Colour colour) {
  fill(c, star(x, y, size * 0.52, size * 0.13, 4, turn + kTau / 8), colour);
  fill(c, star(x, y, size, size * 0.12, 4, turn), colour);
}

void draw_spark(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // A tenth of a second in all: it is largest at once, and then scatters.
  const double t = cell.run(), flash = 0.06 + 0.94 * std::pow(1 - t, 0.8) * smooth(-0.18, 0.16, t);
  soft_spot(c, 64, 64, 46 * flash, 46 * flash, {1, 0.90, 0.30}, 0.9);
  double ring = 14 + 42 * (1 - (1 - t) * (1 - t)), thick = 7 * (1 - t) + 1.4;
  stroke(c, circle(64, 64, ring), {0.90, 0.50, 0.0}, thick + 2, 1 - smooth(0.5, 1.0, t));
  stroke(c, circle(64, 64, ring), {1.0, 0.94, 0.50}, thick, 1 - smooth(0.5, 1.05, t));
  const double size = 58 * flash, turn = 0.5 * t;
  glint(c, 64, 64, size + 3, turn, {0.96, 0.60, 0.04});
  glint(c, 64, 64, size, turn, {1.0, 0.92, 0.36});
  glint(c, 64, 64, size * 0.76, turn, kWhite);
  // Gold dust flies off and glints in turn.
  Rng rng{11};
  for (int i = 0; i < 9; i++) {
    double a = (i + 0.7 * rng.unit()) * kTau / 9, far = rng.range(30, 52), late = rng.unit();
    double out = 1 - (1 - t) * (1 - t), r = 20 + (far - 14) * out;
    double big = 3 + 6.5 * std::fabs(std::sin(kTau * (0.8 * t + late))) * (1 - 0.5 * t);
    Point p{64 + r * std::cos(a), 64 + r * std::sin(a)};
    fill(c, star(p.x, p.y, big + 1.6, big * 0.36 + 1, 4, a), {0.90, 0.50, 0.0});
    fill(c, star(p.x, p.y, big, big * 0.36, 4, a), i % 3 ? kYellow : kWhite);
  }
}

void draw_hearts(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // A rider blows them: they come from its lips, at the lower left, one after the other, and sway
  // as they rise.
  const double t = cell.run();
  struct Start {
    double late, x, top, size, way;
    Colour colour;
  };
  constexpr Start kStarts[] = {{0.26, 17, 33, 7.5, -1, {1.0, 0.36, 0.60}},
                               {0.15, 50, 27, 7.0, 1, {1.0, 0.22, 0.34}},
                               {0.0, 34, 15, 10.0, -1, {0.98, 0.12, 0.36}}};
  for (const Start& s : kStarts) {
    double u = (t - s.late) / (1 - s.late) + (s.late > 0 ? 0 : 0.02);
    if (u <= 0) continue;
    u = std::fmin(u, 1.0);
    double grow = smooth(-0.10, 0.22, u) * (1 + 0.22 * std::sin(kTau * smooth(0.05, 0.4, u)));
    double gone = smooth(0.80, 1.0, u);
    double sway = std::sin(kTau * 1.4 * u) * s.way * (1 - 0.3 * u);
    double out = smooth(0, 0.5, u);
    double x = 14 + (s.x - 14) * out + 3.5 * sway * out;
    double y = 53 - (53 - s.top) * (1 - std::pow(1 - u, 1.4)),
           size = s.size * grow * (1 - 0.70 * gone);
    cairo_save(c);
    cairo_translate(c, x, y);
    cairo_rotate(c, 0.34 * std::cos(kTau * 1.4 * u) * s.way);
    // Squeezed by its beat.
    double beat = 1 + 0.10 * std::sin(kTau * 3 * u);
    cairo_scale(c, beat, 1 / beat);
    puff(c, heart(0, 0, size), s.colour, 0, 0, size * 1.25, 1.8, 0);
    fill(c, ellipse(-size * 0.42, -size * 0.34, size * 0.24, size * 0.16, -0.7), kWhite, 0.95);
    cairo_restore(c);
  }
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_GRN_RINGS, 512, 512, Play::kLoop, draw_rings),
    sheet(SHEET_SPARK, 128, 128, Play::kOnce, draw_spark),
    sheet(SHEET_HEARTS, 64, 64, Play::kOnce, draw_hearts),
};

}  // namespace

const Family kEffectsFamily{"art/effects.cpp", kRows};

}  // namespace art
