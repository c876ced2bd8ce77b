// The bugs of the meadow and the butterfly. Each bug lies in the box at its cell's left top that
// the eaten rule measures, and walks the way its lane moves.
#include <cmath>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
constexpr float kPitch = 58;
constexpr Vec kBlackLeg{0.012f, 0.010f, 0.016f};

// All bugs are modelled walking to the right; left is the same seen in a mirror, light and all, so
// it is the model that is mirrored.
struct Bug {
  ClayScene scene;
  float way;  // 1 right, -1 left
  Vec at(float x, float y, float z) const { return {x * way, y, z}; }

  ClayPart& part(float blend, float gloss = 0.35f) {
    scene.emplace_back();
    scene.back().blend = blend;
    scene.back().gloss = gloss;
    return scene.back();
  }

  void eyes(Vec middle, float apart, float radius) {
    for (float side : {-1.0f, 1.0f})
      scene.push_back(clay_eye({}, at(middle.x, middle.y, middle.z + side * apart), radius,
                               {0.45f * way, 0.9f, -0.35f}, 0.72f, {0.1f, 0.1f, 0.1f}, 0,
                               {0, 0, 1}));
  }

  // Six legs in two sets that step in turn, as insects do.
  void legs(float body_half, float reach, float from_x, float gap, float turn, float thick,
            Vec colour, float step = 0.30f) {
    for (int pair = 0; pair < 3; pair++) {
      for (float side : {-1.0f, 1.0f}) {
        bool first = (pair % 2 == 0) == (side > 0);
        float phase = 2 * kPi * turn + (first ? 0 : kPi);
        float x = from_x + gap * static_cast<float>(1 - pair);
        float swing = step * std::sin(phase), raised = 0.22f * std::max(0.0f, std::cos(phase));
        float splay = 0.28f * static_cast<float>(1 - pair);
        ClayPart& leg = part(0.05f, 0.2f);
        Vec hip = at(x, 0.35f, side * body_half * 0.8f);
        Vec knee =
            at(x + swing * 0.6f + splay * 0.5f, 0.50f + raised, side * (body_half + reach * 0.5f));
        Vec foot = at(x + swing + splay, 0.05f + raised, side * (body_half + reach));
        leg.limb(hip, thick, knee, thick * 0.9f, colour);
        leg.limb(knee, thick * 0.9f, foot, thick * 0.7f, colour);
      }
    }
  }

  void feelers(Vec from, Vec to, float apart, float sway, float thick, Vec colour, Vec tip) {
    for (float side : {-1.0f, 1.0f}) {
      ClayPart& f = part(0.03f, 0.2f);
      Vec end = at(to.x, to.y + sway * side, side * (apart + 0.25f) + to.z);
      Vec mid = at((from.x + to.x) / 2 - 0.05f, to.y, side * apart);
      f.limb(at(from.x, from.y, side * apart * 0.5f), thick, mid, thick, colour);
      f.limb(mid, thick, end, thick * 0.8f, colour);
      f.ball(end, {thick * 1.7f, thick * 1.7f, thick * 1.7f}, tip);
    }
  }
};

// The box's middle, a shadow on the grass below, and the scale that makes units pixels.
void draw_bug(const Cell& cell, Bug& bug, float box, float scale, double shadow_rx,
              double shadow_ry, double lower = 0) {
  double m = box / 2;
  soft_spot(cell.ctx, m + 1, m + 3 + lower, shadow_rx, shadow_ry, kBlack, 0.50);
  Canvas canvas(cell.width, cell.height);
  clay_draw(canvas, bug.scene, {kPitch, scale, {m, m + 4 + lower}}, {0.06, 0.07, 0.04}, 1.4f);
  paint_canvas(cell.ctx, canvas, 0, 0);
}

