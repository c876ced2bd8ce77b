#include "art/goal.h"

#include <cmath>
#include <initializer_list>

#include "art/flora.h"
#include "art/palette.h"

namespace art {

namespace {

// The goal surrounds the middle of the pad where the jackpot's figure is.
constexpr Point kGoal{256, 92};
constexpr double kPostTop = 70, kPostFoot = 124;

void draw_sunburst(const Cell& cell) {
  cairo_t* c = cell.ctx;
  const int rays = 14;
  cairo_save(c);
  cairo_rectangle(c, 2, 40, cell.width - 4, cell.height - 42);
  cairo_clip(c);
  cairo_translate(c, kGoal.x, kGoal.y);
  cairo_scale(c, 1.4, 0.62);
  cairo_new_path(c);
  for (int i = 0; i < rays; i++) {
    double a = kTau * (i + cell.turn()) / rays, half = kTau / rays * 0.27;
    cairo_move_to(c, 0, 0);
    cairo_line_to(c, 104 * std::cos(a - half), 104 * std::sin(a - half));
    cairo_line_to(c, 104 * std::cos(a + half), 104 * std::sin(a + half));
    cairo_close_path(c);
  }
  cairo_pattern_t* g = cairo_pattern_create_radial(0, 0, 30, 0, 0, 103);
  cairo_pattern_add_color_stop_rgba(g, 0, 1, 0.94, 0.46, 0.95);
  cairo_pattern_add_color_stop_rgba(g, 0.5, 1, 0.86, 0.28, 0.66);
  cairo_pattern_add_color_stop_rgba(g, 1, 1, 0.80, 0.20, 0);
  cairo_set_source(c, g);
  cairo_fill(c);
  cairo_pattern_destroy(g);
  cairo_restore(c);
}

// A rope between two points.
Point on_rope(Point a, Point b, double sag, double t) {
  Point p = mix(a, b, t);
  return {p.x, p.y + 4 * sag * t * (1 - t)};
}

void draw_bunting(const Cell& cell, Point a, Point b, double sag, int count, int first) {
  cairo_t* c = cell.ctx;
  const Colour flags[] = {kRed, kYellow, {0.20, 0.56, 1.0}, kPink, {0.36, 0.80, 0.22}};
  for (int i = 0; i < count; i++) {
    Point p = on_rope(a, b, sag, (i + 0.10) / count), q = on_rope(a, b, sag, (i + 0.90) / count);
    double blow = 4.5 * sway(cell, 0.11 * (i + first), 2);
    Point tip{(p.x + q.x) / 2 + blow, (p.y + q.y) / 2 + 23}, mid = mix(p, q, 0.5);
    Colour k = flags[(i + first) % 5];
    stroke(c, polygon({p, q, tip}), dim(k, 0.4), 3);
    fill_linear(c, polygon({p, q, tip}), p, mix(k, kWhite, 0.35), {q.x, tip.y}, dim(k, 0.78));
    fill(c, polygon({mid, q, tip}), dim(k, 0.55), 0.35);
  }
  for (double width : {4.4, 2.4}) {
    cairo_new_path(c);
    for (int i = 0; i <= 20; i++) {
      Point p = on_rope(a, b, sag, i / 20.0);
      cairo_line_to(c, p.x, p.y);
    }
    set(c, width > 4 ? kWoodDark : kCream);
    cairo_set_line_width(c, width);
    cairo_stroke(c);
  }
  // Lamps that light up one after the other.
  for (int i = 0; i <= count; i++) {
    Point p = on_rope(a, b, sag, static_cast<double>(i) / count);
    double lit = 0.5 + 0.5 * std::sin(kTau * (2 * cell.turn() - 0.25 * (i + first)));
    if (lit > 0.3) soft_spot(c, p.x, p.y + 3, 11, 11, {1, 0.92, 0.40}, 0.8 * lit);
    fill(c, circle(p.x, p.y + 2, 4.4), kWoodDark);
    fill(c, circle(p.x, p.y + 2, 3.4), mix({0.86, 0.52, 0.06}, {1, 1, 0.82}, lit));
  }
}

// A chequered flag on a post, flying to the given side (1 or -1).
void draw_chequered_flag(const Cell& cell, Point at, double side) {
  cairo_t* c = cell.ctx;
  const int columns = 6, rows = 4;
  auto on = [&](double u, double v) {
    double wave = 3.2 * u * std::sin(kTau * (2 * cell.turn() - 0.8 * u));
    return Point{at.x + side * 42 * u, at.y + 25 * v + wave - 2 * u};
  };
  auto cloth = [&](cairo_t* to) {
    cairo_new_path(to);
    for (int i = 0; i <= 12; i++) cairo_line_to(to, on(i / 12.0, 0).x, on(i / 12.0, 0).y);
    for (int i = 12; i >= 0; i--) cairo_line_to(to, on(i / 12.0, 1).x, on(i / 12.0, 1).y);
    cairo_close_path(to);
  };
  stroke(c, cloth, kInk, 3.4);
  fill(c, cloth, kWhite);
  for (int i = 0; i < columns; i++) {
    for (int j = i % 2; j < rows; j += 2) {
      double u0 = static_cast<double>(i) / columns, u1 = static_cast<double>(i + 1) / columns;
      double v0 = static_cast<double>(j) / rows, v1 = static_cast<double>(j + 1) / rows;
      fill(c, polygon({on(u0, v0), on(u1, v0), on(u1, v1), on(u0, v1)}), kInk);
    }
  }
  cairo_save(c);
  cloth(c);
  cairo_clip(c);
  double fold = std::fmod(0.35 + 2 * cell.turn() / 0.8, 1.25);
  soft_spot(c, on(fold, 0.5).x, at.y + 12, 9, 22, kShade, 0.4);
  cairo_restore(c);
}

void draw_post(const Cell& cell, double x, double top, double side) {
  cairo_t* c = cell.ctx;
  soft_spot(c, x, kPostFoot, 34, 9, kShade, 0.6);
  draw_chequered_flag(cell, {x + side * 3, top - 2}, side);
  const Path pole = capsule({x, top}, 5, {x, kPostFoot - 2}, 6.5);
  stroke(c, pole, {0.34, 0.04, 0.06}, 4);
  fill(c, pole, {1, 0.98, 0.94});
  cairo_save(c);
  pole(c);
  cairo_clip(c);
  for (int i = 0; i < 6; i++) {
    const double y = top - 12 + 13 * i;
    fill(c, polygon({{x - 8, y + 7}, {x + 8, y}, {x + 8, y + 6.5}, {x - 8, y + 13.5}}), kRed);
  }
  fill_linear(c, round_rect(x + 0.5, top - 6, 8, 70, 1), {x, 0}, {0.6, 0.3, 0.4}, {x + 7, 0},
              kShade);
  cairo_restore(c);
  fill_linear(c, capsule({x - 2.4, top + 2}, 1, {x - 2.4, kPostFoot - 6}, 1), {0, top}, kWhite,
              {0, kPostFoot}, {1, 0.86, 0.86});
  puff(c, circle(x, top - 8, 9), kGold, x, top - 8, 10, 2, 0.8);
  double twinkle = 0.5 + 0.5 * std::sin(kTau * (cell.turn() + (side > 0 ? 0.5 : 0)));
  fill(c, star(x - 3, top - 11, 2 + 8 * twinkle, 0.8 + twinkle, 4), kWhite);
  for (double lean : {-1.05, 1.05, -0.55, 0.55})
    draw_leaf(c, {x, kPostFoot + 2}, -kTau / 4 + lean + 0.06 * sway(cell, x * 0.002 + lean), 34, 7,
              6 * lean, mix(kLeafDark, kLeafLight, 0.3 + 0.25 * lean));
}

}  // namespace

void draw_goal(const Cell& cell) {
  cairo_t* c = cell.ctx;
  const double left = 124, right = 388;
  const double ls = sway(cell, 0.24), rs = sway(cell, 0.77), sag = 9 + 1.5 * sway(cell, 0.25);
  draw_sunburst(cell);
  const Point a{left, kPostTop}, b{right, kPostTop};
  draw_bunting(cell, a, b, sag, 13, 0);
  draw_post(cell, left, kPostTop, -1);
  draw_post(cell, right, kPostTop, 1);
  draw_pad(c, 84, 134 + ls, 34, 14, 0.5);
  draw_pad(c, 428, 134 + rs, 34, 14, 2.6);
  draw_lotus(c, 88, 132 + 1.5 * ls, 27, 1 + 0.06 * ls, kPink);
  draw_lotus(c, 424, 132 + 1.5 * rs, 27, 1 + 0.06 * rs, {1.0, 0.70, 0.86});
  draw_lotus(c, 150, 136 + rs, 17, 1 + 0.06 * rs, kCream);
  draw_lotus(c, 362, 136 + ls, 17, 1 + 0.06 * ls, kCream);
}

}  // namespace art
