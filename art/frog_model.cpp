#include "art/frog_model.h"

#include <algorithm>
#include <cmath>

#include "art/palette.h"

namespace art {

namespace {

constexpr Colour kBelly{1.0, 0.97, 0.62}, kSpotGreen{0.13, 0.50, 0.10}, kToeTips{1.0, 0.98, 0.45};
constexpr float kDegree = static_cast<float>(kTau) / 360;
constexpr Vec kHead{0, 0.08f, 0.66f}, kHeadSize{1.16f, 0.74f, 0.88f};
constexpr Vec kTongueRed{1.15f, 0.15f, 0.23f};
constexpr float kMouthWide = 0.80f, kMouthHigh = -0.10f, kMouthBack = 0.10f;

struct Spot {
  Vec at;
  float radius;
};
constexpr Spot kSpots[] = {{{-0.50f, 0.80f, -0.35f}, 0.30f}, {{0.46f, 0.80f, -0.62f}, 0.34f},
                           {{0.16f, 0.80f, 0.06f}, 0.20f},   {{0.02f, 0.50f, -1.40f}, 0.24f},
                           {{-1.02f, 0.30f, -0.80f}, 0.24f}, {{1.02f, 0.35f, -0.02f}, 0.22f},
                           {{-0.18f, 0.80f, 0.66f}, 0.15f},  {{0.80f, 0.30f, -1.15f}, 0.20f}};

// The rotation of a head that turns, nods and tilts.
ClayFrame head_turn(float yaw_deg, float pitch_deg, float roll_deg) {
  float p = pitch_deg * kDegree, r = roll_deg * kDegree;
  ClayFrame pitch{{1, 0, 0}, {0, std::cos(p), -std::sin(p)}, {0, std::sin(p), std::cos(p)}, {}};
  ClayFrame roll{{std::cos(r), -std::sin(r), 0}, {std::sin(r), std::cos(r), 0}, {0, 0, 1}, {}};
  return frame_within(frame_yaw(yaw_deg), frame_within(pitch, roll));
}

// The body of a pose: its position among the limbs, its squash, and the head on it.
struct Build {
  FrogPose pose;
  ClayFrame ground;  // the frog's own axes in the world
  ClayFrame body;    // the body's in the frog's
  ClayFrame head;    // the head's in the body's
  Vec scale;

