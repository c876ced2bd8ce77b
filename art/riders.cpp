// The royal frogs on gold: they wave at the player and blow a kiss to a frog that lands.
#include <algorithm>
#include <cmath>

#include "art/catalogue.h"
#include "art/clay.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
// Rose and violet, to stand out from the gold under them; only the crown is gold.
constexpr Colour kSkin{1.0, 0.48, 0.68}, kBelly{1.0, 0.93, 0.86};
constexpr Colour kCape{0.42, 0.14, 0.82}, kFur{1.0, 0.97, 0.94};

constexpr float kSkinGlow = 0.22f;  // they are so small that their own shade would look muddy

// Faces the viewer: z ahead of it is negative. Right is the screen's right.
struct RiderPose {
  float lift = 0, squash = 0;        // units; fractions of the height
  float sway_deg = 0, lean_deg = 0;  // to the right; towards the viewer
  float tilt_deg = 0, nod_deg = 0;   // of the head alone
  float crown_deg = 0;               // how far the crown has slipped to the right
  float cape = 0;                    // its hem swung to the right, units
  float blink = 0, mouth = 0, pucker = 0;
  float blush = 0.6f;
  float gaze = 0;         // to the right
  Vec hand[2]{};          // left, right: from the shoulder
  float finger_deg[2]{};  // fingers turned to the right against the arm
};

constexpr Vec kHandAtRest[2] = {{-0.62f, -0.72f, -0.55f}, {0.62f, -0.72f, -0.55f}};

Vec turned(Vec v, float degrees) {
  float a = degrees * kPi / 180, s = std::sin(a), k = std::cos(a);
  return {v.x * k + v.y * s, v.y * k - v.x * s, v.z};
}

ClayFrame leaning(float right_deg, float ahead_deg, Vec at) {
  float a = ahead_deg * kPi / 180, s = std::sin(a), k = std::cos(a);
  ClayFrame f;
  f.x = turned({1, 0, 0}, right_deg);
  f.y = turned({0, k, -s}, right_deg);
  f.z = turned({0, s, k}, right_deg);
  f.at = at;
  return f;
}

constexpr Vec kHeadSize{1.52f, 1.12f, 1.18f};

Vec paint_face(Vec p, Vec colour, const RiderPose& pose) {
  Vec d{p.x / kHeadSize.x, p.y / kHeadSize.y, p.z / kHeadSize.z};
  if (d.z > 0.1f) return colour;
  colour = lerp(colour, linear(kBelly), 0.85f * step_s(0.10f, 0.55f, -d.y));
  for (float side : {-1.0f, 1.0f}) {
    float r = std::hypot((d.x - side * 0.68f) * 1.1f, (d.y + 0.16f) * 1.4f);
    colour = lerp(colour, linear({1.0, 0.30, 0.36}), pose.blush * (1 - step_s(0.08f, 0.26f, r)));
  }
  const float wide = 0.50f, line = 0.062f;
  if (pose.pucker > 0.3f || std::fabs(d.x) > wide + 0.04f) return colour;
  float across = 1 - d.x * d.x / (wide * wide);
  float below = -0.20f + 0.50f * d.x * d.x - d.y;
  float open = pose.mouth * 0.50f * std::max(0.0f, across);
  if (below > -line && below < open + line) {
    colour = linear({0.30, 0.07, 0.06});
    if (below > 0 && below < open && below > open * 0.5f) colour = linear({1.0, 0.42, 0.45});
  }
  return colour;
}

