// The frog that eats bugs over its board in the attract sequence.
#include <algorithm>
#include <array>
#include <cmath>

#include "art/catalogue.h"
#include "art/frog_model.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
constexpr ClayCamera kCamera{34, 81, {256, 428}};
constexpr Colour kOutline{0.03, 0.18, 0.05};

// A point of the picture as a point of the world, at the given distance ahead of the frog.
Vec in_world(Point p, float z) {
  const float a = kCamera.pitch_deg * kPi / 180, s = std::sin(a), k = std::cos(a);
  float x = static_cast<float>(p.x - kCamera.origin.x) / kCamera.px_per_unit;
  float v = static_cast<float>(kCamera.origin.y - p.y) / kCamera.px_per_unit;
  return {x, (v - z * s) / k, z};
}

// The bugs are those of the meadow, but flying: a ladybug, a lightning bug and a beetle.
enum class Prey { kLadybug, kLightningbug, kBeetle };

struct Flight {
  Vec at;
  float heading;  // -1 flies to the left, 1 to the right
  float size;
  float beat;   // of the wings, in cycles
  float panic;  // 1: the eyes pop
};

struct PreyParts {
  ClayScene& scene;
  ClayFrame frame;
  float size;

  ClayPart& part(float blend, float gloss) {
    scene.emplace_back();
    scene.back().blend = blend * size;
    scene.back().gloss = gloss;
    scene.back().frame = frame;
    return scene.back();
  }
  void ball(ClayPart& g, Vec at, Vec radii, Vec colour) { g.ball(at * size, radii * size, colour); }
};

void add_wings(PreyParts& p, const Flight& f, Vec colour, float length) {
  float up = 0.55f + 0.75f * std::sin(2 * kPi * f.beat);
  for (float side : {-1.0f, 1.0f}) {
    ClayPart& wing = p.part(0.05f, 1.0f);
    Vec root{-0.1f, 0.75f, side * 0.25f};
    Vec out = unit(Vec{-0.45f, up, side * 0.9f});
    for (int i = 1; i <= 3; i++) {
      float t = static_cast<float>(i) / 3, r = 0.16f + 0.22f * t;
      Vec at = root + out * (length * t);
      p.ball(wing, at, {r, 0.7f * r, r}, colour);
    }
    wing.blend = 0.4f * p.size;
  }
}