  explicit Build(const FrogPose& p) : pose(p), ground(frame_yaw(p.yaw_deg)) {
    float s = std::sin(p.pitch_deg * kDegree), k = std::cos(p.pitch_deg * kDegree);
    float rs = std::sin(p.roll_deg * kDegree), rk = std::cos(p.roll_deg * kDegree);
    Vec y{0, k, -s}, x{1, 0, 0};
    body.x = x * rk - y * rs;
    body.y = y * rk + x * rs;
    body.z = {0, s, k};
    // Growth along one axis shrinks the others.
    float wide = 1 / std::sqrt(p.tall * p.slim);
    scale = {wide, p.tall, p.slim};
    body.at = p.hips + body.y * 0.10f + body.z * (0.85f * p.slim);
    ground.at = p.move;
    head = head_turn(p.head_yaw_deg, p.head_pitch_deg, p.head_roll_deg);
    head.at = in_body(kHead);
  }
  // A point of the resting body in this pose, still in the body's axes.
  Vec in_body(Vec p) const {
    Vec q = p * scale;
    q.x += pose.sway * (0.35f - 0.75f * p.z);
    return q;
  }
  Vec at_rest(Vec q) const {
    Vec p{0, q.y / scale.y, q.z / scale.z};
    p.x = (q.x - pose.sway * (0.35f - 0.75f * p.z)) / scale.x;
    return p;
  }
  Vec on_head(Vec p) const { return head.out(p * scale); }
  Vec face(Vec q) const {
    Vec p = head.in(q);
    return {p.x / scale.x, p.y / scale.y, p.z / scale.z};
  }
};

// The mouth is a crescent between an upper and a lower lip, in the face's own axes.
struct Mouth {
  float open, curve;
  explicit Mouth(const FrogPose& pose) : open(0.90f * pose.mouth), curve(0.30f * pose.smile) {}
  float upper(float x) const { return kMouthHigh + curve * x * x + 0.10f * open; }
  float gap(float x) const { return open * std::max(0.0f, 1 - x * x / (kMouthWide * kMouthWide)); }
  // Negative inside the opening.
  float outside(Vec q) const {
    float x = std::fabs(q.x), half = 0.5f * gap(x);
    float d = std::fabs(q.y - (upper(x) - half)) - half;
    // Shallow at its corners; otherwise one could see through the cheeks.
    return std::max(d, std::max(x - kMouthWide, kMouthBack + 0.5f * x * x - q.z));
  }
};

Vec paint_face(Vec q, Vec colour, const Mouth& mouth, float glee) {
  if (q.z < -0.05f) return colour;
  for (float side : {-1.0f, 1.0f}) {
    float cheek = std::hypot(q.x - side * (0.84f - 0.08f * glee), (q.y - 0.06f) * 1.2f);
    float blush = 1 - step_s(0.10f + 0.04f * glee, 0.24f + 0.08f * glee, cheek);
    colour = lerp(colour, linear({1.0, 0.50, 0.46}), (0.75f + 0.15f * glee) * blush);
    float nostril = std::hypot(q.x - side * 0.17f, (q.y - 0.26f) * 1.2f);
    if (q.z > 0.5f && nostril < 0.055f) return colour * 0.15f;
  }
  if (mouth.open > 0.03f) {
    float out = mouth.outside(q);
    if (out < 0.05f) return lerp({0.10f, 0.006f, 0.016f}, {0.34f, 0.02f, 0.04f}, q.z);
    if (out < 0.09f && q.z > 0.2f) return colour * 0.22f;
    return colour;
  }
  float x = std::fabs(q.x), line = std::fabs(q.y - mouth.upper(x));
  float corner = std::hypot(x - kMouthWide, q.y - mouth.upper(kMouthWide));
  if ((x < kMouthWide && line < 0.042f) || corner < 0.065f) return {0.02f, 0.03f, 0.008f};
  return colour;
}

struct BodyColours {
  Vec skin, back, belly, spots;
};

// Belly, back, spots and face are paint: geometry would be noise at the size of a lane.
Vec paint_body(Vec own, Vec colour, const Build& build, const Mouth& mouth, const BodyColours& c) {
  Vec p = build.at_rest(own), q = build.face(own);
  float in_head = step_s(-0.05f, 0.25f, q.z);
  float under = lerp({step_s(0.08f, 0.42f, -p.y), 0, 0},
                     {step_s(-0.02f, 0.16f, mouth.upper(std::fabs(q.x)) - q.y), 0, 0}, in_head)
                    .x;
  colour =
      lerp(colour, c.back, step_s(0.35f, 0.95f, p.y) * (1 - step_s(0.1f, 0.6f, std::fabs(p.x))));
  for (const Spot& s : kSpots) {
    Vec d = p - s.at;
    float r = std::sqrt(d.x * d.x + d.z * d.z + 0.3f * d.y * d.y) / s.radius;
    colour = lerp(colour, c.spots, 1 - step_s(0.86f, 1.0f, r));
    colour = lerp(colour, lerp(c.spots, c.skin, 0.35f), 1 - step_s(0.30f, 0.62f, r));
  }
  colour = lerp(colour, c.belly, under * step_s(-1.6f, 0.2f, p.z));
  return paint_face(q, colour, mouth, std::max(build.pose.glee[0], build.pose.glee[1]));
}

ClayPart body_part(const Build& build) {
  const FrogPose& pose = build.pose;
  const Vec skin = linear(kFrogGreen);
  const BodyColours colours{skin, linear(mix(kFrogGreen, {0.86, 1.0, 0.30}, 0.45)), linear(kBelly),
                            linear(kSpotGreen)};
  const Mouth mouth(pose);
  const float fat = 1 + 0.07f * pose.breathe;
  ClayPart body;
  body.blend = 0.36f;
  body.gloss = 0.75f;
  body.frame = frame_within(build.ground, build.body);
  auto ball = [&](Vec at, Vec size, Vec colour) {
    body.ball(build.in_body(at), size * build.scale, colour);
  };
  auto on_head = [&](Vec at, Vec size, Vec colour) {
    body.ball(build.on_head(at), size * build.scale, colour);
  };
  ball({0, 0, -0.52f}, {1.14f * fat, 0.86f * fat, 1.08f}, skin);
  ball({0, -0.32f, 0.05f}, {0.98f * fat, 0.62f * fat, 1.15f}, skin);
  on_head({0, 0, 0}, kHeadSize, skin);
  for (float side : {-1.0f, 1.0f})
    on_head({side * 0.70f, 0.54f, 0.06f}, {0.52f, 0.54f, 0.48f}, skin);
  // The jaw drops, and the throat below it fills.
  on_head({0, -0.30f - 0.62f * mouth.open, 0.22f - 0.10f * mouth.open}, {0.88f, 0.42f, 0.66f},
          skin);
  float throat = 0.30f + 0.30f * pose.pouch;
  on_head({0, -0.52f, 0.02f + 0.12f * pose.pouch}, {1.5f * throat, throat, throat}, skin);
  if (pose.cheeks > 0.02f) {
    float size = 0.30f + 0.24f * pose.cheeks;
    for (float side : {-1.0f, 1.0f})
      on_head({side * (0.62f + 0.16f * pose.cheeks), -0.26f, 0.50f}, {size, size, size}, skin);
  }
  if (pose.gulp > 0 && pose.gulp < 1) {
    float lump = std::sin(static_cast<float>(kTau / 2) * pose.gulp);
    Vec at = lerp({0, -0.42f, 1.05f}, {0, -0.80f, 0.10f}, pose.gulp);
    ball(at, Vec{0.52f, 0.46f, 0.46f} * (0.45f + 0.55f * lump), skin);
  }
  body.paint = [=](Vec p, Vec c) { return paint_body(p, c, build, mouth, colours); };
  if (mouth.open > 0.03f) body.cut = [=](Vec p) { return 0.75f * mouth.outside(build.face(p)); };
  return body;
}

// The bubbles at the sides of the head of a croaking frog.
void add_bubbles(ClayScene& scene, const Build& build) {
  float size = 0.62f * build.pose.bubbles;
  if (size < 0.06f) return;
  for (float side : {-1.0f, 1.0f}) {
    ClayPart bubble;
    bubble.gloss = 1.0f;
    bubble.frame = frame_within(build.ground, build.body);
    Vec at = build.on_head({side * (1.0f + 0.5f * size), -0.12f, 0.22f});
    bubble.ball(at, {size, size, size}, linear(mix(kBelly, kWhite, 0.35)));
    scene.push_back(bubble);
  }
}

void add_mouth_tongue(ClayScene& scene, const Build& build) {
  const Mouth mouth(build.pose);
  if (mouth.open < 0.16f || build.pose.tongue_out > 0.5f) return;
  ClayPart tongue;
  tongue.blend = 0.12f;
  tongue.gloss = 0.8f;
  tongue.inked = false;
  tongue.frame = frame_within(build.ground, build.body);
  float low = mouth.upper(0) - mouth.open;
  for (float side : {-1.0f, 1.0f})
    tongue.ball(build.on_head({side * 0.19f, low + 0.05f + 0.08f * mouth.open, 0.38f}),
                Vec{0.36f, 0.08f + 0.18f * mouth.open, 0.38f} * build.scale, kTongueRed);
  scene.push_back(tongue);
}

// Lids that meet in an upward arc, as in a laugh: the lower one moves most of the way.
struct GladLids {
  float glee;
  Vec skin, ink;