void draw_caterpillar(const Cell& cell) {
  float t = static_cast<float>(cell.turn());
  Bug bug{{}, 1};
  Vec green = linear({0.56, 0.86, 0.20}), dark = linear({0.30, 0.66, 0.18});
  const int segments = 6;
  for (int i = 0; i < segments; i++) {
    float phase = 2 * kPi * (t + static_cast<float>(i) / segments);
    float hump = 0.30f * (0.5f + 0.5f * std::sin(phase));
    float x = -1.95f + 0.66f * static_cast<float>(i) + 0.10f * std::cos(phase);
    ClayPart& s = bug.part(0.04f, 0.4f);
    float r = 0.50f - (i == 0 ? 0.10f : 0);
    s.ball(bug.at(x, 0.50f + hump, 0), {r, r, r * 1.05f}, i % 2 ? dark : green);
    for (float side : {-1.0f, 1.0f}) {
      ClayPart& foot = bug.part(0.05f, 0.2f);
      foot.limb(bug.at(x, 0.40f + hump, side * 0.35f), 0.15f,
                bug.at(x + 0.10f * std::cos(phase), 0.10f + 0.5f * hump, side * 0.66f), 0.13f,
                linear({0.95, 0.55, 0.15}));
    }
  }
  float nod = 0.10f * std::sin(2 * kPi * (t + 0.9f));
  ClayPart& head = bug.part(0.1f, 0.5f);
  head.ball(bug.at(2.0f, 0.78f + nod, 0), {0.66f, 0.62f, 0.66f}, linear({1.0, 0.80, 0.16}));
  bug.eyes({2.16f, 1.24f + nod, 0}, 0.30f, 0.26f);
  bug.feelers({1.95f, 1.25f + nod, 0}, {2.05f, 1.75f + nod, 0}, 0.28f,
              0.08f * std::sin(2 * kPi * t), 0.06f, kBlackLeg, linear(kRed));
  draw_bug(cell, bug, 96, 16.5f, 45, 13, 6);
}

void draw_ladybug(const Cell& cell) {
  float t = static_cast<float>(cell.turn());
  Bug bug{{}, 1};
  bug.legs(0.95f, 0.62f, -0.05f, 0.62f, t, 0.13f, kBlackLeg);
  float bob = 0.05f * std::sin(4 * kPi * t);
  ClayPart& shell = bug.part(0.05f, 0.7f);
  Vec red = linear({0.95, 0.14, 0.10});
  shell.ball({-0.15f, 0.45f + bob, 0}, {1.32f, 0.98f, 1.18f}, red);
  shell.paint = [](Vec p, Vec c) {
    if (std::fabs(p.z) < 0.05f) return kBlackLeg;
    const Vec spots[] = {{0.35f, 0, 0.42f}, {-0.35f, 0, 0.55f}, {-0.95f, 0, 0.34f}};
    for (const Vec& s : spots)
      if (std::hypot(p.x - s.x, std::fabs(p.z) - s.z) < 0.21f) return kBlackLeg;
    return p.x > 0.82f ? kBlackLeg * 2 : c;
  };
  ClayPart& head = bug.part(0.1f, 0.5f);
  head.ball({1.22f, 0.50f + bob, 0}, {0.50f, 0.46f, 0.62f}, {0.02f, 0.018f, 0.024f});
  bug.eyes({1.46f, 0.80f + bob, 0}, 0.34f, 0.23f);
  draw_bug(cell, bug, 54, 14.0f, 25, 15, 2);
}

