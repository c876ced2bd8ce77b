// The bugs of the meadow. Each is in the box at the top left of its cell that the eating rule
// measures, and walks in the direction of its lane.
#include <algorithm>
#include <cmath>

#include "art/bug_model.h"
#include "art/catalogue.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kTurn = static_cast<float>(kTau);
// steps in one run of a sheet: the ground moves too fast for one
constexpr float kSteps = 2;
constexpr float kRight = 1, kLeft = -1;
const Vec kBlackShell = linear({0.17, 0.12, 0.19});

float steps(const Cell& cell) {
  return kSteps * static_cast<float>(cell.turn());
}

// The direction of a point from an ellipsoid's middle, as if it were a sphere.
Vec on_ball(Vec p, Vec centre, Vec radii) {
  Vec d = p - centre;
  return unit({d.x / radii.x, d.y / radii.y, d.z / radii.z});
}

void draw_caterpillar(const Cell& cell) {
  const float turn = static_cast<float>(cell.turn());
  const Vec yellow = linear({1.0, 0.86, 0.16}), orange = linear({1.0, 0.50, 0.08}),
            feet = linear({0.50, 0.16, 0.50});
  Bug bug(kRight, 9, turn);
  constexpr int kSegments = 6;
  // A hump runs from tail to head and pulls the body together.
  auto wave = [&](float i) { return kTurn * (turn - 0.19f * i); };
  for (int i = 0; i < kSegments; i++) {
    const float n = static_cast<float>(i), hump = 0.5f + 0.5f * std::sin(wave(n));
    const float x = -2.20f + 0.66f * n + 0.17f * std::cos(wave(n)), y = 0.58f + 0.62f * hump;
    const float r = i == 0 ? 0.50f : 0.64f;
    for (float side : {-1.0f, 1.0f}) {
      ClayPart& foot = bug.ground_part(0.05f, 0.3f);
      Vec sole{x + 0.12f * std::cos(wave(n)), 0.14f + 0.34f * hump * hump, side * 0.66f};
      foot.limb({x, y - 0.1f, side * 0.36f}, 0.17f, sole, 0.17f, feet);
    }
    ClayPart& s = bug.ground_part(0.04f, 0.5f);
    s.soft = 0.8f;
    s.ball({x, y, 0}, {r * (0.92f + 0.06f * hump), r, r * 1.08f}, i % 2 ? orange : yellow);
    const Vec c{x, y, 0}, dot_colour = i % 2 ? yellow : orange;
    s.paint = [=](Vec p, Vec colour) {
      Vec d = unit(p - c);
      d.z = std::fabs(d.z);
      return dot(d, unit({0, 0.78f, 0.62f})) > 0.93f ? dot_colour : colour;
    };
  }
  const float nod = 0.12f * std::sin(wave(kSegments) - 0.4f);
  bug.sway(0, 0, 0);
  const Vec c{1.98f, 0.98f + nod, 0}, radii{0.76f, 0.74f, 0.80f};
  ClayPart& head = bug.body_part(0.1f, 0.6f);
  head.soft = 0.8f;
  head.ball(c, radii, linear({1.0, 0.72, 0.14}));
  head.paint = [=](Vec p, Vec colour) {
    Vec d = on_ball(p, c, radii);
    float away = std::fabs(d.z + 0.30f);
    if (d.x > 0 && std::fabs(d.y + 0.16f - 0.5f * away * away) < 0.07f && away < 0.42f)
      return linear({0.45, 0.10, 0.08});
    float cheek = dot(d, unit({0.42f, -0.05f, -0.85f}));
    return lerp(colour, linear({1.0, 0.36, 0.36}), 0.7f * step_s(0.93f, 0.97f, cheek));
  };
  bug.feelers({{1.62f, 1.52f + nod, 0.30f},
               1.15f,
               0.09f,
               0.18f,
               104,
               20,
               0.16f,
               10,
               kBlackShell,
               linear({0.95, 0.16, 0.40})});
  bug.eyes({2.24f, 1.36f + nod, 0.42f}, 0.40f, {0.62f, 0.50f, -0.62f});
  bug.draw(cell, 15.9f, {49.5, 51}, 45, 14);
}

