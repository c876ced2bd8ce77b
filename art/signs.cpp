// Wood with words: the three signs at the screen's foot, the board of the attract sequence, the
// game's name and the marks of its (invented) makers.
#include <cmath>

#include "art/catalogue.h"
#include "art/palette.h"
#include "art/relief.h"

namespace art {

namespace {

// Sawn wood: long soft grain that bends round a knot or two; calm where words go.
Colour wood_at(double x, double y, uint32_t seed, Colour base) {
  const double bend = 9 * fbm(x / 90, y / 60, seed, 2);
  const double rings = std::sin((y + bend) * 0.42 + 3 * fbm(x / 160, y / 14, seed + 7, 2));
  const double streak = fbm(x / 70, (y + bend) / 3.2, seed + 13, 3);
  return dim(base, 0.97 + 0.045 * rings + 0.20 * (streak - 0.45));
}

// A slab's outline: straight enough for words, its ends and edges as the tree grew.
Path slab(double x, double y, double w, double h, double wander, uint32_t seed) {
  return [=](cairo_t* c) {
    cairo_new_path(c);
    const int steps = 160;
    for (int i = 0; i < steps; i++) {
      // A squared-off ellipse, its radius swaying with the angle.
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

// A board with its bark on: the dark rim stands up, the sawn face lies a little deeper.
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
            for (double s = -width; s < width; s += thick * 0.72)
              stroke(k, capsule({x + s, at + thick}, 0.4, {x + s + thick * 1.2, at - thick}, 0.4),
                     {0.58, 0.40, 0.18}, thick * 0.15);
          },
          {thick * 0.42, 0.8, 0.2, 0});
  }
}

void draw_nail(cairo_t* c, double x, double y, double r) {
  stroke(c, circle(x, y, r), {0.12, 0.06, 0.03}, r * 0.6);
  raise(c, circle(x, y, r), plain({0.72, 0.70, 0.66}), {r * 0.9, 0.8, 0.8, 0.5});
}

// The board stands still enough to be read: the words on it don't move.
constexpr int kFine = 2;

void draw_sign_board(Canvas& canvas, bool price) {
  cairo_t* c = canvas.ctx;
  cairo_scale(c, kFine, kFine);
  const Colour base = price ? Colour{0.56, 0.34, 0.14} : Colour{0.55, 0.31, 0.13};
  draw_board(c, 6, 13, 244, 97, 8.5, base, price ? 71 : 43);
  for (double x : {44.0, 212.0}) {
    draw_rope(c, x, 12, 20, 7, 3);
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
  // A sprig at a corner that nods in the wind, a moment after the board.
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
