// Wood with words: the three signs at the screen's foot, the board of the attract sequence, the
// game's name and the marks of its (invented) makers.
#include <cmath>

#include "art/catalogue.h"
#include "art/palette.h"

namespace art {

namespace {

const WordStyle kCarved{Face::kChunky, 60, kGoldLight, {1.0, 0.60, 0.10}, {0.28, 0.11, 0.02}, 5};

void draw_plank(cairo_t* c, double x, double y, double w, double h, double tilt, Colour base,
                uint32_t seed) {
  cairo_save(c);
  cairo_translate(c, x + w / 2, y + h / 2);
  cairo_rotate(c, tilt);
  cairo_translate(c, -w / 2, -h / 2);
  Path board = round_rect(0, 0, w, h, 9);
  puff(c, board, base, w / 2, h / 2, w * 0.62, 3, 0.12);
  cairo_save(c);
  board(c);
  cairo_clip(c);
  Rng rng{seed};
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  for (int i = 0; i < static_cast<int>(h * w / 420); i++) {
    double gy = h * rng.unit(), gx = w * rng.range(-0.1, 0.9), run = w * rng.range(0.08, 0.4);
    bool light = rng.unit() < 0.25;
    set(c, light ? kWoodLight : kWoodDark, light ? 0.5 : rng.range(0.10, 0.36));
    cairo_set_line_width(c, rng.range(0.8, 2.2));
    cairo_move_to(c, gx, gy);
    cairo_curve_to(c, gx + run * 0.3, gy + rng.range(-3, 3), gx + run * 0.7, gy + rng.range(-3, 3),
                   gx + run, gy + rng.range(-2, 2));
    cairo_stroke(c);
  }
  stroke(c, capsule({6, 3}, 0.5, {w - 6, 3}, 0.5), {1, 0.90, 0.66}, 3, 0.5);
  cairo_restore(c);
  for (double nx : {10.0, w - 10})
    puff(c, circle(nx, h / 2, 3.2), {0.62, 0.62, 0.66}, nx, h / 2, 4, 1.2, 0.6);
  cairo_restore(c);
}

void draw_post(cairo_t* c, double x, double top, double foot) {
  puff(c, round_rect(x - 9, top, 18, foot - top, 5), {0.52, 0.32, 0.15}, x - 4, (top + foot) / 2,
       (foot - top) * 0.6, 2.5, 0.1);
}

void draw_sign(const Cell& cell, bool price) {
  cairo_t* c = cell.ctx;
  double s = std::sin(kTau * cell.turn());
  // The words on it stand still, so the board only rocks a little round its middle.
  for (double x : {62.0, 194.0}) draw_post(c, x, 12, 122);
  cairo_translate(c, 128, 58);
  cairo_rotate(c, 0.012 * s);
  cairo_translate(c, -128, -58);
  Colour base = price ? Colour{0.74, 0.47, 0.22} : kWood;
  draw_plank(c, 9, 11, 238, 44, 0.008, base, price ? 3 : 5);
  draw_plank(c, 11, 56, 234, 44, -0.008, dim(base, 0.95), price ? 4 : 6);
  // A sprig at a corner that nods in the wind.
  double x = price ? 236 : 20, way = price ? -1 : 1;
  for (int i = 0; i < 3; i++) {
    double a = -kTau / 4 + way * (-0.7 + 0.55 * i) + 0.10 * s;
    Point foot{x, 104}, tip{x + 20 * std::cos(a), 104 + 20 * std::sin(a)};
    puff(c, leaf(foot, tip, 4.5, 3 * s), mix(kLeaf, kLeafLight, 0.4 * i), x, 95, 14, 1.4, 0.1);
  }
}

void draw_eat_bugs_board(const Cell& cell) {
  cairo_t* c = cell.ctx;
  soft_spot(c, 343, 486, 270, 22, kBlack, 0.45);
  for (double x : {170.0, 516.0}) draw_post(c, x, 236, 496);
  draw_plank(c, 66, 226, 554, 118, -0.012, kWood, 21);
  draw_plank(c, 78, 346, 530, 118, 0.012, dim(kWood, 0.94), 22);
  WordStyle style = kCarved;
  style.size = 104;
  style.rim_width = 8;
  words(c, "EAT BUGS,", style, 343, 286, 520);
  style.top = kWhite;
  style.bottom = {1.0, 0.92, 0.55};
  style.size = 92;
  words(c, "WIN TICKETS!", style, 343, 406, 500);
}

void draw_logo(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // A lily pad, the name on an arc over it, and two eyes that look over the name.
  soft_spot(c, 512, 380, 400, 110, {0.02, 0.10, 0.12}, 0.55);
  Path pad = ellipse(512, 366, 380, 88);
  puff(c, pad, {0.24, 0.62, 0.20}, 512, 366, 380, 4, 0);
  cairo_save(c);
  pad(c);
  cairo_clip(c);
  for (int i = 0; i < 16; i++) {
    double a = i * kTau / 16;
    stroke(c, capsule({512, 366}, 1, {512 + 360 * std::cos(a), 366 + 82 * std::sin(a)}, 0.5),
           {0.62, 0.90, 0.42}, 4, 0.5);
  }
  cairo_restore(c);
  // The "O" of HOP would be hidden by a frog on top of the words, so it looks out from behind them.
  puff(c, ellipse(512, 150, 120, 96), kFrogGreen, 512, 130, 120, 4, 0.35);
  for (double side : {-1.0, 1.0}) {
    puff(c, circle(512 + side * 66, 76, 50), kFrogGreen, 512 + side * 66, 72, 52, 4, 0.3);
    eye(c, 512 + side * 66, 74, 36, {-side * 0.15, 0.55});
  }
  WordStyle style{Face::kChunky, 184, {1, 1, 0.62}, {1.0, 0.62, 0.06}, {0.30, 0.10, 0.02}, 13};
  words_arc(c, "LILY HOP", style, 512, 262, 1700);
  for (Point p : {Point{190, 426}, Point{834, 426}}) {
    for (int i = 0; i < 7; i++) {
      int order = i % 2 ? 6 - i / 2 : i / 2;
      double a = -kTau / 4 + (order - 3) * 0.42;
      puff(c, leaf(p, {p.x + 74 * std::cos(a), p.y + 62 * std::sin(a)}, 18, 0), kPink, p.x,
           p.y - 30, 70, 2.5, 0.15);
    }
    puff(c, ellipse(p.x, p.y - 8, 16, 11), kYellow, p.x, p.y - 8, 16, 2, 0.3);
  }
}

void draw_disc(cairo_t* c, Colour outer, Colour inner) {
  soft_spot(c, 260, 266, 236, 236, kBlack, 0.45);
  puff(c, circle(256, 256, 226), outer, 256, 256, 230, 5, 0.2);
  puff(c, circle(256, 256, 196), inner, 256, 256, 200, 4, 0.25);
}

void draw_mark_slymarvels(const Cell& cell) {
  cairo_t* c = cell.ctx;
  draw_disc(c, {0.96, 0.56, 0.12}, {0.16, 0.14, 0.34});
  // A fox's head in three shapes.
  Colour fur{0.98, 0.50, 0.14};
  for (double side : {-1.0, 1.0})
    puff(c, polygon({{256 + side * 96, 96}, {256 + side * 98, 196}, {256 + side * 26, 160}}), fur,
         256, 150, 110, 4, 0.2);
  puff(c, polygon({{150, 172}, {256, 142}, {362, 172}, {330, 240}, {256, 306}, {182, 240}}), fur,
       256, 200, 110, 4, 0.3);
  for (double side : {-1.0, 1.0}) eye(c, 256 + side * 42, 204, 20, {side * 0.4, 0.2});
  puff(c, ellipse(256, 294, 16, 12), kInk, 256, 294, 16, 2, 0.5);
  WordStyle style{Face::kChunky, 74, kWhite, {1.0, 0.84, 0.50}, {0.20, 0.06, 0.02}, 7};
  words(c, "Sly", style, 256, 350, 380);
  style.size = 62;
  words(c, "Marvels", style, 256, 412, 300);
}

void draw_mark_orb(const Cell& cell) {
  cairo_t* c = cell.ctx;
  soft_spot(c, 262, 240, 230, 220, kBlack, 0.4);
  puff(c, circle(256, 206, 168), {0.14, 0.52, 0.92}, 256, 206, 172, 5, 0.7);
  for (double tilt : {-0.45, 0.45}) {
    stroke(c, ellipse(256, 206, 206, 58, tilt), {0.60, 0.28, 0.02}, 20);
    stroke(c, ellipse(256, 206, 206, 58, tilt), kGold, 12);
  }
  fill(c, star(256, 206, 58, 22, 5), kWhite);
  WordStyle style{Face::kChunky, 112, kWhite, {0.66, 0.88, 1.0}, {0.03, 0.14, 0.40}, 9};
  words(c, "ORB GAMES", style, 256, 436, 480);
}

void draw_mark_tovali(const Cell& cell) {
  cairo_t* c = cell.ctx;
  draw_disc(c, {0.16, 0.56, 0.50}, {0.94, 0.96, 0.86});
  for (int i = 0; i < 3; i++) {
    double x = 176 + 80 * i, tall = i == 1 ? 190 : 130;
    puff(c, polygon({{x - 74, 300}, {x, 300 - tall}, {x + 74, 300}}),
         i == 1 ? Colour{0.10, 0.48, 0.44} : Colour{0.24, 0.66, 0.50}, x, 260, 110, 4, 0.2);
  }
  WordStyle style{Face::kChunky, 96, {0.16, 0.66, 0.60}, {0.04, 0.34, 0.36}, kWhite, 8};
  words(c, "Tovali", style, 256, 360, 340);
}

void draw_mark_play_to_win(const Cell& cell) {
  cairo_t* c = cell.ctx;
  soft_spot(c, 256, 264, 244, 240, kBlack, 0.35);
  puff(c, star(256, 252, 240, 186, 18, 0.08), kRed, 256, 252, 240, 5, 0.2);
  puff(c, circle(256, 252, 170), {1.0, 0.82, 0.16}, 256, 252, 172, 4, 0.3);
  WordStyle style{Face::kChunky, 116, kWhite, {0.86, 0.95, 1.0}, {0.44, 0.02, 0.06}, 10};
  words(c, "PLAY", style, 256, 176, 300);
  style.size = 70;
  words(c, "TO", style, 256, 256);
  style.size = 128;
  words(c, "WIN!", style, 256, 338, 300);
}

constexpr CatalogueRow kRows[] = {
    sheet("anim_wdsign.tga", 2048, 1024, 8, 8, 40, Play::kLoop,
          [](const Cell& c) { draw_sign(c, false); }),
    sheet("anim_lngsign.tga", 2048, 1024, 8, 8, 41, Play::kLoop,
          [](const Cell& c) { draw_sign(c, true); }),
    still("lilyhoplogo.tga", 1024, 512, draw_logo),
    still("slymarvels.tga", 512, 512, draw_mark_slymarvels),
    still("tovali.tga", 512, 512, draw_mark_tovali),
    still("orblogo.tga", 512, 512, draw_mark_orb),
    still("playtowin.tga", 512, 512, draw_mark_play_to_win),
    still("eat_bugs_tck.tga", 1024, 512, draw_eat_bugs_board),
};

}  // namespace

const Family kSignsFamily{"art/signs.cpp", kRows};

}  // namespace art