void add_crown(ClayScene& scene, const ClayFrame& head, const RiderPose& pose) {
  ClayFrame own = leaning(pose.crown_deg, -8, {0, 0.98f, -0.05f});
  ClayPart crown;
  crown.blend = 0.08f;
  crown.gloss = 1.3f;
  crown.glow = 0.30f;
  crown.frame = frame_within(head, own);
  ClayPart jewels;
  jewels.blend = 0.01f;
  jewels.gloss = 1.2f;
  jewels.metal = 0.25f;
  jewels.frame = crown.frame;
  Vec gold = linear(kGold);
  const int points = 5;
  auto at = [](float turn, float r, float high) {
    return Vec{r * std::sin(turn), high, -r * std::cos(turn)};
  };
  for (int i = 0; i < points * 2; i++) {
    float a = static_cast<float>(i) * kPi / points, b = a + kPi / points;
    crown.limb(at(a, 0.64f, 0.02f), 0.15f, at(b, 0.64f, 0.02f), 0.15f, gold);
    crown.limb(at(a, 0.64f, 0.30f), 0.09f, at(b, 0.64f, 0.30f), 0.09f, gold);
  }
  for (int i = 0; i < points; i++) {
    // A gap faces the viewer, so the stone in front is visible and no point covers another.
    float a = (static_cast<float>(i) + 0.5f) * 2 * kPi / points;
    crown.limb(at(a, 0.66f, 0.24f), 0.23f, at(a, 0.80f, 0.92f), 0.06f, gold);
    jewels.ball(at(a, 0.82f, 1.02f), {0.17f, 0.17f, 0.17f},
                linear(i % 2 ? Colour{0.25, 0.75, 1.0} : Colour{1.0, 0.20, 0.50}));
  }
  jewels.ball(at(0, 0.78f, 0.16f), {0.20f, 0.22f, 0.12f}, linear({1.0, 0.10, 0.30}));
  scene.push_back(crown);
  scene.push_back(jewels);
}

ClayPart rider_eye(const ClayFrame& head, Vec at, float side, const RiderPose& pose) {
  const Vec lid = linear(kSkin) * 0.85f, look{-side * 0.16f + 0.5f * pose.gaze, 0.02f, -1};
  const Vec above = unit({0, 1, -0.25f});
  ClayPart eye = clay_eye(head, at, 0.53f, look, 0.74f, lid, 0.66f * pose.blink, above);
  if (pose.blink < 0.8f) return eye;
  // Shut: the lids meet in a hanging arc on the viewer's side.
  eye.gloss = 0.5f;
  eye.paint = [=](Vec p, Vec) {
    Vec n = unit(p - at);
    float arc = -0.16f + 0.30f * n.x * n.x;
    return std::fabs(dot(n, above) - arc) < 0.11f && n.z < 0.2f ? Vec{0.03f, 0.015f, 0.01f} : lid;
  };
  return eye;
}

void add_head(ClayScene& scene, const ClayFrame& root, const RiderPose& pose) {
  const float q = pose.squash;
  Vec skin = linear(kSkin);
  ClayFrame f = frame_within(
      root, leaning(pose.tilt_deg, pose.nod_deg, {0, 2.55f * (1 - 0.85f * q), -0.12f}));
  ClayPart head;
  head.blend = 0.22f;
  head.gloss = 0.9f;
  head.glow = kSkinGlow;
  head.frame = f;
  head.ball({0, 0, 0}, {kHeadSize.x * (1 + 0.35f * q), kHeadSize.y * (1 - 0.3f * q), kHeadSize.z},
            skin);
  for (float side : {-1.0f, 1.0f})
    head.ball({side * 0.88f, 0.82f, -0.10f}, {0.60f, 0.60f, 0.56f}, skin);
  head.paint = [=](Vec p, Vec c) { return paint_face(p, c, pose); };
  scene.push_back(head);
  ClayPart lashes;
  lashes.blend = 0.01f;
  lashes.gloss = 0;
  lashes.frame = f;
  for (float side : {-1.0f, 1.0f}) {
    Vec eye{side * 0.88f, 0.88f, -0.30f};
    scene.push_back(rider_eye(f, eye, side, pose));
    float drop = -0.50f * pose.blink;
    for (int i = 0; i < 2; i++) {
      float a = 0.55f + 0.50f * static_cast<float>(i);
      Vec foot = eye + Vec{side * 0.50f * std::sin(a), 0.48f * std::cos(a) + drop,
                           -0.20f - 0.2f * pose.blink};
      lashes.limb(foot, 0.075f, foot + Vec{side * 0.26f * std::sin(a), 0.20f * std::cos(a), 0},
                  0.05f, {0.02f, 0.012f, 0.01f});
    }
  }
  scene.push_back(lashes);
  if (pose.pucker > 0.05f) {
    ClayPart lips;
    lips.blend = 0.05f;
    lips.gloss = 1.0f;
    lips.frame = f;
    float k = pose.pucker;
    for (float side : {-1.0f, 1.0f}) {
      lips.ball({side * 0.13f * k, -0.22f, -1.16f - 0.16f * k}, {0.19f * k, 0.15f * k, 0.20f * k},
                linear({1.0, 0.12, 0.26}));
      lips.ball({side * 0.08f * k, -0.44f, -1.12f - 0.16f * k}, {0.18f * k, 0.14f * k, 0.20f * k},
                linear({0.95, 0.10, 0.24}));
    }
    scene.push_back(lips);
  }
  add_crown(scene, f, pose);
}