void add_prey(ClayScene& scene, Prey kind, const Flight& f) {
  // Modelled along x, and turned so that its side and its face are visible.
  PreyParts p{scene, frame_yaw(f.heading > 0 ? 38.0f : 142.0f), f.size};
  p.frame.at = f.at;
  Vec shell = linear({0.95, 0.14, 0.10}), head{0.02f, 0.018f, 0.024f};
  Vec wings = linear({0.78, 0.93, 1.0}), feet{0.012f, 0.010f, 0.016f};
  if (kind == Prey::kLightningbug) {
    shell = linear({0.26, 0.22, 0.32});
    head = linear({0.92, 0.34, 0.16});
  } else if (kind == Prey::kBeetle) {
    shell = linear({0.36, 0.30, 0.92});
    head = linear({0.22, 0.14, 0.48});
  }
  const float size = f.size;
  ClayPart& body = p.part(0.1f, 1.0f);
  p.ball(body, {-0.2f, 0.1f, 0}, {1.05f, 0.84f, 0.86f}, shell);
  if (kind == Prey::kLightningbug) {
    float glow = 0.5f + 0.5f * std::sin(2 * kPi * f.beat * 0.23f);
    ClayPart& tail = p.part(0.1f, 0.8f);
    p.ball(tail, {-1.0f, -0.02f, 0}, {0.72f, 0.66f, 0.70f},
           lerp(linear({0.86, 0.92, 0.12}), {1.3f, 1.3f, 0.35f}, glow));
  } else {
    const bool dots = kind == Prey::kLadybug;
    body.paint = [=](Vec q, Vec c) {
      q = q * (1 / size);
      if (std::fabs(q.z) < 0.06f && q.y > 0) return Vec{0.012f, 0.010f, 0.016f};
      if (!dots) {
        float band = 0.5f + 0.5f * std::sin(q.x * 5.5f);
        return lerp(c, linear({0.20, 0.72, 0.92}), 0.6f * band);
      }
      const Vec spots[] = {{0.30f, 0.55f, 0.42f},
                           {-0.35f, 0.62f, 0.52f},
                           {-0.85f, 0.35f, 0.40f},
                           {-0.05f, 0.05f, 0.80f}};
      for (const Vec& s : spots)
        if (length(Vec{q.x, q.y, std::fabs(q.z)} - s) < 0.26f) return Vec{0.012f, 0.010f, 0.016f};
      return c;
    };
  }
  ClayPart& face = p.part(0.1f, 0.8f);
  p.ball(face, {0.86f, 0.16f, 0}, {0.56f, 0.54f, 0.58f}, head);
  for (float side : {-1.0f, 1.0f}) {
    float pop = 0.27f + 0.09f * f.panic;
    scene.push_back(clay_eye(p.frame, Vec{1.10f, 0.52f, side * 0.30f} * size, pop * size,
                             {0.85f, 0.10f, -0.35f * f.heading}, 0.78f - 0.06f * f.panic, head, 0,
                             {0, 1, 0}));
    ClayPart& feeler = p.part(0.05f, 0.3f);
    Vec from = Vec{0.95f, 0.60f, side * 0.2f} * size, mid = Vec{1.15f, 1.02f, side * 0.36f} * size;
    Vec tip = Vec{1.42f, 1.12f + 0.1f * side, side * 0.50f} * size;
    feeler.limb(from, 0.07f * size, mid, 0.06f * size, feet);
    feeler.limb(mid, 0.06f * size, tip, 0.06f * size, feet);
    p.ball(feeler, tip * (1 / size), {0.12f, 0.12f, 0.12f},
           kind == Prey::kLadybug ? linear(kRed) : linear(kGold));
    for (int i = 0; i < 3; i++) {
      ClayPart& leg = p.part(0.05f, 0.3f);
      float x = 0.45f - 0.42f * static_cast<float>(i);
      float kick = 0.16f * std::sin(2 * kPi * f.beat * 0.5f + static_cast<float>(i) + side);
      leg.limb(Vec{x, -0.45f, side * 0.45f} * size, 0.11f * size,
               Vec{x - 0.25f + kick, -0.95f, side * 0.70f} * size, 0.09f * size, feet);
    }
  }
  add_wings(p, f, wings, kind == Prey::kLightningbug ? 1.25f : 1.1f);
}

// A bug flies in, hovers, is caught and is swallowed; times are in frames. The cell's upper 65
// pixels are above the screen, and bugs stay below them.
struct Meal {
  Prey kind;
  float comes, shot, caught, home, swallowed;
  Point from, at;
  float bulge;  // how far the tongue swings out to the side, in units
};
constexpr Meal kMeals[] = {
    {Prey::kLadybug, 1, 13, 15, 19, 24, {66, 130}, {112, 168}, -0.7f},
    {Prey::kBeetle, 18, 31, 33, 37, 42, {446, 130}, {404, 156}, 0.7f},
    {Prey::kLightningbug, 36, 49, 51, 55, 60, {60, 140}, {160, 136}, 0.9f},
};
constexpr float kSize[] = {0.42f, 0.42f, 0.42f};
constexpr float kAhead = -1.3f;  // where the bugs fly, nearer than the frog's face

struct Moment {
  FrogPose pose;
  const Meal* prey[2] = {nullptr, nullptr};  // what is in the picture now
  const Meal* tongue = nullptr;
};

Point bug_place(const Meal& m, float frame) {
  float u = std::clamp((frame - m.comes) / (m.caught - m.comes), 0.0f, 1.0f);
  Point p = mix(m.from, m.at, smooth(0, 0.8, u));
  double loose = 1 - smooth(0.75, 1, u);
  p.x += (16 * std::sin(kTau * u * 2.0) * (1 - u) + 5 * std::sin(kTau * frame / 7)) * loose;
  p.y += (20 * std::sin(kTau * u * 1.5) * (1 - 0.4 * u) + 5 * std::cos(kTau * frame / 5)) * loose;
  return {std::clamp(p.x, 66.0, 446.0), std::max(p.y, 124.0)};
}

