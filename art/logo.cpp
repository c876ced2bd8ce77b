// The game's name, with the frog that looks over it.
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"
#include "art/relief.h"

namespace art {

namespace {

// Petals round a yellow heart, open towards the viewer.
void draw_water_lily(cairo_t* c, double x, double y, double size) {
  struct Ring {
    int petals;
    double reach, lift;
    Colour root, tip;
  };
  const Ring rings[] = {{9, 1.0, 0.0, {0.90, 0.24, 0.54}, {1.0, 0.62, 0.80}},
                        {7, 0.78, 0.10, {0.96, 0.42, 0.68}, {1.0, 0.80, 0.90}},
                        {5, 0.54, 0.20, {1.0, 0.62, 0.80}, {1.0, 0.93, 0.96}}};
  for (const Ring& ring : rings) {
    for (int i = 0; i < ring.petals; i++) {
      // From the sides to the middle, so that the front ones are on top.
      const int order = i % 2 ? ring.petals - 1 - i / 2 : i / 2;
      const double a = -kTau / 4 + (order - (ring.petals - 1) / 2.0) * (2.7 / ring.petals);
      const Point root{x, y - size * ring.lift * 0.3};
      const Point tip{x + size * ring.reach * std::cos(a),
                      y - size * ring.lift + size * 0.86 * ring.reach * std::sin(a)};
      const Path petal = leaf(root, tip, size * 0.24 * ring.reach + 2, 0);
      stroke(c, petal, {0.42, 0.05, 0.24}, size * 0.07);
      raise(c, petal, ramp(root, ring.root, tip, ring.tip), {size * 0.10, 0.6, 0.3, 0});
    }
  }
  stroke(c, ellipse(x, y - size * 0.14, size * 0.17, size * 0.13), {0.50, 0.26, 0.01}, size * 0.06);
  raise(c, ellipse(x, y - size * 0.14, size * 0.17, size * 0.13), plain(kYellow),
        {size * 0.10, 0.9, 0.5, 0});
}

void draw_logo_pad(cairo_t* c) {
  // The water round the pad sets the name off from any scene behind it.
  const Path water = ellipse(512, 408, 498, 96);
  stroke(c, water, {0.01, 0.10, 0.26}, 10);
  raise(c, water, ramp({0, 312}, {0.12, 0.48, 0.82}, {0, 504}, {0.04, 0.28, 0.62}),
        {16, 0.5, 0.4, 0});
  stroke(c, ellipse(512, 410, 470, 82), {0.62, 0.90, 1.0}, 6, 0.8);
  const Point heart{512, 396};
  const Path pad = [=](cairo_t* k) {
    cairo_new_path(k);
    cairo_save(k);
    cairo_translate(k, heart.x, heart.y);
    cairo_scale(k, 440, 76);
    cairo_move_to(k, 0.25, 0.10);
    cairo_arc(k, 0, 0, 1, 0.62, 0.30 + kTau);
    cairo_restore(k);
    cairo_close_path(k);
  };
  fill(c, moved(pad, 0, 14), {0.02, 0.16, 0.30}, 0.7);
  stroke(c, pad, {0.03, 0.20, 0.05}, 9);
  raise(c, pad,
        [=](cairo_t* k) {
          ramp({0, 320}, {0.56, 0.88, 0.26}, {0, 472}, {0.16, 0.56, 0.16})(k);
          for (int i = 0; i < 18; i++) {
            const double a = (i + 0.5) * kTau / 18;
            stroke(
                k,
                capsule(heart, 2, {heart.x + 410 * std::cos(a), heart.y + 69 * std::sin(a)}, 0.5),
                {0.72, 0.95, 0.44}, 5, 0.55);
          }
        },
        {10, 0.8, 0.3, 0});
}

// The frog's face, all smile, in units of its head.
ClayScene logo_frog() {
  const Vec skin = linear(kFrogGreen), pale = linear({0.86, 0.96, 0.50});
  ClayPart head;
  head.blend = 0.22f;
  head.gloss = 0.30f;
  head.ball({0, 0, 0}, {1.50f, 0.98f, 1.05f}, skin);
  head.ball({0, -0.55f, 0.1f}, {1.15f, 0.75f, 0.9f}, skin);
  for (float side : {-1.0f, 1.0f})
    head.ball({side * 0.78f, 0.82f, -0.10f}, {0.52f, 0.54f, 0.50f}, skin);
  head.paint = [=](Vec p, Vec colour) {
    if (p.z > 0) return colour;
    const float x = p.x, y = p.y;
    const float lip = -0.16f + 0.20f * x * x, jaw = -0.74f + 0.62f * x * x;
    const bool wide = std::fabs(x) < 1.3f;

    if (wide && y < lip && y > jaw) {
      const float tongue = (x * x) / 0.30f + (y + 0.70f) * (y + 0.70f) / 0.075f;
      if (tongue < 1) return linear({0.98, 0.42, 0.46});
      return linear({0.40, 0.04, 0.08});
    }
    if (wide && y < lip + 0.05f && y > jaw - 0.05f) return linear({0.06, 0.26, 0.05});
    for (float side : {-1.0f, 1.0f}) {
      const float nx = x - side * 0.17f, ny = y - 0.20f;
      if (nx * nx / 0.0030f + ny * ny / 0.0075f < 1) return linear({0.06, 0.28, 0.06});
      const float cx = x - side * 1.12f, cy = y - 0.12f;
      const float blush = 1 - step_s(0.5f, 1.0f, cx * cx / 0.09f + cy * cy / 0.05f);
      if (blush > 0) return lerp(colour, linear({0.98, 0.62, 0.36}), 0.75f * blush);
    }
    return lerp(pale, colour, step_s(-0.75f, -0.30f, y - 0.25f * x * x + 0.20f));
  };
  ClayScene scene{head};
  for (float side : {-1.0f, 1.0f})
    scene.push_back(clay_eye({}, {side * 0.78f, 0.86f, -0.36f}, 0.41f, {-side * 0.06f, -0.20f, -1},
                             0.74f, skin, 0.0f, {0, 1, 0}));
  return scene;
}

// Its fingers, over the edge of the letters.
void draw_fingers(cairo_t* c, double x, double y, double way) {
  for (int i : {0, 2, 1}) {
    const Path finger = capsule({x + way * (i - 1) * 29, y - 26}, 13,
                                {x + way * (i - 1) * 35, y + 22 + (i == 1 ? 9 : 0)}, 18);
    stroke(c, finger, {0.03, 0.22, 0.05}, 8);
    raise(c, finger, ramp({0, y - 30}, kFrogGreen, {0, y + 48}, {0.62, 0.94, 0.34}),
          {15, 0.8, 0.6, 0});
  }
}

// The letters side by side on an arc, each leaning as if it had just landed.
Path logo_letters() {
  const std::string text = "LILY HOP";
  const double size = 168, taller = 1.32, gap = 14, space = 40, radius = 2300;
  const double hop[] = {0, 8, -4, 6, 0, -5, 7, 0}, tilt[] = {-3, 4, -3, 3, 0, -3, 3, 4};
  Canvas scratch(8, 8);
  std::vector<double> width;
  double total = -gap;
  for (char ch : text) {
    width.push_back(
        ch == ' ' ? space - gap
                  : words_path(scratch.ctx, std::string(1, ch).c_str(), Face::kChunky, size).width);
    total += width.back() + gap;
  }
  const double fit = 940 / total;
  std::vector<Path> parts;
  double x = -total / 2;
  for (size_t i = 0; i < text.size(); i++) {
    const double middle = (x + width[i] / 2) * fit, angle = middle / radius;
    x += width[i] + gap;
    if (text[i] == ' ') continue;
    parts.push_back([=](cairo_t* c) {
      const char letter[2] = {text[i], 0};
      cairo_save(c);
      cairo_translate(c, 512 + radius * std::sin(angle),
                      296 + radius * (1 - std::cos(angle)) - hop[i]);
      cairo_rotate(c, angle + tilt[i] * kTau / 360);
      cairo_scale(c, fit, fit * taller);
      const Ink ink = words_path(c, letter, Face::kChunky, size);
      cairo_translate(c, -ink.x - ink.width / 2, -ink.y - ink.height / 2);
      words_path(c, letter, Face::kChunky, size);
      cairo_restore(c);
    });
  }
  return joined(std::move(parts));
}

void draw_logo(const Cell& cell) {
  cairo_t* c = cell.ctx;
  draw_logo_pad(c);
  Canvas frog(cell.width, cell.height);
  ClayScene scene = logo_frog();
  clay_draw(frog, scene, {6, 100, {512, 160}}, {0.03, 0.20, 0.05}, 5);
  paint_canvas(c, frog, 0, 0);
  const Path letters = logo_letters();

  Block style = kGoldLetters;
  style.top = {1.0, 0.97, 0.42};
  style.bottom = {1.0, 0.52, 0.04};
  style.side = {0.86, 0.26, 0.04};
  style.ink = {0.26, 0.05, 0.03};
  style.rim = 13;
  style.depth = 18;
  style.relief = {19, 0.95, 0.9, 0.55};
  block(c, letters, style, 215, 385);
  draw_fingers(c, 350, 214, -1);
  draw_fingers(c, 668, 214, 1);
  draw_water_lily(c, 214, 488, 68);
  draw_water_lily(c, 716, 490, 62);
  draw_glint(c, 82, 246, 34);
  draw_glint(c, 838, 232, 26);
}

constexpr CatalogueRow kRows[] = {
    still(PANEL_LILYHOPLOGO, 1024, 512, draw_logo),
};

}  // namespace

const Family kLogoFamily{"art/logo.cpp", kRows};

}  // namespace art
