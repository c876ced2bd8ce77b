// Green things: the foliage at the screen's edges, cattails, lily pads, the goal, grass and the
// patches that the frogs start from.
#include <cmath>

#include "art/catalogue.h"
#include "art/flora.h"
#include "art/palette.h"

namespace art {

namespace {

double sway(const Cell& cell, double phase, int beats = 1) {
  return std::sin(kTau * (beats * cell.turn() + phase));
}

struct LeafSpec {
  double x, y, angle, length, width, bend, shade;
};

// Leaves of the left edge; the right edge has their mirror image.
constexpr LeafSpec kUpper[] = {{-6, 4, 0.95, 150, 26, 14, 0.0},  {-8, 30, 0.35, 170, 28, 18, 0.5},
                               {-8, -4, 0.42, 190, 26, 22, 0.2}, {60, -8, 1.05, 110, 22, 12, 0.7},
                               {-8, 60, 0.80, 130, 24, 14, 0.9}, {120, -8, 0.85, 84, 18, 8, 0.4}};
constexpr LeafSpec kMiddle[] = {{-8, 150, -0.65, 120, 24, -14, 0.1},
                                {-8, 140, -0.15, 136, 26, 14, 0.6},
                                {-8, 160, 0.30, 128, 24, 14, 0.3},
                                {-8, 120, -0.95, 96, 20, -10, 0.9},
                                {-8, 170, 0.80, 92, 20, 10, 0.8}};
constexpr LeafSpec kLower[] = {
    {20, 262, -1.45, 190, 28, -16, 0.0}, {40, 262, -1.10, 190, 28, 18, 0.5},
    {8, 262, -1.75, 150, 26, -12, 0.3},  {70, 262, -0.75, 160, 26, 20, 0.8},
    {30, 262, -1.28, 140, 24, 10, 1.0},  {100, 262, -1.0, 120, 22, 14, 0.2},
    {130, 262, -0.6, 110, 20, 14, 0.6}};

template <size_t N>
void draw_bunch(const Cell& cell, const LeafSpec (&leaves)[N], double phase) {
  for (size_t i = 0; i < N; i++) {
    const LeafSpec& l = leaves[i];
    double s = sway(cell, phase + 0.13 * static_cast<double>(i));
    draw_leaf(cell.ctx, {l.x, l.y}, l.angle + 0.045 * s, l.length, l.width, l.bend + 5 * s,
              mix(kLeafDark, kLeafLight, 0.25 + 0.55 * l.shade));
  }
}

void draw_plant(const Cell& cell, int which) {
  cairo_t* c = cell.ctx;
  const bool right = which >= 4;
  if (right) {
    cairo_translate(c, cell.width, 0);
    cairo_scale(c, -1, 1);
  }
  double phase = 0.21 * which, s = sway(cell, phase);
  switch (which) {
    case 1:
    case 5:
      draw_bunch(cell, kUpper, phase);
      draw_flower(c, 58 + 3 * s, 74 + 2 * s, 22, which == 1 ? kPink : Colour{1.0, 0.62, 0.20},
                  0.05 * s);
      break;
    case 2:
    case 4:
      draw_bunch(cell, kMiddle, phase);
      draw_flower(c, 46 + 3 * s, 142 + 2 * s, 19, which == 2 ? Colour{0.72, 0.52, 1.0} : kPink,
                  0.05 * s);
      break;
    default:
      draw_bunch(cell, kLower, phase);
      draw_flower(c, 62 + 4 * s, 150 + 2 * s, 24, which == 3 ? kYellow : Colour{0.72, 0.52, 1.0},
                  0.06 * s);
      draw_flower(c, 118 + 3 * s, 196 + 2 * s, 18, kPink, -0.06 * s);
      break;
  }
}

void draw_cattail(const Cell& cell, int which) {
  cairo_t* c = cell.ctx;
  if (which == 2) {
    cairo_translate(c, cell.width, 0);
    cairo_scale(c, -1, 1);
  }
  const double foot = 124;
  struct Stem {
    double x, top, lean;
  };
  for (double x : {46.0, 70.0, 86.0})
    draw_leaf(c, {x, foot}, -kTau / 4 + (x - 66) * 0.013 + 0.05 * sway(cell, x * 0.01), 76, 7,
              5 * sway(cell, x * 0.01), kLeaf);
  for (Stem stem : {Stem{58, 26, -5}, Stem{76, 40, 7}}) {
    double s = sway(cell, stem.x * 0.007);
    Point top{stem.x + stem.lean + 5 * s, stem.top}, mid{stem.x + 1.5 * s, 80};
    set(c, kLeafDark);
    cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
    for (double width : {6.0, 3.4}) {
      if (width < 5) set(c, kLeaf);
      cairo_set_line_width(c, width);
      cairo_move_to(c, stem.x, foot - 3);
      cairo_curve_to(c, stem.x, 100, mid.x, mid.y, top.x, top.y);
      cairo_stroke(c);
    }
    Point low{top.x - (stem.lean + 5 * s) * 0.22, stem.top + 31};
    puff(c, capsule({top.x, top.y + 4}, 7, low, 7), {0.50, 0.28, 0.12}, (top.x + low.x) / 2,
         stem.top + 16, 20, 2, 0.35);
    stroke(c, capsule(top, 0.6, {top.x + 0.5 * s, top.y - 10}, 0.4), {0.45, 0.36, 0.14}, 2);
  }
}

void draw_lily_pad(const Cell& cell) {
  cairo_t* c = cell.ctx;
  double s = sway(cell, 0);
  soft_spot(c, 64, 76, 60, 42, {0.02, 0.10, 0.12}, 0.5);
  draw_pad(c, 64, 64 + 1.2 * s, 55, 38, -0.9 + 0.05 * s);
}

void draw_big_lily_pad(const Cell& cell) {
  cairo_t* c = cell.ctx;
  soft_spot(c, 298, 272, 288, 218, {0.02, 0.08, 0.10}, 0.55);
  draw_pad(c, 295, 251, 276, 206, -0.75);
  draw_lotus(c, 78, 400, 62, 1.0, kPink);
  draw_lotus(c, 512, 404, 70, 1.0, {1.0, 0.72, 0.86});
}

void draw_finish(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // Two posts of reed with a garland of pennants between them; the pad's place stays free.
  const double left = 122, right = 390, top = 66, foot = 122;
  for (double x : {left, right}) {
    double s = sway(cell, x * 0.002);
    soft_spot(c, x, foot, 30, 8, kBlack, 0.4);
    puff(c, capsule({x + 2 * s, top}, 5, {x, foot - 2}, 6), kWoodLight, x, 96, 34, 2, 0.2);
    puff(c, circle(x + 2 * s, top - 6, 8), kGold, x + 2 * s, top - 6, 9, 2, 0.6);
    for (double lean : {-0.5, 0.5, -0.9, 0.9})
      draw_leaf(c, {x, foot}, -kTau / 4 + lean + 0.06 * s, 34, 6, 3 * s, kLeaf);
  }
  double ls = sway(cell, left * 0.002), rs = sway(cell, right * 0.002);
  Point a{left + 2 * ls, top}, b{right + 2 * rs, top};
  double sag = 24 + 3 * sway(cell, 0.25);
  auto on_rope = [&](double t) {
    Point p = mix(a, b, t);
    p.y += 4 * sag * t * (1 - t) * 0.6;
    return p;
  };
  const Colour flags[] = {kRed, kYellow, {0.25, 0.60, 1.0}, kPink, {0.45, 0.85, 0.25}};
  set(c, kWoodDark);
  cairo_set_line_width(c, 2);
  cairo_move_to(c, a.x, a.y);
  for (int i = 1; i <= 20; i++) {
    Point p = on_rope(i / 20.0);
    cairo_line_to(c, p.x, p.y);
  }
  cairo_stroke(c);
  const int count = 11;
  for (int i = 0; i < count; i++) {
    Point p = on_rope((i + 0.2) / count), q = on_rope((i + 0.85) / count);
    double blow = 4 * sway(cell, 0.09 * i, 2);
    Point tip{(p.x + q.x) / 2 + blow, (p.y + q.y) / 2 + 19};
    puff(c, polygon({p, q, tip}), flags[i % 5], p.x + 6, p.y + 6, 14, 1.3, 0.2);
  }
  draw_lotus(c, 92, 128 + 1.5 * ls, 26, 1 + 0.06 * ls, kPink);
  draw_lotus(c, 420, 128 + 1.5 * rs, 26, 1 + 0.06 * rs, {1.0, 0.72, 0.86});
}

void draw_grass(const Cell& cell, bool right) {
  cairo_t* c = cell.ctx;
  const double wide = 680;
  cairo_rectangle(c, 0, 0, wide, cell.height);
  cairo_clip(c);
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  // Blades are a function of their place on the whole screen, so that the halves meet.
  const double shift = right ? 680 : 0;
  for (int row = 0; row < 3; row++) {
    Rng rng{77u + static_cast<uint32_t>(row)};
    const double gap = 3.1 - 0.5 * row;
    for (int i = 0; i < static_cast<int>(1400 / gap); i++) {
      const double x = -20 + gap * i;
      double jitter = rng.range(-3, 3), lean = rng.range(-9, 9), grow = rng.unit();
      double tuft = fbm(x / 34, row * 3.7, 5, 2), pick = rng.unit();
      double foot = 92 + row * 14, tall = (14 + 34 * tuft * tuft * 2) * (0.6 + 0.5 * grow);
      double at = x + jitter - shift;
      if (at < -30 || at > wide + 30) continue;
      Colour k = mix({0.10, 0.38, 0.07}, {0.56, 0.82, 0.22}, 0.2 * row + 0.45 * pick);
      puff(c, leaf({at, foot}, {at + lean, foot - tall}, 2.6, lean * 0.3), k, at, foot - tall / 2,
           tall, 0.7, 0);
    }
  }
}

void draw_patch(const Cell& cell, int which) {
  // Bare earth trodden by frogs, ragged at its rim.
  cairo_t* c = cell.ctx;
  auto blob = [=](double rx, double ry, uint32_t seed) -> Path {
    return [=](cairo_t* k) {
      cairo_new_path(k);
      for (int i = 0; i < 48; i++) {
        double a = i * kTau / 48;
        double r = 1 + 0.16 * (noise(3 + 2 * std::cos(a), 3 + 2 * std::sin(a), seed) - 0.5);
        cairo_line_to(k, 128 + rx * r * std::cos(a), 66 + ry * r * std::sin(a));
      }
      cairo_close_path(k);
    };
  };
  uint32_t seed = which == 1 ? 11 : 23;
  soft_spot(c, 128, 66, 122, 58, {0.10, 0.26, 0.04}, 0.6);
  puff(c, blob(102, 44, seed), {0.62, 0.46, 0.26}, 128, 66, 100, 2, 0);
  fill(c, blob(84, 34, seed + 1), {0.74, 0.58, 0.35});
  fill(c, blob(56, 20, seed + 2), {0.82, 0.67, 0.42});
  Rng rng{seed * 31u};
  for (int i = 0; i < 22; i++) {
    double a = kTau * rng.unit(), r = 0.45 + 0.5 * rng.unit(), size = rng.range(1.5, 4.5);
    puff(c, ellipse(128 + 92 * r * std::cos(a), 66 + 38 * r * std::sin(a), size * 1.3, size),
         {0.60, 0.56, 0.50}, 128, 66, 60, 0.8, 0.1);
  }
  for (int i = 0; i < 40; i++) {
    double a = i * kTau / 40 + rng.range(-0.06, 0.06), lean = rng.range(-5, 5);
    double x = 128 + 102 * std::cos(a), y = 68 + 45 * std::sin(a), tall = rng.range(7, 15);
    puff(c, leaf({x, y}, {x + lean, y - tall}, 2.4, lean * 0.3),
         mix(kLeafDark, kLeafLight, rng.unit()), x, y, tall, 0.7, 0);
  }
}

constexpr CatalogueRow kRows[] = {
    // Foliage hangs in from the screen's edges and is cut there.
    sheet(
        "plants1.tga", 2048, 1024, 8, 4, 31, Play::kLoop, [](const Cell& c) { draw_plant(c, 1); },
        Twin::kNone, kTouchLeft | kTouchTop),
    sheet(
        "plants2.tga", 2048, 1024, 8, 4, 31, Play::kLoop, [](const Cell& c) { draw_plant(c, 2); },
        Twin::kNone, kTouchLeft),
    sheet(
        "plants3.tga", 2048, 2048, 4, 8, 31, Play::kLoop, [](const Cell& c) { draw_plant(c, 3); },
        Twin::kNone, kTouchLeft | kTouchBottom),
    sheet(
        "plants4.tga", 2048, 1024, 8, 4, 31, Play::kLoop, [](const Cell& c) { draw_plant(c, 4); },
        Twin::kNone, kTouchRight),
    sheet(
        "plants5.tga", 2048, 1024, 8, 4, 31, Play::kLoop, [](const Cell& c) { draw_plant(c, 5); },
        Twin::kNone, kTouchRight | kTouchTop),
    sheet(
        "plants6.tga", 2048, 2048, 4, 8, 31, Play::kLoop, [](const Cell& c) { draw_plant(c, 6); },
        Twin::kNone, kTouchRight | kTouchBottom),
    sheet("anim_finish.tga", 4096, 2048, 8, 8, 40, Play::kLoop, draw_finish),
    sheet("anim_lilypad3.tga", 1024, 1024, 8, 8, 40, Play::kLoop, draw_lily_pad),
    sheet("anim_ctail1.tga", 1024, 1024, 8, 8, 40, Play::kLoop,
          [](const Cell& c) { draw_cattail(c, 1); }),
    sheet("anim_ctail2.tga", 1024, 1024, 8, 8, 40, Play::kLoop,
          [](const Cell& c) { draw_cattail(c, 2); }),
    still(
        "grass_lft.tga", 1024, 128, [](const Cell& c) { draw_grass(c, false); },
        kTouchLeft | kTouchBottom),
    still(
        "grass_rt.tga", 1024, 128, [](const Cell& c) { draw_grass(c, true); },
        kTouchLeft | kTouchBottom),
    still("dpatch.tga", 256, 128, [](const Cell& c) { draw_patch(c, 1); }),
    still("dpatch2.tga", 256, 128, [](const Cell& c) { draw_patch(c, 2); }),
    still("lrg_lilypad.tga", 1024, 512, draw_big_lily_pad),
};

}  // namespace

const Family kPlantsFamily{"art/plants.cpp", kRows};

}  // namespace art