// How far the tongue is out, 0 to 1; it overshoots a little, sticks, and returns faster and faster.
float tongue_reach(const Meal& m, float frame) {
  if (frame <= m.shot || frame >= m.home) return 0;
  if (frame < m.caught) return step_s(m.shot, m.caught, frame);
  float back = (frame - m.caught) / (m.home - m.caught);
  return 1 - back * back;
}

void act(FrogPose& pose, const Meal& m, float frame) {
  const float side = m.at.x < 256 ? 1.0f : -1.0f;  // its right is our left
  // It watches, sinks back to aim, throws itself forward, and swallows.
  float watch = ease(frame, m.comes, m.comes + 4) - ease(frame, m.caught + 1, m.home);
  Point p = bug_place(m, frame);
  float off = static_cast<float>(p.x - 256) / 190, over = static_cast<float>(270 - p.y) / 230;
  pose.gaze_x += -0.85f * off * watch;
  pose.gaze_y += (0.15f + 0.55f * over) * watch;
  pose.head_yaw_deg += -16 * off * watch;
  pose.head_pitch_deg += 7 * over * watch;
  pose.head_roll_deg += 6 * side * watch;

  float aim = ease(frame, m.shot - 6, m.shot - 1.5f) - ease(frame, m.shot - 1.0f, m.shot + 0.8f);
  float lunge = ease(frame, m.shot - 1.0f, m.shot + 1.2f) - ease(frame, m.caught + 0.5f, m.home);
  pose.tall += -0.13f * aim + 0.10f * lunge;
  pose.slim += -0.05f * aim + 0.07f * lunge;
  pose.hips.y -= 0.16f * aim - 0.10f * lunge;
  pose.hips.z -= 0.18f * aim - 0.22f * lunge;
  pose.pitch_deg += -4 * aim + 8 * lunge;
  pose.roll_deg += side * (-4 * aim + 9 * lunge);
  pose.hips.x += side * (-0.10f * aim + 0.16f * lunge);
  pose.spread[0] = pose.spread[1] = std::max(pose.spread[1], lunge);
  for (float& lid : pose.lid) lid = std::max(lid, 0.22f * aim);

  float gape =
      ease(frame, m.shot - 1.5f, m.shot + 0.4f) - ease(frame, m.home - 0.8f, m.home + 0.4f);
  pose.mouth += (1.0f - pose.mouth) * gape;

  // The tongue's weight throws the head back; then cheeks full, eyes shut, swallow.
  float hit = bump((frame - m.home + 0.8f) / 3.2f);
  pose.head_pitch_deg += 13 * hit;
  pose.tall += 0.06f * hit;
  float full =
      ease(frame, m.home - 0.5f, m.home + 0.5f) - ease(frame, m.swallowed - 3, m.swallowed);
  pose.mouth *= 1 - full;
  pose.cheeks = std::max(pose.cheeks, full);
  const float glee =
      ease(frame, m.home - 0.7f, m.home + 1.4f) - ease(frame, m.swallowed - 2, m.swallowed + 1);
  for (float& lid : pose.glee) lid = std::max(lid, glee);
  if (frame > m.home && frame < m.swallowed) pose.gulp = (frame - m.home) / (m.swallowed - m.home);
  float duck = bump((frame - m.home - 1) / (m.swallowed - m.home));
  pose.tall -= 0.09f * duck;
  pose.head_pitch_deg -= 12 * duck;
  // The belly wobbles.
  pose.breathe += 0.9f * std::exp(-0.35f * std::max(0.0f, frame - m.swallowed + 1)) *
                  step_s(m.swallowed - 2, m.swallowed, frame);
  pose.tall += 0.05f * ringing((frame - m.swallowed) / 8, 2, 3);
}