void add_body(ClayScene& scene, const ClayFrame& root, const RiderPose& pose) {
  const float q = pose.squash, fat = 1 + 0.4f * q, tall = 1 - 0.8f * q;
  Vec skin = linear(kSkin), violet = linear(kCape);
  // They lie in the shade of the head.
  Vec belly = linear(kBelly) * 1.35f, fur = linear(kFur) * 1.3f;
  ClayPart body;
  body.blend = 0.30f;
  body.gloss = 0.6f;
  body.glow = kSkinGlow;
  body.frame = root;
  body.ball({0, 1.05f * tall, 0.05f}, {0.98f * fat, 0.98f * tall, 0.86f * fat}, skin);
  body.ball({0, 0.98f * tall, -0.26f}, {0.72f * fat, 0.78f * tall, 0.66f}, belly);
  scene.push_back(body);

  ClayPart cape;
  cape.blend = 0.30f;
  cape.gloss = 0.55f;
  cape.frame = root;
  ClayPart trim;
  trim.blend = 0.12f;
  trim.gloss = 0.2f;
  trim.frame = root;
  const int folds = 6;
  Vec hem_before{};
  for (int i = 0; i <= folds; i++) {
    float u = 2.0f * static_cast<float>(i) / folds - 1;  // left to right
    float wave = 0.10f * std::sin(u * 7 + pose.cape * 3);
    Vec top{u * 0.95f, 1.75f * tall, 0.55f};
    Vec hem{u * (1.85f + wave) + pose.cape,
            0.34f + 0.10f * std::fabs(u) + 0.35f * std::fabs(pose.cape), 0.72f + wave};
    cape.limb(top, 0.26f, hem, 0.30f, violet);
    if (i) trim.limb(hem_before + Vec{0, -0.20f, 0}, 0.20f, hem + Vec{0, -0.20f, 0}, 0.20f, fur);
    hem_before = hem;
  }
  scene.push_back(cape);
  scene.push_back(trim);
  ClayPart collar;
  collar.blend = 0.10f;
  collar.gloss = 0.2f;
  collar.frame = root;
  const int tufts = 10;
  for (int i = 0; i < tufts; i++) {
    float a = static_cast<float>(i) * 2 * kPi / tufts;
    collar.ball(
        {0.98f * std::sin(a) * fat, 1.76f * tall - 0.10f * std::cos(a), -0.72f * std::cos(a)},
        {0.31f, 0.25f, 0.29f}, fur);
  }
  scene.push_back(collar);
}

// Three fingers, or toes, with round pads.
void add_pads(ClayPart& g, Vec from, Vec ahead, Vec side, float reach, Vec skin, Vec pad) {
  for (int i = -1; i <= 1; i++) {
    float s = static_cast<float>(i);
    Vec end = from + ahead * (reach * (1 - 0.15f * std::fabs(s))) + side * (0.30f * s);
    g.limb(from, 0.16f, end, 0.13f, skin);
    g.ball(end, {0.20f, 0.19f, 0.20f}, pad);
  }
}