void draw_beetle(const Cell& cell) {
  float t = static_cast<float>(cell.turn());
  Bug bug{{}, -1};
  Vec leg = linear({0.16, 0.10, 0.30});
  bug.legs(0.85f, 0.80f, -0.05f, 0.70f, t, 0.14f, leg, 0.34f);
  float bob = 0.05f * std::sin(4 * kPi * t);
  ClayPart& shell = bug.part(0.06f, 0.9f);
  shell.ball(bug.at(-0.45f, 0.50f + bob, 0), {1.35f, 0.90f, 1.06f}, linear({0.36, 0.30, 0.92}));
  shell.paint = [](Vec p, Vec c) {
    if (std::fabs(p.z) < 0.05f) return c * 0.12f;
    float band = 0.5f + 0.5f * std::sin(p.x * 5.0f);
    return lerp(c, linear({0.20, 0.72, 0.92}), 0.55f * band);
  };
  ClayPart& neck = bug.part(0.1f, 0.7f);
  neck.ball(bug.at(0.86f, 0.52f + bob, 0), {0.52f, 0.62f, 0.86f}, linear({0.30, 0.18, 0.66}));
  ClayPart& head = bug.part(0.1f, 0.5f);
  head.ball(bug.at(1.40f, 0.48f + bob, 0), {0.42f, 0.42f, 0.52f}, linear({0.20, 0.13, 0.42}));
  for (float side : {-1.0f, 1.0f}) {
    // Jaws that open and close.
    float open = 0.10f * std::sin(2 * kPi * t);
    ClayPart& jaw = bug.part(0.05f, 0.4f);
    jaw.limb(bug.at(1.65f, 0.45f, side * 0.28f), 0.13f, bug.at(2.00f, 0.50f, side * (0.46f + open)),
             0.11f, linear(kGold));
    jaw.limb(bug.at(2.00f, 0.50f, side * (0.46f + open)), 0.11f,
             bug.at(2.30f, 0.50f, side * (0.20f + open)), 0.05f, linear(kGold));
  }
  bug.eyes({1.46f, 0.86f + bob, 0}, 0.36f, 0.24f);
  draw_bug(cell, bug, 72, 14.0f, 32, 19, 2);
}

void draw_lightningbug(const Cell& cell) {
  float t = static_cast<float>(cell.turn());
  Bug bug{{}, 1};
  float bob = 0.08f * std::sin(2 * kPi * t);
  float glow = 0.5f + 0.5f * std::sin(2 * kPi * t);
  bug.legs(0.50f, 0.55f, 0.25f, 0.50f, t, 0.11f, kBlackLeg);
  ClayPart& tail = bug.part(0.08f, 0.5f);
  tail.ball(bug.at(-1.05f, 0.55f + bob, 0), {0.92f, 0.66f, 0.72f},
            lerp(linear({0.80, 0.90, 0.10}), {1.25f, 1.3f, 0.35f}, glow));
  tail.paint = [](Vec p, Vec c) { return std::fmod(p.x + 10.0f, 0.5f) < 0.09f ? c * 0.35f : c; };
  ClayPart& chest = bug.part(0.1f, 0.5f);
  chest.ball(bug.at(0.05f, 0.62f + bob, 0), {0.85f, 0.58f, 0.66f}, linear({0.22, 0.20, 0.28}));
  for (float side : {-1.0f, 1.0f}) {
    float beat = 0.25f * std::sin(4 * kPi * t);
    ClayPart& wing = bug.part(0.05f, 0.8f);
    wing.ball(bug.at(-0.45f, 1.12f + beat + bob, side * 0.62f), {0.95f, 0.10f, 0.40f},
              linear({0.74, 0.90, 1.0}));
  }
  ClayPart& head = bug.part(0.1f, 0.5f);
  head.ball(bug.at(1.05f, 0.66f + bob, 0), {0.52f, 0.48f, 0.58f}, linear({0.92, 0.34, 0.16}));
  bug.eyes({1.25f, 1.02f + bob, 0}, 0.32f, 0.23f);
  bug.feelers({1.25f, 0.9f + bob, 0}, {1.60f, 1.25f, 0}, 0.22f, 0.06f * std::sin(4 * kPi * t),
              0.06f, kBlackLeg, kBlackLeg);
  soft_spot(cell.ctx, 18, 32, 14 + 3 * glow, 15 + 3 * glow, {1, 1, 0.4},
            0.75 * (0.35 + 0.65 * glow));
  draw_bug(cell, bug, 64, 13.5f, 26, 13, 3);
}