Moment moment(float frame, float frames) {
  Moment now;
  FrogPose& pose = now.pose;
  pose = frog_upright();
  pose.yaw_deg = 180;
  pose.smile = 1;
  pose.mouth = 0.10f;
  const float end = frames - 1;
  // At rest in the first picture, which is shown for a second, and in the last.
  float awake = step_s(0, 3, frame) * (1 - step_s(end - 2, end, frame));
  float breath = std::sin(2 * kPi * frame / 15.5f);
  pose.breathe = 0.25f * awake * (0.5f + 0.5f * breath);
  pose.tall += 0.012f * awake * breath;
  for (const Meal& m : kMeals) {
    act(pose, m, frame);
    if (frame > m.comes && frame < m.home) now.prey[now.prey[0] ? 1 : 0] = &m;
    if (tongue_reach(m, frame) > 0) now.tongue = &m;
  }
  pose.tongue_out = now.tongue ? 1.0f : 0.0f;
  // Blinks when a new bug comes into sight.
  for (const Meal& m : kMeals) {
    float shut = bump((frame - m.comes - 5) / 3.2f);
    for (float& lid : pose.lid) lid = std::max(lid, shut);
  }
  // Licks its lips at the end, content.
  pose.cheer = std::max(pose.cheer, 0.35f * (ease(frame, 58, 60) - ease(frame, 60.5f, end)));
  return now;
}

using TonguePath = std::array<Vec, 28>;

// From the mouth to its tip: it swings out to the side, and returns in waves.
TonguePath tongue_path(const FrogPose& pose, const Meal& m, float frame, float reach) {
  TonguePath path;
  const Vec root = frog_head_point(pose, {0, -0.46f, 0.30f});
  const Vec lip = frog_head_point(pose, {0, -0.42f, 1.02f});
  const Vec tip = lerp(lip, in_world(bug_place(m, m.caught), kAhead), reach);
  const float back = std::max(0.0f, frame - m.caught) / (m.home - m.caught);
  const float bow = m.bulge * std::sin(kPi * std::min(1.0f, reach)) + 0.32f * m.bulge * reach;
  const float wave = 0.42f * step_s(0, 0.35f, back) * reach;
  for (size_t i = 0; i < path.size(); i++) {
    float t = static_cast<float>(i) / static_cast<float>(path.size() - 1);
    // Out along the lower lip first, then up in an arc.
    Vec a = lerp(root, lip, t), b = lerp(lip, tip, t);
    Vec p = lerp(a, b, step_s(0.0f, 0.45f, t));
    p.x += bow * std::sin(kPi * t) * t;
    p.y -= 0.25f * reach * std::sin(kPi * t) * (1 - t);
    float swing = wave * std::sin(kPi * t) * std::sin(2 * kPi * (1.6f * t - 1.2f * back));
    p.x += swing;
    p.y += 0.5f * swing;
    path[i] = p;
  }
  return path;
}

void draw_attract_frog(const Cell& cell) {
  const float frame = static_cast<float>(cell.frame);
  const Moment now = moment(frame, static_cast<float>(cell.frames));
  ClayScene scene = frog_scene(now.pose);
  Vec tip{};
  if (now.tongue) {
    TonguePath path = tongue_path(now.pose, *now.tongue, frame, tongue_reach(*now.tongue, frame));
    tip = path.back();
    scene.push_back(frog_tongue(path, 0.27f, frame < now.tongue->caught ? 0.36f : 0.33f));
  }
  for (const Meal* m : now.prey) {
    if (!m) continue;
    const bool held = frame >= m->caught;
    Flight f{};
    f.at = held ? tip + Vec{0, 0.10f, -0.16f} : in_world(bug_place(*m, frame), kAhead);
    f.heading = m->at.x < 256 ? 1.0f : -1.0f;
    float grown = 0.25f + 0.75f * step_s(m->comes, m->comes + 4, frame);
    float drawn_in = held ? 1 - 0.45f * step_s(m->home - 1.5f, m->home, frame) : 1;
    f.size = kSize[static_cast<int>(m->kind)] * grown * drawn_in;
    f.beat = held ? 0.2f : frame * 0.37f;
    f.panic = step_s(m->shot, m->shot + 1, frame);
    add_prey(scene, m->kind, f);
  }
  const float lean = 40 * now.pose.hips.x;
  soft_spot(cell.ctx, 256 - lean, 448, 205, 40, kBlack, 0.50);
  Canvas canvas(cell.width, cell.height);
  clay_draw(canvas, scene, kCamera, kOutline, 3.0f);
  paint_canvas(cell.ctx, canvas, 0, 0);
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_FROG_ATTRACT, 512, 512, Play::kOnce, draw_attract_frog),
};

}  // namespace

const Family kAttractFrogFamily{"art/attract_frog.cpp", kRows};

}  // namespace art