void add_limbs(ClayScene& scene, const ClayFrame& root, const RiderPose& pose) {
  Vec skin = linear(kSkin), pad = linear(mix(kSkin, kBelly, 0.55));
  const float tall = 1 - 0.8f * pose.squash;
  for (int which : {0, 1}) {
    float side = which ? 1.0f : -1.0f;
    // Feet stay in place, unless all of it is in the air.
    ClayPart leg;
    leg.blend = 0.16f;
    leg.gloss = 0.6f;
    leg.glow = kSkinGlow;
    leg.frame.at = {0, pose.lift, 0};
    float hang = std::min(0.22f, 0.4f * pose.lift);
    leg.ball({side * 0.82f, 0.55f, -0.10f}, {0.50f, 0.55f, 0.56f}, skin);
    Vec heel{side * 0.98f, 0.20f - hang, -0.45f};
    leg.limb({side * 0.88f, 0.50f, -0.1f}, 0.34f, heel, 0.24f, skin);
    add_pads(leg, heel, unit(Vec{side * 0.35f, -hang, -0.9f}), {1, 0, 0}, 0.50f, skin, pad);
    scene.push_back(leg);

    ClayPart arm;
    arm.blend = 0.13f;
    arm.gloss = 0.6f;
    arm.glow = kSkinGlow;
    arm.frame = root;
    Vec shoulder{side * 0.92f, 1.55f * tall, -0.15f};
    Vec hand = shoulder + pose.hand[which];
    Vec elbow = shoulder + pose.hand[which] * 0.5f + Vec{side * 0.30f, -0.26f, 0};
    arm.limb(shoulder, 0.27f, elbow, 0.22f, skin);
    arm.limb(elbow, 0.21f, hand, 0.17f, skin);
    Vec ahead = turned(unit(hand - elbow), pose.finger_deg[which]);
    Vec across = cross(ahead, {0, 0, 1});
    across = length(across) < 0.3f ? Vec{1, 0, 0} : unit(across);
    arm.ball(hand, {0.29f, 0.29f, 0.24f}, skin);
    add_pads(arm, hand, ahead, across, 0.44f, skin, pad);
    scene.push_back(arm);
  }
}

// A glint on gold: a four-pointed star that opens and closes.
void glint(cairo_t* c, Point p, double size, double turn) {
  if (size < 1.5) return;
  fill(c, star(p.x, p.y, size + 1.5, size * 0.26 + 1, 4, turn), {1.0, 0.72, 0.10});
  fill(c, star(p.x, p.y, size, size * 0.24, 4, turn), kWhite);
}

void draw_rider(const Cell& cell, const RiderPose& pose) {
  const double high = 0.35 * static_cast<double>(pose.lift);
  soft_spot(cell.ctx, 64, 115, 38 - 12 * high, 9 - 3 * high, kBlack, 0.5);
  ClayFrame root = leaning(pose.sway_deg, pose.lean_deg, {0, pose.lift, 0});
  ClayScene scene;
  add_body(scene, root, pose);
  add_limbs(scene, root, pose);
  add_head(scene, root, pose);
  Canvas canvas(cell.width, cell.height);
  clay_draw(canvas, scene, {20, 18.0f, {64, 111}}, {0.28, 0.03, 0.16}, 1.8f);
  paint_canvas(cell.ctx, canvas, 0, 0);
}

float part(double t, double a, double b) {
  return static_cast<float>(clamp01((t - a) / (b - a)));
}
float eased(double t, double a, double b) {
  return static_cast<float>(smooth(a, b, t));
}
float bump(float u) {
  return std::sin(kPi * std::fmin(1.0f, std::fmax(0.0f, u)));
}
// A push at a that dies away in waves: loose parts keep moving.
float ring_out(double t, double a, double waves, double decay) {
  double u = t - a;
  return u <= 0 ? 0 : static_cast<float>(std::exp(-decay * u) * std::sin(kTau * waves * u));
}

Vec raised_hand(float swing_deg, float reach) {
  float a = swing_deg * kPi / 180;
  return {reach * std::sin(a), reach * std::cos(a), -0.50f};
}

RiderPose wave_pose(double t) {
  // Three swings of the hand, a hop for joy, and down into the first swing again.
  RiderPose pose;
  const double swings = 0.66;
  float hop = bump(part(t, 0.76, 0.90)), press = bump(part(t, 0.68, 0.77)),
        land = bump(part(t, 0.89, 0.99));
  double u = std::fmin(1.0, t / swings);
  float amount =
      bump(static_cast<float>(u)) > 0.5f ? 1.0f : smooth(0, 1, 2 * bump(static_cast<float>(u)));
  float beat = std::sin(2 * kPi * 3 * static_cast<float>(u)) * amount;
  float late = std::sin(2 * kPi * 3 * static_cast<float>(u) - 0.9f) * amount;
  pose.hand[0] = kHandAtRest[0] + Vec{-0.10f * beat, 0.06f * beat, 0};
  pose.hand[1] = raised_hand(44 + 20 * beat, 1.74f);
  pose.finger_deg[1] = -22 + 30 * late;
  // Both hands go up with the hop.
  pose.hand[0] = lerp(pose.hand[0], raised_hand(-46, 1.76f), hop);
  pose.hand[1] = lerp(pose.hand[1], kHandAtRest[1] * 0.9f, 0.55f * press);
  pose.sway_deg = 5 * beat;
  pose.tilt_deg = -6 * late;
  pose.cape = -0.16f * late;
  pose.crown_deg = -4 * late + 9 * ring_out(t, 0.90, 12, 14);
  pose.lift = 0.52f * hop;
  pose.squash = 0.17f * press + 0.15f * land - 0.08f * hop +
                0.03f * (1 - std::cos(2 * kPi * 6 * static_cast<float>(u))) * amount;
  pose.nod_deg = 8 * press - 6 * hop;
  pose.mouth = 0.55f + 0.45f * hop - 0.3f * press;
  pose.blink = std::fmax(bump(part(t, 0.30, 0.38)), 0.95f * bump(part(t, 0.66, 0.76)));
  return pose;
}