  float edge(float open_at, float x) const {
    return open_at + (0.38f - 0.70f * x * x - open_at) * std::min(1.0f, glee / 0.85f);
  }
  // Whether they cover the eye in direction n, in the head's axes; if so, with which colour.
  bool cover(Vec n, Vec& colour) const {
    const float in = std::max(n.y - edge(1.1f, n.x), edge(-0.9f, n.x) - n.y);
    if (glee <= 0 || in < 0) return false;
    // A line that thins towards its ends.
    const float line = 0.12f * std::sqrt(std::max(0.0f, 1 - n.x * n.x / 0.56f));
    colour = in < line && n.z > 0 ? ink : skin;
    return true;
  }
};

// White, a golden iris, a pupil and two glints; lids of the skin's colour from above and below.
ClayPart frog_eye(const Build& build, float side) {
  const FrogPose& pose = build.pose;
  const ClayFrame head = frame_within(build.ground, frame_within(build.body, build.head));
  const float radius = 0.47f;
  const Vec at = Vec{side * 0.72f, 0.76f, 0.27f} * build.scale;
  Vec ahead{pose.gaze_x - side * 0.10f, 0.10f + 0.75f * pose.gaze_y, 0.95f};
  const Vec gaze = unit(lerp(ahead, {0.8f * pose.gaze_x - side * 0.10f, 1.0f, 0.12f}, pose.to_sky));
  auto in_head = [&](Vec w) { return Vec{dot(w, head.x), dot(w, head.y), dot(w, head.z)}; };
  const Vec glint = unit(gaze + in_head({-0.30f, 0.36f, -0.10f}));
  const Vec second = unit(gaze + in_head({0.22f, -0.26f, 0.0f}));
  const Vec lid_from = unit(lerp({0, 0.62f, -0.78f}, {0, 0.10f, -1.0f}, pose.to_sky));
  const Vec cheek_from = unit(Vec{-side * 0.12f, -0.80f, 0.55f});
  const float lid = pose.lid[side < 0 ? 0 : 1], cheer = pose.cheer;
  const Vec skin = linear(kFrogGreen) * 0.92f, crease = skin * 0.16f;
  const GladLids glad{pose.glee[side < 0 ? 0 : 1], skin, crease};
  ClayPart g;
  g.blend = 0.01f;
  g.gloss = 0.9f;
  g.inked = false;
  g.frame = head;
  g.ball(at, {radius, radius, radius}, {1, 1, 0.95f});
  g.paint = [=](Vec p, Vec colour) {
    Vec n = unit(p - at);
    if (glad.cover(n, colour)) return colour;
    float upper = dot(n, lid_from) - (1.02f - 1.93f * lid);
    float lower = dot(n, cheek_from) - (1.02f - 1.1f * cheer);
    if (upper > 0) return lid > 0.05f && upper < 0.12f ? crease : skin;
    if (lower > 0) return lower < 0.09f ? crease : skin;
    if (dot(n, glint) > 0.955f || dot(n, second) > 0.988f) return Vec{1.15f, 1.15f, 1.15f};
    float seen = dot(n, gaze);
    if (seen > 0.80f) return Vec{0.008f, 0.010f, 0.02f};
    if (seen > 0.635f)
      return lerp({0.30f, 0.09f, 0.0f}, {0.95f, 0.52f, 0.02f}, (0.80f - seen) / 0.14f);
    if (seen > 0.60f) return Vec{0.05f, 0.02f, 0.01f};
    return colour;
  };
  return g;
}

// The joint between two bones; bones that are too short are stretched.
Vec joint(Vec a, Vec b, float upper, float lower, Vec bend) {
  Vec d = b - a;
  float far = std::max(0.05f, length(d)), reach = upper + lower;
  if (far > 0.995f * reach) return a + d * (upper / reach);
  Vec along = d * (1 / far);
  float x = std::clamp((far * far + upper * upper - lower * lower) / (2 * far), -upper, upper);
  float high = std::sqrt(std::max(0.0f, upper * upper - x * x));
  return a + along * x + unit(bend - along * dot(bend, along)) * high;
}

struct Digits {
  float spread, reach, thick, tip;
};

// Three toes with round pads and a web between, spread round their direction.
void add_digits(ClayPart& g, Vec from, Vec toward, const Digits& d, Vec skin, Vec light) {
  // The plane of the toes turns from the ground's to the viewer's as they are raised.
  Vec side = unit(cross({0, 1, -toward.y}, toward));
  Vec tips[3];
  for (int i = -1; i <= 1; i++) {
    float s = static_cast<float>(i);
    Vec end = from + side * (d.spread * s) + toward * (d.reach * (1 - 0.22f * std::fabs(s)));
    tips[i + 1] = end;
    g.limb(from, d.thick, end, d.thick * 0.72f, skin);
  }
  Vec web = lerp(from, tips[1], 0.55f);
  g.ball(web, Vec{d.spread * 0.72f, d.thick * 0.62f, d.spread * 0.72f}, lerp(skin, light, 0.5f));
  for (Vec tip : tips) g.ball(tip, {d.tip, d.tip * 0.86f, d.tip}, light);
}

void add_leg(ClayScene& scene, const Build& build, int which) {
  const FrogLimb& limb = build.pose.leg[which];
  const float side = which == 0 ? -1.0f : 1.0f;
  Vec skin = linear(kFrogGreen), light = linear(mix(kFrogGreen, kToeTips, 0.62));
  Vec hip = build.body.out(build.in_body({side * 0.68f, -0.12f, -0.82f}));
  Vec ankle = limb.at, toward = unit(limb.toward);
  Vec knee = joint(hip, ankle, 1.12f, 1.30f, limb.bend);
  // A stretched leg is thinner.
  float thin = std::clamp(std::sqrt(2.0f / std::max(0.5f, length(ankle - hip))), 0.78f, 1.0f);
  ClayPart leg;
  leg.blend = 0.17f;
  leg.gloss = 0.6f;
  leg.frame = build.ground;
  leg.limb(hip, 0.58f * thin, lerp(hip, knee, 0.55f), 0.52f * thin, skin);
  leg.limb(lerp(hip, knee, 0.4f), 0.50f * thin, knee, 0.34f * thin, skin);
  leg.limb(knee, 0.34f * thin, lerp(knee, ankle, 0.5f), 0.30f * thin, skin);
  leg.limb(lerp(knee, ankle, 0.5f), 0.30f * thin, ankle, 0.19f, skin);
  add_digits(leg, ankle + toward * 0.14f, toward, {0.46f, 0.58f, 0.17f, 0.22f}, skin, light);
  const Vec band = linear(kSpotGreen);
  leg.paint = [=](Vec p, Vec c) {
    // Two patches on the thigh continue the spots.
    Vec along = knee - hip;
    float t = dot(p - hip, along) / std::max(0.01f, dot(along, along));
    float above = p.y - (hip.y + along.y * t);
    if (above < 0.05f || t > 1.2f) return c;
    Vec shin = ankle - knee;
    float s = std::clamp(dot(p - knee, shin) / std::max(0.01f, dot(shin, shin)), 0.0f, 1.0f);
    Vec on_thigh = hip + along * std::clamp(t, 0.0f, 1.0f);
    if (length(p - on_thigh) > length(p - (knee + shin * s)) + 0.12f) return c;
    float near = std::min(std::fabs(t - 0.80f) / 0.13f, std::fabs(t - 0.36f) / 0.10f);
    return lerp(band, c, step_s(0.8f, 1.0f, near));
  };
  scene.push_back(leg);
}

void add_arm(ClayScene& scene, const Build& build, int which) {
  const FrogLimb& limb = build.pose.arm[which];
  const float side = which == 0 ? -1.0f : 1.0f;
  Vec skin = linear(kFrogGreen), light = linear(mix(kFrogGreen, kToeTips, 0.62));
  Vec shoulder = build.body.out(build.in_body({side * 0.80f, -0.16f, 0.42f}));
  Vec wrist = limb.at, toward = unit(limb.toward);
  Vec elbow = joint(shoulder, wrist, 0.78f, 0.80f, limb.bend);
  ClayPart arm;
  arm.blend = 0.13f;
  arm.gloss = 0.6f;
  arm.frame = build.ground;
  arm.limb(shoulder, 0.34f, elbow, 0.24f, skin);
  arm.limb(elbow, 0.23f, wrist, 0.17f, skin);
  float wide = 0.33f + 0.08f * build.pose.spread[which];
  add_digits(arm, wrist + toward * 0.06f, toward, {wide, 0.58f, 0.14f, 0.19f}, skin, light);
  scene.push_back(arm);
}

}  // namespace

ClayScene frog_scene(const FrogPose& pose) {
  const Build build(pose);
  ClayScene scene;
  scene.push_back(body_part(build));
  add_mouth_tongue(scene, build);
  add_bubbles(scene, build);
  for (int which : {0, 1}) {
    add_leg(scene, build, which);
    add_arm(scene, build, which);
    scene.push_back(frog_eye(build, which == 0 ? -1.0f : 1.0f));
  }
  return scene;
}

Vec frog_head_point(const FrogPose& pose, Vec p) {
  const Build build(pose);
  return frame_within(build.ground, build.body).out(build.on_head(p));
}

ClayPart frog_tongue(std::span<const Vec> path, float thick, float lump) {
  ClayPart tongue;
  // Wider than a segment is long, so that the seams between segments don't show.
  tongue.blend = 0.15f;
  tongue.gloss = 1.3f;
  const Vec sticky{1.0f, 0.30f, 0.32f};
  auto radius = [&](float t) {
    return thick * (1 - 0.32f * t) + (lump - 0.68f * thick) * step_s(0.80f, 0.98f, t);
  };
  const float count = static_cast<float>(path.size() - 1);
  for (size_t i = 0; i + 1 < path.size(); i++) {
    float a = static_cast<float>(i) / count, b = static_cast<float>(i + 1) / count;
    tongue.limb(path[i], radius(a), path[i + 1], radius(b),
                lerp(kTongueRed, sticky, step_s(0.75f, 1.0f, b)));
  }
  return tongue;
}

}  // namespace art
