// The turtles that carry frogs across the river: one, the gold one, and three in a row.
#include <cmath>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr int kStrokes = 25;  // frames of one paddle stroke; a sheet holds two

ClayScene turtle_scene(float turn, bool gold) {
  // Swims to the right.
  ClayScene scene;
  auto part = [&](float blend, float gloss) -> ClayPart& {
    scene.emplace_back();
    scene.back().blend = blend;
    scene.back().gloss = gloss;
    return scene.back();
  };
  float w = std::sin(static_cast<float>(kTau) * turn),
        v = std::cos(static_cast<float>(kTau) * turn);
  Vec plate = linear(gold ? Colour{1, 0.78, 0.12} : Colour{0.90, 0.40, 0.20});
  Vec seam = linear(gold ? Colour{0.70, 0.40, 0.04} : Colour{0.98, 0.80, 0.42});
  Vec skin = linear({0.46, 0.82, 0.42});
  Vec rim = linear(gold ? Colour{1.0, 0.92, 0.50} : Colour{0.98, 0.86, 0.48});
  ClayPart& shell = part(0.02f, gold ? 0.9f : 0.45f);
  shell.ball({0, 0.25f, 0}, {1.72f, 1.05f, 1.48f}, plate);
  shell.paint = [=](Vec p, Vec) {
    // Plates lie in a honeycomb: the seam is where the two nearest middles are equally far.
    const float a = 0.98f;
    float best = 9, second = 9;
    for (int q = -3; q <= 3; q++) {
      for (int r = -3; r <= 3; r++) {
        float hx = a * (static_cast<float>(q) + static_cast<float>(r) * 0.5f);
        float hz = a * 0.866f * static_cast<float>(r);
        float d = std::hypot(p.x - hx, p.z * 1.06f - hz);
        if (d < best) {
          second = best;
          best = d;
        } else if (d < second) {
          second = d;
        }
      }
    }
    float e = second - best;
    Vec c = lerp(plate * 0.55f, plate, step_s(0.10f, 0.34f, e));
    c = lerp(c, lerp(plate, {1, 1, 0.8f}, 0.35f), step_s(0.5f, 0.9f, e));
    return lerp(seam, c, step_s(0.06f, 0.10f, e));
  };
  ClayPart& edge = part(0.05f, 0.35f);
  const int links = 24;
  auto on_rim = [](int i) {
    float a = static_cast<float>(i) * static_cast<float>(kTau) / links;
    return Vec{1.72f * std::cos(a), 0.22f, 1.48f * std::sin(a)};
  };
  for (int i = 0; i < links; i++) edge.limb(on_rim(i), 0.19f, on_rim(i + 1), 0.19f, rim);
  float nod = 0.06f * v;
  ClayPart& head = part(0.25f, 0.35f);
  head.limb({1.4f, 0.25f, 0}, 0.34f, {2.1f, 0.45f + nod, 0}, 0.40f, skin);
  head.ball({2.2f, 0.45f + nod, 0}, {0.52f, 0.44f, 0.50f}, skin);
  for (float side : {-1.0f, 1.0f}) {
    scene.push_back(clay_eye({}, {2.30f, 0.82f + nod, side * 0.30f}, 0.25f, {0.35f, 1, -0.3f},
                             0.72f, skin, 0, {0, 0, 1}));
    ClayPart& fore = part(0.2f, 0.3f);
    Vec tip{1.15f - 0.45f * w, 0.15f + 0.16f * v, side * 2.0f};
    fore.limb({0.9f, 0.12f, side * 1.0f}, 0.36f, tip, 0.28f, skin);
    fore.ball(tip + Vec{0, 0, side * 0.08f}, {0.36f, 0.20f, 0.38f}, skin);
    ClayPart& hind = part(0.2f, 0.3f);
    hind.limb({-1.0f, 0.1f, side * 0.9f}, 0.30f, {-1.60f + 0.28f * w, 0.1f, side * 1.5f}, 0.26f,
              skin);
  }
  ClayPart& tail = part(0.1f, 0.3f);
  tail.limb({-1.5f, 0.12f, 0}, 0.20f, {-2.2f, 0.1f, 0.18f * w}, 0.08f, skin);
  return scene;
}

const Canvas& turtle_tile(int stroke_frame, bool gold) {
  static Memo<int> tiles;
  return tiles.get(stroke_frame + (gold ? kStrokes : 0), 128, 128, [=](Canvas& canvas) {
    float turn = static_cast<float>(stroke_frame) / kStrokes;
    cairo_t* c = canvas.ctx;
    double breath = std::sin(kTau * turn);
    soft_spot(c, 64, 72, 58, 42, {0.02, 0.12, 0.25}, 0.55);
    // Ripples that the strokes send out.
    for (int i = 0; i < 2; i++) {
      double k = std::fmod(turn + 0.5 * i, 1.0);
      stroke(c, ellipse(62, 70, 40 + 20 * k, 27 + 14 * k), kFoam, 2.2 - k,
             0.55 * (1 - k) * smooth(0, 0.2, k));
    }
    ClayScene scene = turtle_scene(turn, gold);
    Canvas clay(128, 128);
    clay_draw(clay, scene, {46, 22.5f, {61, 72 + 1.2 * breath}},
              gold ? Colour{0.30, 0.14, 0} : Colour{0.14, 0.08, 0.05}, 1.6f);
    paint_canvas(c, clay, 0, 0);
  });
}

void draw_turtle(const Cell& cell, bool gold) {
  paint_canvas(cell.ctx, turtle_tile(cell.frame % kStrokes, gold), 0, 0);
  if (!gold) return;
  for (int i = 0; i < 3; i++) {
    double k = 0.5 + 0.5 * std::sin(kTau * (2 * cell.turn() + i / 3.0));
    Point p = i == 0 ? Point{42, 46} : i == 1 ? Point{72, 42} : Point{66, 70};
    if (k > 0.35) fill(cell.ctx, star(p.x, p.y, 9 * k, 1.6 * k, 4), kWhite, 0.95);
  }
}

void draw_three_turtles(const Cell& cell) {
  // Out of step with each other, or they would look like one machine.
  const int ahead[3] = {0, 9, 17};
  for (int i = 0; i < 3; i++)
    paint_canvas(cell.ctx, turtle_tile((cell.frame + ahead[i]) % kStrokes, false), 127.0 * i, 0);
}

constexpr CatalogueRow kRows[] = {
    sheet("anim_3turtles.tga", 2048, 2048, 4, 16, 50, Play::kLoop, draw_three_turtles),
    sheet("anim_1turtle.tga", 1024, 1024, 8, 8, 50, Play::kLoop,
          [](const Cell& c) { draw_turtle(c, false); }),
    sheet("anim_1turtlegold.tga", 1024, 1024, 8, 8, 50, Play::kLoop,
          [](const Cell& c) { draw_turtle(c, true); }),
};

}  // namespace

const Family kTurtlesFamily{"art/turtles.cpp", kRows};

}  // namespace art