void draw_rider_wave(const Cell& cell) {
  draw_rider(cell, wave_pose(cell.turn()));
  double k = std::sin(kTau / 2 * clamp01((cell.turn() - 0.10) / 0.16));
  glint(cell.ctx, {75, 40}, 11 * k, 0.6 * k);
}

void draw_rider_kiss(const Cell& cell) {
  // When a frog lands, it is shown from the first fifth on: hands to the mouth, leaning back, then
  // the smack, arms flung open. It ends as the wave begins.
  const double t = cell.run();
  const RiderPose rest = wave_pose(0);
  RiderPose pose = rest;
  float wind = eased(t, 0.04, 0.26) * (1 - eased(t, 0.40, 0.46));
  float smack = eased(t, 0.40, 0.46) * (1 - eased(t, 0.54, 0.64));
  float open = eased(t, 0.46, 0.58) * (1 - eased(t, 0.82, 0.98));
  float mouth_hand = eased(t, 0.04, 0.20) * (1 - eased(t, 0.44, 0.56));
  for (int which : {0, 1}) {
    float side = which ? 1.0f : -1.0f;
    pose.hand[which] = lerp(pose.hand[which], {-side * 0.52f, 0.34f, -1.22f}, mouth_hand);
    pose.hand[which] = lerp(pose.hand[which], {side * 1.45f, 0.72f, -0.5f}, open);
    pose.finger_deg[which] = side * (24 * open - 18 * ring_out(t, 0.58, 6, 8));
  }
  pose.lean_deg = -12 * wind + 15 * smack;
  pose.nod_deg = -8 * wind - 12 * smack;
  pose.squash = 0.15f * wind - 0.10f * smack + 0.10f * bump(part(t, 0.58, 0.70));
  pose.lift = 0.30f * bump(part(t, 0.42, 0.60));
  pose.pucker = 0.8f * eased(t, 0.20, 0.34) + 0.8f * smack;
  pose.pucker *= 1 - eased(t, 0.58, 0.66);
  pose.mouth = rest.mouth * (1 - mouth_hand) + 0.45f * open;
  pose.blink = eased(t, 0.12, 0.26) * (1 - eased(t, 0.56, 0.64));
  pose.blush = 0.6f + 0.4f * bump(part(t, 0.3, 1.0));
  pose.tilt_deg = 7 * ring_out(t, 0.60, 3, 5);
  pose.crown_deg = 12 * ring_out(t, 0.44, 7, 6);
  pose.cape = 0.25f * ring_out(t, 0.42, 4, 5);
  draw_rider(cell, pose);
  // The kiss leaves the lips as a heart and grows on its way.
  double u = (t - 0.46) / 0.40;
  if (u <= 0 || u >= 1) return;
  double grow = smooth(0, 0.25, u) * (1 - smooth(0.8, 1.0, u));
  double x = 64 + 40 * std::sin(kTau / 4 * u), y = 84 - 58 * u, size = 3 + (5 + 6 * u) * grow;
  if (grow > 0.05)
    puff(cell.ctx, heart(x, y, size), {1.0, 0.14, 0.36}, x, y, size * 1.25, 1.8, 0.8);
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_WAVE, 128, 128, Play::kLoop, draw_rider_wave),
    sheet(SHEET_KISS, 128, 128, Play::kOnce, draw_rider_kiss),
};

}  // namespace

const Family kRidersFamily{"art/riders.cpp", kRows};

}  // namespace art