void draw_ladybug(const Cell& cell) {
  Bug bug(kRight, 24, steps(cell));
  bug.sway(0.05f, 4, 2.5f);
  bug.legs({0.62f, 0.66f, 0.42f, 0.72f, 0.66f, 0.26f, 0.30f, 0.15f, kBlackShell, kBlackShell});
  const Vec c{-0.30f, 0.55f, 0}, radii{1.30f, 1.16f, 1.20f};
  ClayPart& shell = bug.body_part(0.05f, 0.9f);
  shell.soft = 0.35f;
  shell.metal = 0.22f;
  shell.ball(c, radii, {1.15f, 0.012f, 0.006f});
  shell.paint = [=](Vec p, Vec red) {
    Vec d = on_ball(p, c, radii);
    d.z = std::fabs(d.z);
    struct Spot {
      Vec at;
      float cosine;
    };
    static const Spot spots[] = {{unit({0.62f, 0.66f, 0.46f}), 0.968f},
                                 {unit({-0.10f, 0.72f, 0.62f}), 0.960f},
                                 {unit({-0.78f, 0.50f, 0.42f}), 0.968f},
                                 {unit({0.42f, 0.16f, 0.95f}), 0.970f},
                                 {unit({-0.50f, 0.06f, 0.95f}), 0.970f}};
    if (d.z < 0.055f || d.y < -0.22f) return kBlackShell * 0.6f;
    for (const Spot& s : spots)
      if (dot(d, s.at) > s.cosine) return kBlackShell * 0.6f;
    return red;
  };
  const Vec hc{0.98f, 0.60f, 0}, hr{0.66f, 0.62f, 0.80f};
  ClayPart& head = bug.body_part(0.14f, 0.7f);
  head.ball(hc, hr, kBlackShell);
  head.paint = [=](Vec p, Vec colour) {
    Vec d = on_ball(p, hc, hr);
    return dot({d.x, d.y, std::fabs(d.z)}, unit({-0.1f, 0.45f, 0.9f})) > 0.90f
               ? linear({1.0, 0.96, 0.86})
               : colour;
  };
  bug.feelers(
      {{0.80f, 1.10f, 0.26f}, 1.0f, 0.09f, 0.17f, 94, 20, 0.36f, 12, kBlackShell, kBlackShell});
  bug.eyes({1.34f, 0.92f, 0.42f}, 0.42f, {0.60f, 0.50f, -0.62f});
  bug.draw(cell, 13.5f, {28.6, 36}, 25, 15);
}

void draw_beetle(const Cell& cell) {
  Bug bug(kLeft, 18, steps(cell));
  bug.sway(0.05f, 3.5f, 2.5f);
  const Vec limb = linear({0.34, 0.12, 0.42}), gold = linear({1.0, 0.84, 0.22});
  bug.legs({0.66f, 0.78f, 0.48f, 0.74f, 0.82f, 0.30f, 0.32f, 0.15f, limb, limb});
  const Vec c{-0.52f, 0.62f, 0}, radii{1.45f, 1.10f, 1.20f};
  ClayPart& shell = bug.body_part(0.05f, 0.9f);
  shell.metal = 0.75f;
  shell.ball(c, radii, linear({0.42, 0.36, 1.0}));
  shell.paint = [=](Vec p, Vec) {
    Vec d = on_ball(p, c, radii);
    if (std::fabs(d.z) < 0.05f || d.y < -0.25f) return linear({0.14, 0.05, 0.30});
    // The colour changes with the angle of the surface, as on a real beetle.
    Vec shine = lerp(linear({0.72, 0.26, 1.0}), linear({0.12, 0.62, 1.0}),
                     step_s(-0.3f, 0.75f, d.x + 0.35f * d.z));
    return lerp(shine, linear({0.20, 1.0, 0.90}), step_s(0.35f, 1.0f, d.x - 0.4f * d.y));
  };
  ClayPart& neck = bug.body_part(0.12f, 0.9f);
  neck.metal = 0.6f;
  neck.ball({0.86f, 0.66f, 0}, {0.64f, 0.76f, 1.0f}, linear({0.62, 0.20, 0.86}));
  ClayPart& head = bug.body_part(0.12f, 0.6f);
  head.metal = 0.3f;
  head.ball({1.46f, 0.52f, 0}, {0.54f, 0.50f, 0.64f}, linear({0.44, 0.15, 0.62}));
  ClayPart& horn = bug.body_part(0.22f, 0.9f);
  horn.soft = 0.6f;
  horn.limb({1.84f, 0.62f, 0}, 0.27f, {2.28f, 1.02f, 0}, 0.23f, gold);
  horn.limb({2.28f, 1.02f, 0}, 0.23f, {2.42f, 1.66f, 0}, 0.16f, gold);
  horn.limb({2.42f, 1.66f, 0}, 0.16f, {2.26f, 2.30f, 0}, 0.07f, gold);
  bug.eyes({1.36f, 0.94f, 0.46f}, 0.38f, {0.60f, 0.50f, -0.62f});
  bug.draw(cell, 14.0f, {40.5, 41}, 32, 17);
}

