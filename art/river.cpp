// What floats on the river: logs and foam.
#include <array>
#include <cmath>

#include "art/catalogue.h"
#include "art/flora.h"
#include "art/palette.h"

namespace art {

namespace {

struct LogLook {
  Colour lit, body, deep, face, ring;
  double gloss;
  bool gold;
};
constexpr LogLook kWoodLog{{0.96, 0.72, 0.44},
                           {0.58, 0.35, 0.17},
                           {0.17, 0.08, 0.04},
                           {0.95, 0.77, 0.50},
                           {0.56, 0.33, 0.14},
                           0.22,
                           false};
constexpr LogLook kGoldLog{{1.0, 0.95, 0.56},
                           {0.98, 0.72, 0.10},
                           {0.50, 0.24, 0.01},
                           {1.0, 0.92, 0.55},
                           {0.84, 0.52, 0.05},
                           0.9,
                           true};

// A log along x. Its cross-section is a circle of this radius; a third of it is under water.
constexpr double kLogRadius = 25.5, kLogFace = 10.5;

struct LogShape {
  double length, middle;  // of its axis: pixels along it, row in the cell
  double roll;            // turned about its axis, radians
  uint32_t seed;
};

// The bark's height, from 0 in the furrows to 1 on the plates, by the position along and round the
// log.
double bark(const LogShape& log, double x, double round) {
  double warp = 7 * (fbm(x / 58, round / 16, log.seed, 2) - 0.4);
  double plates = fbm(x / 44, (round + warp) / 5.4, log.seed + 5, 2);
  double high = smooth(0.02, 0.20, std::fabs(plates - 0.37));
  double grain = fbm(x / 26, (round + warp) / 1.7, log.seed + 9, 2);
  high = 0.78 * high + 0.22 * grain;
  // Knots: rings round an eye, at intervals along the log.
  for (int knot = 0; 78 + 118 * knot < log.length - 30; knot++) {
    const double at = 78 + 118 * knot;
    double jump = 40 * noise(at, 1.5, log.seed + 11), side = 14 * noise(at, 2.5, log.seed + 12) - 8;
    double d = std::hypot((x - at - jump) / 1.7, round - side);
    if (d > 9) continue;
    double rings = 0.5 + 0.5 * std::cos(d * 1.5);
    high += (smooth(1.5, 3.5, d) * (0.35 + 0.65 * rings) - high) * smooth(9, 6.5, d);
  }
  return high;
}

// Moss on the top in long cushions with a hanging fringe.
double moss(const LogShape& log, double x, double across) {
  double cushion = smooth(0.40, 0.56, fbm(x / 52, 5.5, log.seed + 20, 2));
  double fringe = fbm(x / 9, 3.5 + across, log.seed + 24, 2) - 0.4;
  return smooth(0, 0.10, -1 + 0.60 * cushion + 0.7 * fringe * cushion - across);
}

Colour log_colour(const LogShape& log, const LogLook& k, double x, double y) {
  const double across = std::fmin(0.995, std::fmax(-0.995, (y - log.middle) / kLogRadius));
  const double round = kLogRadius * (std::asin(across) + log.roll);
  const double high = bark(log, x, round), bump = k.gold ? 0.9 : 1.5;
  const double slope_x = (bark(log, x + 1.2, round) - high) * bump;
  const double slope_y = (bark(log, x, round + 1.2) - high) * bump;
  // The right end curves away from the viewer.
  const double end = smooth(log.length - 15, log.length, x);
  double nx = end * 0.8 - slope_x, ny = across - slope_y;
  double nz = std::sqrt(std::fmax(0.02, 1 - across * across));
  const double size = std::sqrt(nx * nx + ny * ny + nz * nz);
  nx /= size, ny /= size, nz /= size;
  const double light = std::fmax(0, -0.36 * nx - 0.72 * ny + 0.60 * nz);
  const double shine = std::pow(std::fmax(0, -0.26 * nx - 0.54 * ny + 0.80 * nz), 18);
  Colour out =
      light < 0.55 ? mix(k.deep, k.body, light / 0.55) : mix(k.body, k.lit, (light - 0.55) / 0.45);
  out = mix(dim(out, k.gold ? 0.80 : 0.46), out, smooth(0.05, 0.62, high));
  if (!k.gold) {
    double green = moss(log, x, across), tuft = fbm(x / 3.4, round / 3, log.seed + 30, 2);
    Colour leafy = mix({0.14, 0.32, 0.06}, {0.58, 0.78, 0.22}, clamp01(light * 0.9 + tuft - 0.5));
    out = mix(out, leafy, green);
  }
  // Wet above the waterline, and lit from below by the water.
  const double wet = smooth(0.30, 0.46, across + 0.10 * (fbm(x / 18, 3.5, log.seed, 2) - 0.4));
  out = mix(out, mix(dim(out, 0.72), {0.03, 0.16, 0.20}, 0.18), k.gold ? 0.3 * wet : wet);
  out = mix(out, {0.34, 0.66, 0.72}, 0.34 * smooth(0.45, 0.8, across));
  out = mix(out, kWhite, k.gloss * shine * (0.5 + 0.5 * high) + 0.25 * wet * shine);
  return mix(out, dim(k.deep, 0.6), 0.75 * smooth(0.93, 1, std::fabs(across)));
}

// The sawn end with its rings, which turn with the log.
void draw_log_face(cairo_t* c, const LogShape& log, const LogLook& k) {
  const double x = kLogFace + 3, y = log.middle, rx = kLogFace, ry = kLogRadius - 1;
  auto at = [&](double radius, double a) {
    double wobble = 1 + 0.10 * (noise(3 + std::cos(a), 3 + std::sin(a), log.seed) - 0.5);
    return Point{x + 1 + (rx - 1) * radius * wobble * std::cos(a + log.roll),
                 y + ry * radius * wobble * std::sin(a + log.roll)};
  };
  auto ring = [&](double radius) -> Path {
    return [=](cairo_t* to) {
      cairo_new_path(to);
      for (int i = 0; i < 40; i++) {
        Point p = at(radius, i * kTau / 40);
        cairo_line_to(to, p.x, p.y);
      }
      cairo_close_path(to);
    };
  };
  fill(c, ellipse(x, y, rx + 1.8, ry + 1.2), dim(k.deep, 0.7));
  fill(c, ellipse(x, y, rx, ry), mix(k.deep, k.body, 0.7));
  fill_linear(c, ellipse(x + 0.6, y, rx - 1.8, ry - 2.4), {x - rx, y - ry},
              mix(k.face, kWhite, 0.35), {x + rx, y + ry}, mix(k.face, k.ring, 0.55));
  for (double r : {0.80, 0.64, 0.48, 0.33, 0.19})
    stroke(c, ring(r), k.ring, r > 0.5 ? 1.3 : 1.0, 0.62);
  fill(c, ring(0.09), k.ring, 0.9);
  for (double a : {0.7, 2.9, 4.6})
    draw_blade(c, at(0.2, a), at(0.86, a + 0.1), 0.8, 0, dim(k.ring, 0.7), 0.8);
  soft_spot(c, x - 2, y - ry * 0.45, rx * 0.7, ry * 0.4, kWhite, 0.4);
}

// Water over the log's foot: it circulates once in a loop, so that the log seems to drift.
void draw_waterline(cairo_t* c, double length, double y, double turn) {
  // Waves of three lengths, so that no two crests look the same.
  auto surface = [=](double x) {
    double swell = 0.9 * std::sin(kTau * (x / 61 - turn)) + 0.7 * std::sin(kTau * (x / 23 + turn));
    return y + swell + 0.5 * std::sin(kTau * (x / 37 - 2 * turn) + 2) +
           2.6 * smooth(14, 0, std::fmin(x, length - x));
  };
  auto lay = [&](double down) {
    for (int x = 3; x <= length - 3; x += 2) cairo_line_to(c, x, surface(x) + down);
  };
  cairo_new_path(c);
  lay(0);
  cairo_line_to(c, length - 14, 61);
  cairo_line_to(c, 14, 61);
  cairo_close_path(c);
  cairo_pattern_t* g = cairo_pattern_create_linear(0, y, 0, 61);
  cairo_pattern_add_color_stop_rgba(g, 0, 0.05, 0.34, 0.50, 0.80);
  cairo_pattern_add_color_stop_rgba(g, 0.5, 0.02, 0.20, 0.36, 0.72);
  cairo_pattern_add_color_stop_rgba(g, 1, 0.02, 0.22, 0.40, 0);
  cairo_set_source(c, g);
  cairo_fill(c);
  cairo_pattern_destroy(g);
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(c, CAIRO_LINE_JOIN_ROUND);
  cairo_new_path(c);
  lay(1.2);
  set(c, kFoam, 0.34);
  cairo_set_line_width(c, 4);
  cairo_stroke(c);
  // Foam gathers in places; elsewhere there is only a thin bright line.
  for (int x = 3; x < length - 3; x += 3) {
    double foamy = noise(x / 21.0 + 9, 1.5 + 0.8 * std::sin(kTau * turn), 91);
    cairo_move_to(c, x, surface(x));
    cairo_line_to(c, x + 3, surface(x + 3));
    set(c, kFoam);
    cairo_set_line_width(c, 0.9 + 2.6 * smooth(0.35, 0.8, foamy));
    cairo_stroke(c);
  }
  // Small crests split off from it.
  for (int i = 0; i < static_cast<int>(length / 46); i++) {
    double k = std::fmod(turn + 0.37 * i, 1.0), x = 24 + 46.0 * i + 10 * k, run = 16 + 8 * k;
    draw_blade(c, {x, surface(x) + 2 + 3.5 * k}, {x + run, surface(x) + 2 + 3.5 * k}, 1.1, 1.4,
               kFoam, 0.8 * std::sin(kTau / 2 * k));
  }
}

// A slanting gleam runs along the gold once in a loop.
void draw_gleam(cairo_t* c, const LogShape& log, double turn) {
  const double x = -40 + (log.length + 80) * turn, y = log.middle;
  cairo_pattern_t* g = cairo_pattern_create_linear(x - 20, y - 7, x + 20, y + 7);
  const double stops[][2] = {{0, 0}, {0.25, 0.5}, {0.34, 0.2}, {0.5, 0.9}, {0.66, 0.5}, {1, 0}};
  for (auto [at, alpha] : stops) cairo_pattern_add_color_stop_rgba(g, at, 1, 1, 0.84, alpha);
  cairo_rectangle(c, 0, 0, log.length, y + 15);
  cairo_set_source(c, g);
  cairo_fill(c);
  cairo_pattern_destroy(g);
}

void draw_stars(cairo_t* c, const LogShape& log, double turn) {
  const Point at[] = {{0.24, -11}, {0.45, 2}, {0.63, -13}, {0.84, -3}};
  for (int i = 0; i < 4; i++) {
    double k = std::sin(kTau / 2 * std::fmod(turn + 0.25 * i, 1.0));
    double x = at[i].x * log.length, y = log.middle + at[i].y;
    soft_spot(c, x, y, 11 * k + 1, 11 * k + 1, kGoldLight, 0.7);
    fill(c, star(x, y, 2 + 9 * k * k, 0.6 + 1.4 * k, 4), kWhite);
  }
}

void draw_log(const Cell& cell, int cell_length, bool gold) {
  cairo_t* c = cell.ctx;
  const LogLook& k = gold ? kGoldLog : kWoodLog;
  const double w = cell_length, turn = cell.turn();
  const LogShape log{w, 29.5 + 1.5 * std::sin(kTau * turn), 0.07 * std::cos(kTau * turn),
                     static_cast<uint32_t>(cell_length)};
  cairo_rectangle(c, 0, 2, w, cell.height - 4);
  cairo_clip(c);
  const double top = log.middle - kLogRadius, foot = log.middle + kLogRadius, end = w - 11;
  const Path body = [=](cairo_t* to) {
    cairo_new_path(to);
    cairo_move_to(to, kLogFace + 3, top);
    cairo_line_to(to, end, top);
    cairo_curve_to(to, w - 0.5, top + 4, w - 0.5, foot - 4, end, foot);
    cairo_line_to(to, kLogFace + 3, foot);
    cairo_close_path(to);
  };
  Canvas wood(cell_length, 64);
  paint_pixels(wood, [&](double x, double y) { return log_colour(log, k, x, y); });
  stroke(c, body, dim(k.deep, 0.7), 3);
  cairo_save(c);
  body(c);
  cairo_clip(c);
  paint_canvas(c, wood, 0, 0);
  if (gold) draw_gleam(c, log, turn);
  cairo_restore(c);
  draw_log_face(c, log, k);
  if (gold) draw_stars(c, log, turn);
  draw_waterline(c, w, 51.5 + 0.5 * std::sin(kTau * turn), turn);
}

// A wavelet: a bright crest, its face below, and the dark trough in front.
void draw_wavelet(cairo_t* c, double x, double y, double run, double high, double strength) {
  draw_blade(c, {x + run * 0.06, y + high * 0.9}, {x + run * 0.96, y + high * 1.2}, high * 0.7,
             -high * 0.5, {0.01, 0.20, 0.40}, 0.50 * strength);
  draw_blade(c, {x, y}, {x + run, y + high * 0.3}, high * 0.62, -high, {0.48, 0.82, 0.92},
             0.80 * strength);
  draw_blade(c, {x + run * 0.08, y - high * 0.42}, {x + run * 0.82, y - high * 0.30}, high * 0.24,
             -high * 0.72, kWhite, strength);
}

void draw_foam(const Cell& cell, int which) {
  // Repeats every 473 pixels across; nothing may be beyond, because the neighbour's tile is there.
  const double tile = 473, lowest = 282;
  cairo_t* c = cell.ctx;
  cairo_rectangle(c, 0, 0, tile, lowest);
  cairo_clip(c);
  Rng rng{which == 1 ? 1234u : 98765u};
  // Wavelets come in groups, larger towards the viewer; most of the water is left to the backdrop.
  for (int train = 0; train < 13; train++) {
    double x = tile * rng.unit(), y = 14 + (lowest - 34) * (train + rng.unit()) / 13;
    double near = y / lowest, strength = rng.range(0.38, 0.80);
    int count = 2 + static_cast<int>(3 * rng.unit());
    for (int i = 0; i < count; i++) {
      double run = rng.range(26, 54) * (0.7 + 0.6 * near), high = rng.range(2.2, 3.8) + 1.4 * near;
      double fade = strength * (1 - 0.2 * i), sprinkle = rng.unit();
      for (int copy = -1; copy <= 1; copy++) {
        double at = x + copy * tile;
        draw_wavelet(c, at, y, run, high, fade);
        if (sprinkle < 0.3)
          for (int bubble = 0; bubble < 4; bubble++)
            fill(c,
                 circle(at + run * (0.9 + 0.09 * bubble), y - 1 + 2.4 * std::sin(bubble * 2.1),
                        1.5 - 0.2 * bubble),
                 kFoam, fade);
      }
      x += run * rng.range(0.7, 1.15);
      y += rng.range(-5, 6);
    }
  }
}

constexpr CatalogueRow kRows[] = {
    // A log fills its cell of the lane from edge to edge, so two neighbours meet without a gap.
    sheet(
        SHEET_LOG1, 512, 64, Play::kLoop, [](const Cell& c) { draw_log(c, 386, false); },
        Twin::kNone, kTouchLeft),
    sheet(
        SHEET_LOG3, 512, 64, Play::kLoop, [](const Cell& c) { draw_log(c, 302, false); },
        Twin::kNone, kTouchLeft),
    sheet(
        SHEET_LOG4, 256, 64, Play::kLoop, [](const Cell& c) { draw_log(c, 166, false); },
        Twin::kNone, kTouchLeft),
    sheet(
        SHEET_LOG4GOLD, 256, 64, Play::kLoop, [](const Cell& c) { draw_log(c, 166, true); },
        Twin::kNone, kTouchLeft),
    still(
        PANEL_RIVERFOAM_1, 512, 512, [](const Cell& c) { draw_foam(c, 1); }, kTouchLeft),
    still(
        PANEL_RIVERFOAM_2, 512, 512, [](const Cell& c) { draw_foam(c, 2); }, kTouchLeft),
};

}  // namespace

const Family kRiverFamily{"art/river.cpp", kRows};

}  // namespace art
