// The marks of the game's (invented) makers.
#include <cmath>
#include <initializer_list>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"
#include "art/relief.h"

namespace art {

namespace {

// A medal's rim of gold round a field of enamel with rays.
void draw_medal(cairo_t* c, double x, double y, double r, Colour field, Colour ray, int rays) {
  const Path rim = circle(x, y, r), inner = circle(x, y, r * 0.86);
  stroke(c, rim, {0.24, 0.09, 0.02}, 10);
  raise(c, rim, ramp({0, y - r}, {1.0, 0.90, 0.36}, {0, y + r}, {0.96, 0.60, 0.06}),
        {r * 0.07, 0.9, 0.8, 0.9});
  stroke(c, inner, {0.40, 0.18, 0.02}, 6);
  raise(c, inner,
        [=](cairo_t* k) {
          set(k, field);
          cairo_paint(k);
          for (int i = 0; i < rays; i++) {
            const double a = kTau * i / rays, half = kTau / rays / 4;
            fill(k,
                 polygon({{x, y},
                          {x + r * std::cos(a - half), y + r * std::sin(a - half)},
                          {x + r * std::cos(a + half), y + r * std::sin(a + half)}}),
                 ray);
          }
        },
        {r * 0.08, -0.7, 0.3, 0});
}

// A ribbon with folded ends across the foot of a mark.
void draw_ribbon(cairo_t* c, double x, double y, double w, double h, Colour colour) {
  for (double side : {-1.0, 1.0}) {
    const double in = x + side * (w / 2 - h * 0.55), out = x + side * (w / 2 + h * 0.42);
    const double t = y - h * 0.24, b = y + h * 0.76;
    const Path end =
        polygon({{in, t}, {out, t}, {out - side * h * 0.30, y + h * 0.26}, {out, b}, {in, b}});
    stroke(c, end, dim(colour, 0.20), 8);
    raise(c, end, ramp({in, 0}, dim(colour, 0.50), {out, 0}, dim(colour, 0.86)), {6, 0.5, 0, 0});
  }
  const Path band = round_rect(x - w / 2, y - h / 2, w, h, 10);
  stroke(c, band, dim(colour, 0.20), 8);
  raise(c, band, ramp({0, y - h / 2}, mix(colour, kWhite, 0.25), {0, y + h / 2}, colour),
        {9, 0.6, 0.5, 0});
}

// A fox with a conjurer's hat and one eye half closed.
ClayScene sly_fox() {
  const Vec fur = linear({0.98, 0.48, 0.12}), cream = linear({1.0, 0.93, 0.80});
  const Vec dark = linear({0.26, 0.10, 0.06});
  ClayPart head;
  head.blend = 0.20f;
  head.gloss = 0.15f;
  head.ball({0, 0, 0}, {1.05f, 0.88f, 0.85f}, fur);
  for (float side : {-1.0f, 1.0f}) {
    head.limb({side * 0.62f, -0.28f, -0.1f}, 0.44f, {side * 1.28f, -0.42f, 0.15f}, 0.07f, cream);
    head.limb({side * 0.86f, 0.36f, 0.1f}, 0.30f, {side * 1.42f, 1.16f, 0.1f}, 0.06f, fur);
  }
  head.limb({0, -0.26f, -0.55f}, 0.46f, {0, -0.46f, -1.20f}, 0.22f, cream);
  head.paint = [=](Vec p, Vec colour) {
    if (p.y > 0.86f && std::fabs(p.x) > 0.9f) return dark;
    // The bridge of the nose is fur again; the grin rises on one side.
    const float grin = -0.66f + 0.52f * p.x * p.x + 0.12f * p.x;
    if (p.z < -0.2f && std::fabs(p.y - grin) < 0.034f && std::fabs(p.x) < 0.66f) return dark;
    const float bridge = step_s(-0.30f, -0.10f, p.y + 0.5f * p.x * p.x);
    return p.z < -0.4f ? lerp(colour, fur, bridge) : colour;
  };
  ClayPart nose;
  nose.blend = 0.05f;
  nose.gloss = 0.9f;
  nose.ball({0, -0.33f, -1.40f}, {0.19f, 0.14f, 0.14f}, linear({0.08, 0.05, 0.08}));

  ClayPart hat;
  hat.blend = 0.06f;
  hat.gloss = 0.45f;
  const float a = -0.16f, k = std::cos(a), s = std::sin(a);
  hat.frame.x = {k, s, 0};
  hat.frame.y = {-s, k, 0};
  hat.frame.at = {0.08f, 0.70f, 0};
  const Vec felt = linear({0.40, 0.16, 0.66});
  hat.ball({0, 0, 0}, {1.10f, 0.14f, 0.95f}, felt);
  hat.limb({0, 0.30f, 0}, 0.58f, {0, 0.62f, 0}, 0.64f, felt);

  hat.paint = [](Vec p, Vec colour) {
    return p.y > 0.13f && p.y < 0.36f ? linear({1.0, 0.78, 0.16}) : colour;
  };
  ClayScene scene{head, nose, hat};
  for (float side : {-1.0f, 1.0f})
    scene.push_back(clay_eye({}, {side * 0.40f, 0.10f, -0.66f}, 0.25f, {0.20f, -0.06f, -1}, 0.80f,
                             fur, 0.30f, {-side * 0.22f, 1, -0.25f}));
  return scene;
}

void draw_mark_slymarvels(const Cell& cell) {
  cairo_t* c = cell.ctx;
  draw_medal(c, 256, 228, 216, {0.13, 0.11, 0.36}, {0.20, 0.17, 0.50}, 16);
  for (Point p : {Point{150, 106}, Point{382, 106}, Point{94, 232}, Point{420, 226}})
    draw_glint(c, p.x, p.y, 20);
  Canvas fox(cell.width, cell.height);
  ClayScene scene = sly_fox();
  clay_draw(fox, scene, {6, 118, {252, 262}}, {0.16, 0.05, 0.03}, 4.5f);
  paint_canvas(c, fox, 0, 0);
  draw_ribbon(c, 256, 418, 420, 92, {0.78, 0.10, 0.34});
  Block style = kGoldLetters;
  style.rim = 6;
  style.depth = 5;
  style.relief.bevel = 8;
  block_words(c, "SLY MARVELS", 74, style, 256, 417, 396);
}

// A glass orb in a ring on which two moons run.
void draw_mark_orb(const Cell& cell) {
  ClayPart orb;
  orb.gloss = 0.9f;
  orb.inked = true;
  orb.ball({0, 0, 0}, {1.42f, 1.42f, 1.42f}, linear({0.10, 0.44, 0.90}));
  orb.paint = [](Vec p, Vec) {
    // Bands that swirl about a tilted axis.
    const float across = 0.86f * p.y + 0.50f * p.x;
    const auto swirl = static_cast<float>(fbm(p.x * 1.3 + 5, p.z * 1.3 + 5, 77, 3)) - 0.5f;
    const float band = 0.5f + 0.5f * std::sin(across * 5.2f + swirl * 5.0f);
    const Vec deep = linear({0.05, 0.20, 0.66}), bright = linear({0.20, 0.74, 1.0});
    const Vec foam = linear({0.80, 0.97, 1.0});
    return lerp(lerp(deep, bright, step_s(0.15f, 0.70f, band)), foam,
                0.8f * step_s(0.88f, 1.0f, band));
  };
  ClayPart ring;
  ring.blend = 0.12f;
  ring.gloss = 0.8f;
  const Vec gold = linear({1.0, 0.70, 0.10});
  const float tilt = 0.34f, lean = -0.30f;
  auto on_ring = [&](float turn, float r) {
    const float a = turn * static_cast<float>(kTau);
    const Vec flat{r * std::cos(a), r * std::sin(a) * std::sin(tilt),
                   r * std::sin(a) * std::cos(tilt)};
    return Vec{flat.x * std::cos(lean) - flat.y * std::sin(lean),
               flat.x * std::sin(lean) + flat.y * std::cos(lean), flat.z};
  };
  const int pieces = 60;
  for (int i = 0; i < pieces; i++)
    ring.limb(on_ring(static_cast<float>(i) / pieces, 2.05f), 0.13f,
              on_ring(static_cast<float>(i + 1) / pieces, 2.05f), 0.13f, gold);
  ClayScene scene{orb, ring};
  struct Moon {
    float turn, size;
    Colour colour;
  };
  for (const Moon& moon :
       {Moon{0.66f, 0.36f, {1.0, 0.36, 0.16}}, Moon{0.90f, 0.24f, {0.56, 0.92, 0.24}}}) {
    ClayPart ball;
    ball.gloss = 0.9f;
    const float r = moon.size;
    ball.ball(on_ring(moon.turn, 2.05f), {r, r, r}, linear(moon.colour));
    scene.push_back(ball);
  }
  Canvas canvas(cell.width, cell.height);
  clay_draw(canvas, scene, {8, 108, {256, 192}}, {0.02, 0.06, 0.22}, 5);
  cairo_t* c = cell.ctx;
  paint_canvas(c, canvas, 0, 0);
  draw_glint(c, 192, 110, 34);
  Block style = kCreamLetters;
  style.top = kWhite;
  style.bottom = {0.58, 0.86, 1.0};
  style.side = {0.10, 0.40, 0.86};
  style.ink = {0.02, 0.07, 0.28};
  style.rim = 9;
  style.depth = 9;
  style.relief = {9, 0.8, 0.8, 0.3};
  block_words(c, "ORB GAMES", 112, style, 256, 440, 496);
}

constexpr CatalogueRow kRows[] = {
    still(PANEL_SLYMARVELS, 512, 512, draw_mark_slymarvels),
    still(PANEL_ORBLOGO, 512, 512, draw_mark_orb),
};

}  // namespace

const Family kMarksFamily{"art/marks.cpp", kRows};

}  // namespace art