void draw_lightningbug(const Cell& cell) {
  const float turn = static_cast<float>(cell.turn());
  // Swells slowly and fades faster.
  const float swell = 0.5f - 0.5f * std::cos(kTurn * (turn + 0.06f * std::sin(kTurn * turn)));
  const float glow = swell * swell * (3 - 2 * swell);
  Bug bug(kRight, 22, steps(cell));
  bug.sway(0.05f, 4, 2.5f);
  const Vec limb = linear({0.42, 0.18, 0.20});
  bug.legs({0.80f, 0.58f, 0.44f, 0.52f, 0.66f, 0.26f, 0.28f, 0.14f, limb, limb});
  ClayPart& tail = bug.body_part(0.14f, 0.6f);
  tail.soft = 0.6f;
  tail.glow = 0.35f + 0.65f * glow;
  const Vec bulb = lerp(linear({0.80, 0.58, 0.05}), {1.2f, 1.08f, 0.03f}, glow);
  const float full = 1 + 0.07f * glow;
  tail.ball({-0.98f, 0.66f, 0}, {0.98f, 0.76f * full, 0.84f * full}, bulb);
  tail.paint = [=](Vec p, Vec colour) {
    float ring = std::fmod(p.x + 10.05f, 0.52f);
    return ring < 0.10f ? lerp(linear({0.60, 0.45, 0.04}), colour, 0.25f + 0.35f * glow) : colour;
  };
  for (float side : {-1.0f, 1.0f}) {
    ClayPart& wing = bug.body_part(0.05f, 0.9f);
    wing.metal = 0.3f;
    const Vec at{-0.22f, 1.02f + 0.06f * glow, side * 0.46f};
    wing.ball(at, {0.92f, 0.50f, 0.52f}, linear({1.0, 0.93, 0.70}));
    wing.paint = [=](Vec p, Vec colour) {
      return (p.z - at.z) * side < -0.10f ? linear({0.52, 0.20, 0.24}) : colour;
    };
  }
  ClayPart& neck = bug.body_part(0.1f, 0.8f);
  neck.soft = 0.5f;
  neck.ball({0.76f, 0.74f, 0}, {0.52f, 0.62f, 0.84f}, linear({1.0, 0.36, 0.16}));
  ClayPart& head = bug.body_part(0.12f, 0.6f);
  head.ball({1.26f, 0.62f, 0}, {0.52f, 0.52f, 0.64f}, linear({0.36, 0.17, 0.26}));
  bug.feelers({{0.98f, 1.02f, 0.26f}, 0.9f, 0.085f, 0.16f, 94, 20, 0.40f, 12, limb, limb});
  bug.eyes({1.44f, 0.94f, 0.42f}, 0.42f, {0.60f, 0.50f, -0.62f});
  // Its lane is the darkest of the meadow: a pool of light lies round it at all times.
  const double light = 0.55 + 0.45 * glow;
  soft_spot(cell.ctx, 31, 32, 28, 27, {0.96, 1, 0.42}, light);
  for (double size : {1.0, 0.72})
    soft_spot(cell.ctx, 21, 30, 19 * size, (18 + 6 * glow) * size, {1, 0.98, 0.30}, light);
  bug.draw(cell, 13.6f, {33.5, 38}, 24, 12);
  // Light in the air before it.
  soft_spot(cell.ctx, 15, 28, 7, 8, {1, 1, 0.8}, 0.9 * glow);
}

