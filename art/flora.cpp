#include "art/flora.h"

#include <cmath>

#include "art/palette.h"

namespace art {

namespace {

// The leaf's curve from its foot: 0 to 1 along it, pixels to its side.
struct Spine {
  Point foot, tip;
  double length, nx, ny;

  Spine(Point f, double angle, double l)
      : foot(f),
        tip{f.x + std::cos(angle) * l, f.y + std::sin(angle) * l},
        length(l),
        nx(-std::sin(angle)),
        ny(std::cos(angle)) {}
  Point at(double along, double side) const {
    Point p = mix(foot, tip, along);
    return {p.x + nx * side, p.y + ny * side};
  }
  // On the middle rib, which bends like leaf().
  Point rib(double t, double bend) const {
    double u = 1 - t, side = 3 * u * u * t * bend * 0.5 + 3 * u * t * t * bend;
    double along = 3 * u * u * t * 0.30 + 3 * u * t * t * 0.75 + t * t * t;
    return at(along, side);
  }
  double half_width(double t, double width) const {
    double u = 1 - t;
    return 3 * u * u * t * width + 3 * u * t * t * width * 0.5;
  }
};

// The half of a leaf on the given side (1 or -1).
Path leaf_half(const Spine& s, double width, double bend, double side) {
  return [=](cairo_t* c) {
    Point a = s.at(0.30, side * width + bend * 0.5), b = s.at(0.75, side * width * 0.5 + bend);
    Point d = s.at(0.75, bend), e = s.at(0.30, bend * 0.5);
    cairo_new_path(c);
    cairo_move_to(c, s.foot.x, s.foot.y);
    cairo_curve_to(c, a.x, a.y, b.x, b.y, s.tip.x, s.tip.y);
    cairo_curve_to(c, d.x, d.y, e.x, e.y, s.foot.x, s.foot.y);
    cairo_close_path(c);
  };
}

void line(cairo_t* c, Point a, Point b, Colour colour, double width, double alpha) {
  cairo_move_to(c, a.x, a.y);
  cairo_line_to(c, b.x, b.y);
  set(c, colour, alpha);
  cairo_set_line_width(c, width);
  cairo_stroke(c);
}

}  // namespace

double sway(const Cell& cell, double phase, int beats) {
  return 0.8 * std::sin(kTau * (beats * cell.turn() + phase)) +
         0.2 * std::sin(kTau * (2 * beats * cell.turn() + 1.7 * phase));
}

std::vector<double> places(Rng& rng, double from, double to, double least, double most) {
  std::vector<double> all;
  all.reserve(static_cast<size_t>(std::fmax(0, (to - from) / least)) + 1);
  double at = from;
  while (at < to) {
    all.push_back(at);
    at += rng.range(least, most);
  }
  return all;
}

void draw_leaf(cairo_t* c, Point foot, double angle, double length, double width, double bend,
               Colour colour) {
  const Spine s(foot, angle, length);
  const Path whole = leaf(foot, s.tip, width, bend);
  const double lit = s.nx * -0.6 + s.ny * -0.8 > 0 ? 1 : -1, big = clamp01(width / 22);
  const Colour dark = mix(dim(colour, 0.42), kShade, 0.25);
  stroke(c, whole, dark, 2.4 + 1.6 * big);
  fill_linear(c, whole, foot, mix(colour, kShade, 0.45), mix(foot, s.tip, 0.75), colour);
  cairo_save(c);
  whole(c);
  cairo_clip(c);
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  fill(c, leaf_half(s, width, bend, -lit), mix(colour, kShade, 0.7), 0.42);
  fill(c, leaf_half(s, width, bend, lit), mix(colour, kSunlight, 0.5), 0.30);
  // The lit edge is as thick as the leaf: it catches the sun.
  stroke(c, leaf_half(s, width, bend, lit), mix(colour, kSunlight, 0.75), 1 + 2.2 * big, 0.5);
  if (width > 9) {
    const int veins = static_cast<int>(length / 17);
    for (int i = 1; i < veins; i++) {
      double t = static_cast<double>(i) / veins, to = std::fmin(1, t + 0.16);
      for (double side : {-1.0, 1.0}) {
        Point from = s.rib(t, bend), rim = s.rib(to, bend);
        double w = side * s.half_width(to, width) * 0.86;
        line(c, from, {rim.x + s.nx * w, rim.y + s.ny * w},
             side == lit ? mix(colour, kSunlight, 0.7) : dark, 1.3, side == lit ? 0.40 : 0.30);
      }
    }
    Point shine = s.rib(0.45, bend);
    double off = lit * width * 0.42;
    soft_spot(c, shine.x + s.nx * off, shine.y + s.ny * off, length * 0.20, width * 0.5, kWhite,
              0.30);
  }
  for (int pass = 0; pass < 2; pass++) {
    cairo_new_path(c);
    for (int i = 0; i <= 12; i++) {
      Point p = s.rib(i / 12.5, bend);
      if (pass == 0) p = {p.x - s.nx * lit * 1.2, p.y - s.ny * lit * 1.2};
      cairo_line_to(c, p.x, p.y);
    }
    set(c, pass ? mix(colour, kSunlight, 0.62) : dark, pass ? 0.9 : 0.5);
    cairo_set_line_width(c, 0.7 + 1.5 * big);
    cairo_stroke(c);
  }
  cairo_restore(c);
}

void draw_blade(cairo_t* c, Point foot, Point tip, double width, double bend, Colour colour,
                double alpha) {
  fill(c, leaf(foot, tip, width, bend), colour, alpha);
}

void draw_fern(cairo_t* c, Point foot, double angle, double length, double bend, Colour colour) {
  const Spine s(foot, angle, length);
  const int pairs = static_cast<int>(length / 10);
  for (int pass = 0; pass < 2; pass++) {
    for (int i = pairs; i >= 1; i--) {
      double t = 0.12 + 0.86 * i / (pairs + 1.0);
      Point at = s.rib(t, bend), next = s.rib(t + 0.02, bend);
      double along = std::atan2(next.y - at.y, next.x - at.x), size = length * 0.33 * (1.06 - t);
      for (double side : {-1.0, 1.0}) {
        double a = along + side * (1.15 - 0.35 * t);
        Point tip{at.x + std::cos(a) * size, at.y + std::sin(a) * size};
        double light = 0.5 - 0.35 * std::cos(a) * 0.6 - 0.35 * std::sin(a) * 0.8;
        Path one = leaf(at, tip, 2.6 + size * 0.10, side * -size * 0.14);
        if (pass == 0)
          stroke(c, one, mix(dim(colour, 0.4), kShade, 0.25), 3);
        else
          fill(c, one, mix(mix(colour, kShade, 0.35), mix(colour, kSunlight, 0.35), light));
      }
    }
  }
  cairo_new_path(c);
  for (int i = 0; i <= 12; i++) {
    Point p = s.rib(i / 12.0, bend);
    cairo_line_to(c, p.x, p.y);
  }
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  set(c, mix(colour, kSunlight, 0.5));
  cairo_set_line_width(c, 1.8);
  cairo_stroke(c);
}

void draw_bush(cairo_t* c, Rng& rng, double x, double y, double r, Colour colour) {
  const Colour deep = mix(dim(colour, 0.42), kShade, 0.35), bright = mix(colour, kSunlight, 0.42);
  soft_spot(c, x + r * 0.25, y, r * 1.3, r * 0.3, kShade, 0.5);
  fill(c, ellipse(x, y - r * 0.42, r * 0.86, r * 0.48), deep);
  const int dabs = static_cast<int>(40 + r * 2.2);
  for (int i = 0; i < dabs; i++) {
    // From back to front, and from the top of the heap outwards.
    double front = static_cast<double>(i) / dabs, a = kTau * rng.unit();
    double spread = std::sqrt(rng.unit());
    double dx = std::cos(a) * spread, dy = std::sin(a) * spread;
    double light = clamp01(0.46 - 0.34 * dx - 0.50 * dy + rng.range(-0.16, 0.16));
    Colour k = light < 0.5 ? mix(deep, colour, light * 2) : mix(colour, bright, light * 2 - 1);
    double size = r * rng.range(0.16, 0.26) * (0.8 + 0.3 * front);
    double turn = std::atan2(dy * 0.6 + 0.25, dx) + rng.range(-0.5, 0.5);
    Point at{x + dx * r * 0.92, y - r * 0.46 + dy * r * 0.5};
    draw_blade(c, {at.x - std::cos(turn) * size, at.y - std::sin(turn) * size},
               {at.x + std::cos(turn) * size, at.y + std::sin(turn) * size}, size * 0.8, 0, k);
  }
}

void draw_stone(cairo_t* c, Rng& rng, double x, double y, double r, Colour colour, double moss) {
  const double rx = r * rng.range(1.15, 1.45), ry = r * rng.range(0.74, 0.92);
  const uint32_t seed = static_cast<uint32_t>(rng.unit() * 9999);
  auto blob = [=](double at_x, double at_y, double kx, double ky) -> Path {
    return [=](cairo_t* k) {
      cairo_new_path(k);
      for (int i = 0; i < 28; i++) {
        double a = i * kTau / 28;
        double w = 0.88 + 0.24 * noise(2 + 1.3 * std::cos(a), 2 + 1.3 * std::sin(a), seed);
        cairo_line_to(k, at_x + kx * w * std::cos(a), at_y + ky * w * std::sin(a));
      }
      cairo_close_path(k);
    };
  };
  const Path body = blob(x, y, rx, ry);
  soft_spot(c, x + rx * 0.25, y + ry * 0.75, rx * 1.35, ry * 0.7, kShade, 0.55);
  stroke(c, body, mix(dim(colour, 0.32), kShade, 0.3), 2.2);
  fill_linear(c, body, {x - rx * 0.5, y - ry}, mix(colour, kWhite, 0.30), {x + rx * 0.5, y + ry},
              mix(dim(colour, 0.52), kShade, 0.25));
  cairo_save(c);
  body(c);
  cairo_clip(c);
  fill(c, blob(x - rx * 0.14, y - ry * 0.26, rx * 0.78, ry * 0.62), mix(colour, kWhite, 0.42),
       0.42);
  fill(c, ellipse(x + rx * 0.1, y + ry * 1.02, rx * 0.9, ry * 0.34), {0.55, 0.70, 0.62}, 0.25);
  const int dabs = static_cast<int>(moss * (8 + r * 2));
  for (int i = 0; i < dabs; i++) {
    double dx = rng.range(-0.8, 0.8), dy = rng.range(-1.0, -0.25 + 0.2 * moss);
    Colour k = mix({0.16, 0.34, 0.08}, {0.56, 0.72, 0.24}, clamp01(0.3 - 0.5 * dx - 0.4 * dy));
    fill(c, ellipse(x + dx * rx, y + dy * ry, r * 0.22, r * 0.15), k, 0.9);
  }
  cairo_restore(c);
  if (moss < 0.4) soft_spot(c, x - rx * 0.36, y - ry * 0.46, rx * 0.34, ry * 0.26, kWhite, 0.65);
}

void draw_flower(cairo_t* c, double x, double y, double r, Colour petal, double angle) {
  soft_spot(c, x + r * 0.12, y + r * 0.22, r * 1.25, r * 1.15, kShade, 0.5);
  for (int i = 0; i < 5; i++) {
    double a = angle + i * kTau / 5, px = x + std::cos(a) * r * 0.58,
           py = y + std::sin(a) * r * 0.58;
    Path one = ellipse(px, py, r * 0.54, r * 0.45, a);
    puff(c, one, petal, x, y, r * 1.1, 1.8, 0);
    cairo_save(c);
    one(c);
    cairo_clip(c);
    soft_spot(c, x, y, r * 0.75, r * 0.75, mix(dim(petal, 0.55), kPinkDark, 0.3), 0.6);
    for (double side : {-0.22, 0.0, 0.22})
      draw_blade(c, {x, y}, {x + std::cos(a + side) * r * 0.92, y + std::sin(a + side) * r * 0.92},
                 r * 0.03, 0, mix(petal, kWhite, 0.6), 0.55);
    soft_spot(c, px - r * 0.16, py - r * 0.2, r * 0.3, r * 0.26, kWhite, 0.42);
    cairo_restore(c);
  }
  puff(c, circle(x, y, r * 0.28), kYellow, x, y, r * 0.3, 1.4, 0.5);
  for (int i = 0; i < 7; i++) {
    double a = angle + i * kTau / 7;
    fill(c, circle(x + std::cos(a) * r * 0.17, y + std::sin(a) * r * 0.17, r * 0.055),
         {0.86, 0.48, 0.04});
  }
}

void draw_daisy(cairo_t* c, double x, double y, double r, Colour petal, double angle) {
  fill(c, ellipse(x + r * 0.3, y + r * 0.62, r * 1.05, r * 0.6), kShade, 0.34);
  const int count = 9;
  for (int i = 0; i < count; i++) {
    double a = angle + i * kTau / count, px = x + std::cos(a) * r * 0.62,
           py = y + std::sin(a) * r * 0.46;
    double light = 0.5 - 0.3 * std::cos(a) - 0.4 * std::sin(a);
    fill(c, ellipse(px, py, r * 0.42, r * 0.22, std::atan2(std::sin(a) * 0.75, std::cos(a))),
         mix(mix(petal, kShade, 0.28), petal, light));
  }
  fill(c, ellipse(x, y + r * 0.04, r * 0.34, r * 0.28), {0.80, 0.50, 0.06});
  fill(c, ellipse(x - r * 0.04, y - r * 0.05, r * 0.29, r * 0.22), {1.0, 0.84, 0.18});
}

void draw_dandelion(cairo_t* c, double x, double y, double r) {
  fill(c, ellipse(x + r * 0.3, y + r * 0.6, r, r * 0.56), kShade, 0.34);
  for (int ring = 0; ring < 3; ring++) {
    double reach = 1 - 0.28 * ring;
    for (int i = 0; i < 13; i++) {
      double a = i * kTau / 13 + ring * 0.24;
      Colour k = mix({0.90, 0.60, 0.04}, {1.0, 0.90, 0.26}, 0.30 * ring - 0.2 * std::sin(a) + 0.2);
      draw_blade(
          c, {x, y - ring * r * 0.08},
          {x + std::cos(a) * r * reach, y - ring * r * 0.08 + std::sin(a) * r * 0.74 * reach},
          r * 0.15, 0, k);
    }
  }
}

void draw_clover(cairo_t* c, double x, double y, double r, double angle, Colour colour) {
  for (int i = 0; i < 3; i++) {
    double a = angle + i * kTau / 3, px = x + std::cos(a) * r * 0.56,
           py = y + std::sin(a) * r * 0.42;
    fill(c, ellipse(px + r * 0.08, py + r * 0.14, r * 0.50, r * 0.40), mix(colour, kShade, 0.6),
         0.6);
    fill(c, ellipse(px, py, r * 0.48, r * 0.38), colour);
    fill(c, ellipse(px - r * 0.10, py - r * 0.08, r * 0.26, r * 0.17), mix(colour, kSunlight, 0.4),
         0.7);
  }
}

void draw_lotus(cairo_t* c, double x, double y, double r, double open, Colour petal) {
  soft_spot(c, x + r * 0.08, y + r * 0.06, r * 0.95, r * 0.26, kShade, 0.5);
  const double reach[] = {1.0, 0.94, 0.78}, spread[] = {0.50, 0.36, 0.22};
  for (int ring = 0; ring < 3; ring++) {
    for (int i = 0; i < 7; i++) {
      // From the outside inwards, so that the middle petals are on top.
      int order = i % 2 ? 6 - i / 2 : i / 2;
      double a = -kTau / 4 + (order - 3) * spread[ring] * open, length = r * reach[ring];
      Point tip{x + std::cos(a) * length, y + std::sin(a) * length * 0.8 + ring * r * 0.05};
      Path one = leaf({x, y + ring * r * 0.05}, tip, r * 0.25, 0);
      Colour k = mix(petal, kWhite, 0.22 * ring);
      stroke(c, one, mix(dim(petal, 0.45), kPinkDark, 0.4), 2.4);
      fill_linear(c, one, {x, y}, mix(k, dim(petal, 0.7), 0.6), tip, mix(k, kWhite, 0.35));
      cairo_save(c);
      one(c);
      cairo_clip(c);
      soft_spot(c, tip.x - r * 0.10, tip.y + r * 0.12, r * 0.22, r * 0.22, kWhite, 0.5);
      cairo_restore(c);
    }
  }
  puff(c, ellipse(x, y - r * 0.04, r * 0.2, r * 0.12), kYellow, x, y, r * 0.22, 1, 0.3);
}

void draw_pad(cairo_t* c, double x, double y, double rx, double ry, double notch) {
  auto pad = [=](double grow, double lift) -> Path {
    return [=](cairo_t* k) {
      cairo_new_path(k);
      cairo_save(k);
      cairo_translate(k, x, y - lift);
      cairo_scale(k, rx * grow, ry * grow);
      // Irregular, not turned on a lathe: the rim swings in and out a little.
      for (int i = 0; i <= 72; i++) {
        double a = notch + 0.13 + (kTau - 0.26) * i / 72;
        double r = 1 - 0.012 * (1 + std::sin(5 * a + 1)) - 0.07 * smooth(0.06, 0, i / 72.0) -
                   0.07 * smooth(0.94, 1, i / 72.0);
        cairo_line_to(k, r * std::cos(a), r * std::sin(a));
      }
      cairo_curve_to(k, 0.6 * std::cos(notch - 0.10), 0.6 * std::sin(notch - 0.10),
                     0.3 * std::cos(notch - 0.04), 0.3 * std::sin(notch - 0.04),
                     0.14 * std::cos(notch), 0.14 * std::sin(notch));
      cairo_curve_to(k, 0.3 * std::cos(notch + 0.04), 0.3 * std::sin(notch + 0.04),
                     0.6 * std::cos(notch + 0.10), 0.6 * std::sin(notch + 0.10),
                     0.9 * std::cos(notch + 0.13), 0.9 * std::sin(notch + 0.13));
      cairo_close_path(k);
      cairo_restore(k);
    };
  };
  const double rim = ry * 0.10;
  // The thick rim rises from the water: first its outside, then the green inside.
  stroke(c, pad(1, 0), {0.03, 0.22, 0.08}, rx * 0.03 + 2);
  fill_linear(c, pad(1, 0), {x - rx, y}, {0.50, 0.72, 0.22}, {x + rx, y + ry}, {0.12, 0.40, 0.16});
  fill_linear(c, pad(0.985, rim * 0.6), {x - rx * 0.7, y - ry}, {0.72, 0.93, 0.40},
              {x + rx * 0.5, y + ry}, {0.26, 0.60, 0.18});
  const Path inside = pad(0.91, rim * 0.2);
  fill_linear(c, inside, {x - rx * 0.6, y - ry * 0.8}, {0.34, 0.72, 0.22},
              {x + rx * 0.6, y + ry * 0.9}, {0.16, 0.52, 0.16});
  cairo_save(c);
  inside(c);
  cairo_clip(c);
  // The rim's shade on the green at the upper left, the sun on its inside at the lower right.
  cairo_save(c);
  cairo_translate(c, rx * 0.035, ry * 0.06);
  for (int i = 3; i >= 1; i--) stroke(c, inside, {0.02, 0.26, 0.08}, rx * 0.045 * i, 0.22);
  cairo_restore(c);
  cairo_save(c);
  cairo_translate(c, -rx * 0.02, -ry * 0.03);
  stroke(c, inside, {0.60, 0.90, 0.36}, rx * 0.035, 0.35);
  cairo_restore(c);
  const Point heart_at{x + rx * 0.1 * std::cos(notch), y + ry * 0.1 * std::sin(notch)};
  const int ribs = 13;
  for (int i = 1; i < ribs; i++) {
    double a = notch + i * kTau / ribs;
    auto on = [&](double k, double turn) {
      return Point{heart_at.x + rx * k * std::cos(a + turn),
                   heart_at.y + ry * k * std::sin(a + turn)};
    };
    draw_blade(c, heart_at, on(0.93, 0), rx * 0.016 + 0.5, 0, {0.10, 0.40, 0.12}, 0.55);
    draw_blade(c, {heart_at.x - 1, heart_at.y - 1}, on(0.93, -0.02), rx * 0.012 + 0.4, 0,
               {0.66, 0.92, 0.44}, 0.75);
    for (double fork : {-0.13, 0.13})
      draw_blade(c, on(0.48, 0), on(0.9, fork), rx * 0.008 + 0.3, 0, {0.62, 0.90, 0.42}, 0.5);
  }
  soft_spot(c, x - rx * 0.34, y - ry * 0.34, rx * 0.5, ry * 0.34, kSunlight, 0.42);
  soft_spot(c, x + rx * 0.4, y + ry * 0.55, rx * 0.6, ry * 0.4, {0.02, 0.26, 0.16}, 0.35);
  cairo_restore(c);
}

void draw_bulrush(cairo_t* c, Point foot, Point top, double size) {
  const Point low = mix(top, foot, 0.34);
  stroke(c, capsule(foot, 0.4, low, 0.3), dim(kLeafDark, 0.5), size * 0.55);
  stroke(c, capsule(foot, 0.2, low, 0.1), mix(kLeaf, kLeafLight, 0.4), size * 0.26);
  Point tip{top.x + (top.x - low.x) * 0.34, top.y + (top.y - low.y) * 0.34};
  stroke(c, capsule(top, 0.3, tip, 0.1), {0.46, 0.36, 0.12}, size * 0.28);
  const Path head = capsule(top, size * 0.46, low, size * 0.5);
  stroke(c, head, {0.17, 0.08, 0.03}, 2.2 + size * 0.1);
  const Point mid = mix(top, low, 0.5);
  const double tall = std::hypot(low.x - top.x, low.y - top.y) + 1e-6;
  const Point across{(low.y - top.y) / tall * size * 0.55, (top.x - low.x) / tall * size * 0.55};
  fill_linear(c, head, {mid.x - across.x, mid.y - across.y}, {0.80, 0.52, 0.26},
              {mid.x + across.x, mid.y + across.y}, {0.30, 0.14, 0.05});
  stroke(c,
         capsule({top.x - size * 0.2, top.y + size * 0.15}, 0.2,
                 {low.x - size * 0.22, low.y - size * 0.25}, 0.2),
         {1.0, 0.82, 0.52}, size * 0.18, 0.7);
}

}  // namespace art
