// The butterfly that crosses the field.
#include <cmath>

#include "art/catalogue.h"
#include "art/palette.h"

namespace art {

namespace {

// One wing pair on the right of the body's line; spread tells how far it is opened towards us.
void butterfly_wings(cairo_t* c, double spread) {
  cairo_save(c);
  cairo_scale(c, spread, 1);
  Path lower = leaf({2, 4}, {62, 66}, 34, 6), upper = leaf({2, -2}, {88, -62}, 44, -8);
  puff(c, lower, {1.0, 0.52, 0.10}, 34, 34, 52, 3, 0.3);
  puff(c, upper, {1.0, 0.66, 0.12}, 44, -34, 66, 3, 0.4);
  for (const Path& wing : {lower, upper}) {
    cairo_save(c);
    wing(c);
    cairo_clip(c);
    stroke(c, wing, {0.18, 0.06, 0.16}, 15);
    cairo_restore(c);
  }
  for (double k : {0.25, 0.5, 0.75})
    stroke(c, capsule({4, -2}, 0.5, {78, -76 + 62 * k}, 0.5), {0.40, 0.14, 0.10}, 1.5, 0.55);
  fill(c, ellipse(48, -38, 13, 10, -0.6), {1.0, 0.93, 0.45});
  fill(c, ellipse(38, 40, 9, 8), {0.45, 0.85, 1.0});
  for (Point p : {Point{78, -62}, Point{79, -48}, Point{74, -34}, Point{58, 58}, Point{64, 46}})
    fill(c, circle(p.x, p.y, 2.8), kWhite, 0.9);
  cairo_restore(c);
}

void draw_butterfly(const Cell& cell) {
  cairo_t* c = cell.ctx;
  double flap = std::cos(kTau * 2 * cell.turn());
  // Never quite shut, or it would vanish for a frame.
  double spread = 0.66 + 0.32 * flap;
  cairo_translate(c, 128, 122 - 7 * std::sin(kTau * 2 * cell.turn()));
  cairo_rotate(c, 0.22);
  for (double side : {-1.0, 1.0}) {
    cairo_save(c);
    cairo_scale(c, side, 1);
    // Flying to the right, the wing towards us seems wider.
    butterfly_wings(c, side < 0 ? spread : spread * 0.88);
    cairo_restore(c);
  }
  for (double side : {-1.0, 1.0}) {
    cairo_set_line_width(c, 2.5);
    set(c, kInk);
    cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
    cairo_move_to(c, side * 4, -42);
    cairo_curve_to(c, side * 8, -60, side * 18, -66, side * 22, -72);
    cairo_stroke(c);
    fill(c, circle(side * 22, -72, 3.5), kInk);
  }
  puff(c, capsule({0, -24}, 8, {0, 44}, 4), {0.36, 0.20, 0.40}, 0, 0, 34, 2.2, 0.3);
  puff(c, circle(0, -34, 12), {0.52, 0.30, 0.52}, 0, -34, 14, 2.2, 0.3);
  eye(c, -5.5, -37, 5.5, {0.5, -0.2});
  eye(c, 6.5, -37, 5.5, {0.5, -0.2});
}

constexpr CatalogueRow kRows[] = {
    sheet("anim_butterfly.tga", 2048, 1024, 8, 4, 32, Play::kLoop, draw_butterfly),
};

}  // namespace

const Family kButterflyFamily{"art/butterfly.cpp", kRows};

}  // namespace art