// The big hind legs: thigh up to a knee above the back, shin down to a foot that pushes.
void hind_legs(Bug& bug, float turn, Vec thigh, Vec shin) {
  for (float side : {-1.0f, 1.0f}) {
    Step step = step_at(turn + (side > 0 ? 0 : 0.5f));
    Vec hip = bug.from_body({0.02f, 0.92f, side * 0.52f});
    Vec knee{-1.30f + 0.20f * step.x, 1.98f + 0.16f * step.lift - 0.10f * step.x, side * 0.98f};
    Vec foot{-2.02f + 0.36f * step.x, 0.12f + 0.42f * step.lift, side * 1.18f};
    ClayPart& leg = bug.ground_part(0.08f, 0.6f);
    leg.soft = 0.4f;
    leg.limb(hip, 0.40f, lerp(hip, knee, 0.45f), 0.42f, thigh);
    leg.limb(lerp(hip, knee, 0.45f), 0.42f, knee, 0.22f, thigh);
    leg.ball(knee, {0.24f, 0.24f, 0.24f}, shin);
    leg.limb(knee, 0.17f, foot, 0.13f, shin);
    leg.limb(foot, 0.13f, foot + Vec{0.42f, -0.02f, 0}, 0.14f, shin);
  }
}

void draw_grasshopper(const Cell& cell) {
  const float turn = steps(cell);
  Bug bug(kLeft, 16, turn);
  bug.sway(0.06f, 3, 2.5f);
  const Vec lime = linear({0.86, 0.96, 0.22}), cream = linear({1.0, 0.98, 0.66}),
            cover = linear({0.98, 0.74, 0.16}), shin = linear({0.94, 0.34, 0.14});
  bug.legs({1.10f, 0.72f, 0.70f, 0.42f, 0.66f, 0.24f, 0.32f, 0.14f, shin, shin, 2});
  hind_legs(bug, turn, cover, shin);
  ClayPart& body = bug.body_part(0.22f, 0.6f);
  body.soft = 0.6f;
  body.limb({-2.20f, 0.74f, 0}, 0.24f, {0.20f, 0.98f, 0}, 0.56f, lime);
  body.ball({0.52f, 1.02f, 0}, {0.80f, 0.70f, 0.66f}, lime);
  body.paint = [=](Vec p, Vec colour) {
    Vec c = lerp(cream, colour, step_s(0.50f, 0.72f, p.y - 0.06f * p.x));
    float ring = std::fmod(p.x + 12.0f, 0.46f);
    return p.x < -0.1f && ring < 0.09f ? c * 0.55f : c;
  };
  for (float side : {-1.0f, 1.0f}) {
    ClayPart& wing = bug.body_part(0.06f, 0.8f);
    wing.metal = 0.15f;
    wing.limb({0.30f, 1.36f, side * 0.26f}, 0.30f, {-2.45f, 1.12f, side * 0.16f}, 0.20f,
              linear({0.62, 0.84, 0.14}));
  }
  const Vec c{1.52f, 1.10f, 0}, radii{0.66f, 0.74f, 0.66f};
  ClayPart& head = bug.body_part(0.1f, 0.6f);
  head.soft = 0.6f;
  head.ball(c, radii, lime);
  head.ball({1.74f, 0.80f, 0}, {0.46f, 0.42f, 0.50f}, cream);
  head.paint = [=](Vec p, Vec colour) {
    Vec d = on_ball(p, c, radii);
    float away = std::fabs(d.z + 0.25f);
    if (d.x > 0 && std::fabs(d.y + 0.42f - 0.5f * away * away) < 0.06f && away < 0.45f)
      return linear({0.40, 0.20, 0.04});
    return colour;
  };
  bug.feelers({{1.70f, 1.66f, 0.16f}, 1.45f, 0.075f, 0.11f, 92, 36, 0.16f, 9, shin, shin});
  bug.eyes({1.62f, 1.54f, 0.42f}, 0.42f, {0.62f, 0.45f, -0.64f});
  bug.draw(cell, 16.7f, {53.5, 49}, 42, 16);
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_LIGHTNINGBUG, 64, 64, Play::kLoop, draw_lightningbug),
    sheet(SHEET_LADYBUG, 64, 64, Play::kLoop, draw_ladybug),
    sheet(SHEET_CATERPILLAR, 128, 128, Play::kLoop, draw_caterpillar),
    sheet(SHEET_BEETLE, 128, 128, Play::kLoop, draw_beetle),
    sheet(SHEET_GRASSHOPPER, 128, 128, Play::kLoop, draw_grasshopper),
};

}  // namespace

const Family kBugsFamily{"art/bugs.cpp", kRows};

}  // namespace art
