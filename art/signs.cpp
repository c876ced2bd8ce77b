// Wooden signs: the three at the foot of the screen and the board of the attract sequence.
#include <cmath>
#include <initializer_list>

#include "art/catalogue.h"
#include "art/palette.h"
#include "art/relief.h"

namespace art {

namespace {

// Sawn wood: long soft grain that bends round a knot or two; even where words go.
Colour wood_at(double x, double y, uint32_t seed, Colour base) {
  const double bend = 9 * fbm(x / 90, y / 60, seed, 2);
  const double rings = std::sin((y + bend) * 0.42 + 3 * fbm(x / 160, y / 14, seed + 7, 2));
  const double streak = fbm(x / 70, (y + bend) / 3.2, seed + 13, 3);
  return dim(base, 0.97 + 0.045 * rings + 0.20 * (streak - 0.45));
}

// The outline of a slab: straight enough for words, with ends and edges as the tree grew.
Path slab(double x, double y, double w, double h, double wander, uint32_t seed) {
  return [=](cairo_t* c) {
    cairo_new_path(c);
    const int steps = 160;
    for (int i = 0; i < steps; i++) {
      // A squared-off ellipse whose radius varies with the angle.
      const double a = kTau * i / steps, k = std::cos(a), s = std::sin(a);
      const double px = std::copysign(std::pow(std::fabs(k), 0.24), k);
      const double py = std::copysign(std::pow(std::fabs(s), 0.24), s);
      const double sway = 1 + wander * (noise(3 * k + 9, 3 * s + 9, seed) - 0.5);
      cairo_line_to(c, x + w / 2 + px * (w / 2 - h * 0.06 + h * 0.06 * sway),
                    y + h / 2 + py * h / 2 * sway);
    }
    cairo_close_path(c);
  };
}

// A board with its bark: the dark rim is raised, the sawn face is a little lower.
void draw_board(cairo_t* c, double x, double y, double w, double h, double rim, Colour base,
                uint32_t seed) {
  const Path bark = slab(x, y, w, h, 0.10, seed);
  const Path face = slab(x + rim, y + rim, w - 2 * rim, h - 2 * rim, 0.08, seed + 1);
  stroke(c, bark, {0.13, 0.06, 0.02}, 5);
  raise(c, bark,
        texture(x - 4, y - 4, w + 8, h + 8,
                [=](double u, double v) {
                  const double k = fbm(u / 9, v / 9, seed + 3, 3);
                  return mix({0.34, 0.19, 0.09}, {0.54, 0.33, 0.16}, smooth(0.25, 0.62, k));
                }),
        {rim * 1.1, 0.9, 0.25, 0});
  stroke(c, face, {0.16, 0.08, 0.03}, rim * 0.30);
  raise(c, face,
        texture(x, y, w, h, [=](double u, double v) { return wood_at(u, v, seed + 5, base); }),
        {rim * 0.45, -0.55, 0, 0});
  cairo_save(c);
  face(c);
  cairo_clip(c);
  // The rim throws its shadow from the upper left.
  for (int i = 1; i <= 4; i++)
    stroke(c, moved(face, -rim * 0.10, -rim * 0.16), {0.12, 0.05, 0.02}, rim * 0.42 * i, 0.11);
  cairo_restore(c);
}

void draw_post(cairo_t* c, double x, double top, double foot, double width) {
  const Path post = round_rect(x - width / 2, top, width, foot - top, width * 0.34);
  stroke(c, post, {0.13, 0.06, 0.02}, 5);
  raise(c, post,
        texture(x - width, top - 4, 2 * width, foot - top + 8,
                [=](double u, double v) {
                  return mix({0.34, 0.19, 0.08}, {0.52, 0.31, 0.14},
                             smooth(0.2, 0.7, fbm(u / 4, v / 24, 31, 3)));
                }),
        {width * 0.46, 0.8, 0.15, 0});
}

// Turns of rope round a post's head and the board's edge, from y downward.
void draw_rope(cairo_t* c, double x, double y, double width, double thick, int turns) {
  for (int i = 0; i < turns; i++) {
    const double at = y + i * thick * 0.86, lean = thick * (i % 2 ? -0.16 : 0.16);
    const Path turn =
        capsule({x - width / 2, at + lean}, thick / 2, {x + width / 2, at - lean}, thick / 2);
    stroke(c, turn, {0.22, 0.12, 0.04}, 2.4);
    raise(c, turn,
          [=](cairo_t* k) {
            set(k, {0.88, 0.72, 0.42});
            cairo_paint(k);

            const int strands = static_cast<int>(2 * width / (thick * 0.72)) + 1;
            for (int j = 0; j < strands; j++) {
              const double s = x - width + j * thick * 0.72;
              stroke(k, capsule({s, at + thick}, 0.4, {s + thick * 1.2, at - thick}, 0.4),
                     {0.58, 0.40, 0.18}, thick * 0.15);
            }
          },
          {thick * 0.42, 0.8, 0.2, 0});
  }
}

void draw_nail(cairo_t* c, double x, double y, double r) {
  stroke(c, circle(x, y, r), {0.12, 0.06, 0.03}, r * 0.6);
  raise(c, circle(x, y, r), plain({0.72, 0.70, 0.66}), {r * 0.9, 0.8, 0.8, 0.5});
}

// The board hardly moves, so that the words on it stay still and readable.
constexpr int kFine = 2;

void draw_sign_board(Canvas& canvas, bool price) {
  cairo_t* c = canvas.ctx;
  cairo_scale(c, kFine, kFine);
  const Colour base = price ? Colour{0.56, 0.34, 0.14} : Colour{0.55, 0.31, 0.13};
  draw_board(c, 6, 13, 244, 97, 8.5, base, price ? 71 : 43);
  for (double x : {44.0, 212.0}) {
    draw_rope(c, x, 10.5, 20, 6.4, 3);
    draw_nail(c, x, 101.5, 3.2);
  }
}

void draw_sign(const Cell& cell, bool price) {
  static Memo<bool> boards;
  cairo_t* c = cell.ctx;
  const double a = kTau * cell.turn(), s = std::sin(a), late = std::sin(a - 0.9);
  for (double x : {44.0, 212.0}) draw_post(c, x, 5, 122, 17);
  const Canvas& board = boards.get(price, cell.width * kFine, cell.height * kFine,
                                   [=](Canvas& canvas) { draw_sign_board(canvas, price); });
  cairo_save(c);
  cairo_translate(c, 128, 58 + 0.4 * std::cos(2 * a));
  cairo_rotate(c, 0.011 * s);
  cairo_scale(c, 1.0 / kFine, 1.0 / kFine);
  paint_canvas(c, board, -128 * kFine, -58 * kFine);
  cairo_restore(c);
  // A twig at a corner that nods in the wind, a moment after the board.
  const double x = price ? 226 : 30, way = price ? -1 : 1;
  for (int i = 0; i < 4; i++) {
    const double lean = -kTau / 4 + way * (-0.9 + 0.55 * i) + (0.10 + 0.03 * i) * late;
    const Point foot{x, 112}, tip{x + 24 * std::cos(lean), 112 + 26 * std::sin(lean)};
    const Path blade = leaf(foot, tip, 6.5, 3 * late);
    stroke(c, blade, kForest, 3);
    raise(c, blade, ramp(tip, kLeafLight, foot, kLeaf), {4, 0.7, 0.3, 0});
  }
}

void draw_eat_bugs_board(const Cell& cell) {
  cairo_t* c = cell.ctx;
  soft_spot(c, 343, 486, 250, 20, kBlack, 0.45);
  for (double x : {150.0, 536.0}) draw_post(c, x, 206, 494, 40);
  draw_board(c, 58, 222, 570, 244, 20, {0.58, 0.33, 0.13}, 97);
  for (double x : {150.0, 536.0}) {
    draw_rope(c, x, 222, 48, 15, 3);
    draw_nail(c, x, 446, 7);
  }
  Block style = kGoldLetters;
  style.rim = 8;
  block_words(c, "EAT BUGS,", 112, style, 343, 304, 500);
  style = kCreamLetters;
  style.rim = 8;
  style.depth = 6;
  style.relief.bevel = 10;
  block_words(c, "WIN TICKETS!", 92, style, 343, 402, 510);
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_WDSIGN, 256, 128, Play::kLoop, [](const Cell& c) { draw_sign(c, false); }),
    sheet(SHEET_LNGSIGN, 256, 128, Play::kLoop, [](const Cell& c) { draw_sign(c, true); }),
    still(PANEL_EAT_BUGS_TCK, 1024, 512, draw_eat_bugs_board),
};

}  // namespace

const Family kSignsFamily{"art/signs.cpp", kRows};

}  // namespace art