void draw_grasshopper(const Cell& cell) {
  float t = static_cast<float>(cell.turn());
  Bug bug{{}, -1};
  Vec green = linear({0.38, 0.74, 0.14}), pale = linear({0.72, 0.90, 0.34});
  // One low hop for each run of the sheet.
  float up = 0.45f * std::max(0.0f, std::sin(2 * kPi * t));
  float press = std::max(0.0f, -std::sin(2 * kPi * t));
  ClayPart& body = bug.part(0.15f, 0.5f);
  body.limb(bug.at(-1.9f, 0.55f + up, 0), 0.26f, bug.at(0.6f, 0.70f + up, 0), 0.50f, green);
  body.paint = [](Vec p, Vec c) {
    return std::fmod(p.x * (p.x > 0 ? 1 : -1) + 0.12f, 0.5f) < 0.10f && p.y < 0.75f ? c * 0.55f : c;
  };
  ClayPart& wing = bug.part(0.05f, 0.5f);
  wing.ball(bug.at(-0.75f, 1.08f + up, 0), {1.30f, 0.16f, 0.34f}, pale);
  ClayPart& head = bug.part(0.12f, 0.5f);
  head.ball(bug.at(1.15f, 0.92f + up, 0), {0.55f, 0.60f, 0.50f}, pale);
  head.limb(bug.at(1.30f, 0.80f + up, 0), 0.36f, bug.at(1.50f, 0.50f + up, 0), 0.24f, pale);
  for (float side : {-1.0f, 1.0f}) {
    ClayPart& hind = bug.part(0.06f, 0.4f);
    Vec hip = bug.at(-0.35f, 0.65f + up, side * 0.40f);
    Vec knee = bug.at(-1.25f + 0.25f * press, 1.45f + up * 0.6f - 0.25f * press, side * 0.86f);
    Vec heel = bug.at(-1.55f - 0.45f * up, 0.12f + 0.5f * up, side * 0.95f);
    hind.limb(hip, 0.30f, knee, 0.17f, green);
    hind.limb(knee, 0.13f, heel, 0.09f, linear({0.86, 0.42, 0.14}));
    hind.limb(heel, 0.09f, heel + bug.at(0.42f, -0.04f, 0), 0.08f, linear({0.86, 0.42, 0.14}));
    for (int i = 0; i < 2; i++) {
      float phase = 2 * kPi * t + (side > 0 ? kPi : 0) + (i ? kPi : 0);
      float x = 0.15f + 0.60f * static_cast<float>(i);
      ClayPart& leg = bug.part(0.05f, 0.2f);
      Vec elbow = bug.at(x + 0.15f, 0.62f + up, side * 0.80f);
      leg.limb(bug.at(x, 0.55f + up, side * 0.35f), 0.12f, elbow, 0.11f, green);
      leg.limb(elbow, 0.11f,
               bug.at(x + 0.30f + 0.25f * std::sin(phase), 0.08f + up * 0.8f, side * 0.95f), 0.08f,
               green);
    }
  }
  bug.eyes({1.30f, 1.36f + up, 0}, 0.34f, 0.27f);
  bug.feelers({1.4f, 1.25f + up, 0}, {1.95f, 1.75f + up, 0}, 0.30f, 0.10f * std::sin(2 * kPi * t),
              0.05f, linear({0.30, 0.50, 0.10}), linear({0.30, 0.50, 0.10}));
  draw_bug(cell, bug, 100, 18.0f, 42, 20, 8);
}

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
    sheet("anim_lightningbug.tga", 256, 256, 4, 4, 16, Play::kLoop, draw_lightningbug),
    sheet("anim_ladybug.tga", 256, 256, 4, 4, 16, Play::kLoop, draw_ladybug),
    sheet("anim_caterpillar.tga", 512, 512, 4, 4, 16, Play::kLoop, draw_caterpillar),
    sheet("anim_beetle.tga", 512, 512, 4, 4, 16, Play::kLoop, draw_beetle),
    sheet("anim_grasshopper.tga", 512, 512, 4, 4, 16, Play::kLoop, draw_grasshopper),
    sheet("anim_butterfly.tga", 2048, 1024, 8, 4, 32, Play::kLoop, draw_butterfly),
};

}  // namespace

const Family kBugsFamily{"art/bugs.cpp", kRows};

}  // namespace art
