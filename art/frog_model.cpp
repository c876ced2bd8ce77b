#include "art/frog_model.h"

#include <cmath>

#include "art/palette.h"

namespace art {

const FrogLook kPlayerFrog{kFrogGreen, {0.80, 0.95, 0.45}, {0.16, 0.56, 0.11}, false};
const FrogLook kRiderFrog{{0.98, 0.62, 0.30}, {1.0, 0.93, 0.66}, {0.88, 0.36, 0.26}, true};

namespace {

constexpr Vec kHead{0, 0.06f, 0.66f}, kHeadSize{1.12f, 0.72f, 0.86f};

struct Spot {
  Vec at;
  float radius;
};
constexpr Spot kSpots[] = {{{-0.52f, 0.72f, -0.25f}, 0.28f}, {{0.50f, 0.70f, -0.55f}, 0.32f},
                           {{0.10f, 0.74f, 0.10f}, 0.21f},   {{-0.22f, 0.66f, -1.0f}, 0.26f},
                           {{-0.98f, 0.3f, -0.75f}, 0.24f},  {{0.98f, 0.35f, 0.0f}, 0.2f}};

// Mouth, cheeks, belly and spots are paint: at this size geometry would be noise.
Vec paint_body(Vec p, Vec colour, const FrogPose& pose, Vec spots, Vec belly) {
  colour = lerp(colour, belly, step_s(0.10f, 0.42f, -p.y) * step_s(-1.4f, 0.4f, p.z));
  for (const Spot& q : kSpots) {
    Vec d = p - q.at;
    float r = std::sqrt(d.x * d.x + d.z * d.z + 0.3f * d.y * d.y);
    colour = lerp(spots, colour, step_s(q.radius - 0.03f, q.radius + 0.02f, r));
  }
  Vec d{(p.x - kHead.x) / kHeadSize.x, (p.y - kHead.y) / kHeadSize.y,
        (p.z - kHead.z) / kHeadSize.z};
  if (d.z < 0.1f) return colour;
  for (float side : {-1.0f, 1.0f}) {
    float r = std::hypot(d.x - side * 0.70f, (d.y - 0.02f) * 1.3f);
    colour = lerp(colour, linear({0.98, 0.56, 0.50}), 0.55f * (1 - step_s(0.05f, 0.20f, r)));
  }
  const float wide = 0.62f;
  if (std::fabs(d.x) > wide + 0.04f) return colour;
  float smile = -0.20f + 0.34f * d.x * d.x;
  float open = pose.mouth * 0.62f * std::max(0.0f, 1 - d.x * d.x / (wide * wide));
  float below = smile - d.y;
  if (below > -0.045f && below < open + 0.045f) {
    colour = linear({0.16, 0.10, 0.06});
    if (below > 0 && below < open) {
      bool tongue = below > open * 0.45f && std::fabs(d.x) < 0.38f;
      colour = tongue ? linear({0.95, 0.42, 0.45}) : linear({0.46, 0.06, 0.10});
    }
  }
  return colour;
}

// A foot or a hand: three toes with round tips, spread round the way it points.
void add_toes(ClayPart& g, Vec from, Vec to, Vec up, float spread, float reach, float thick,
              float tip, Vec skin, Vec light) {
  Vec ahead = unit(to - from), side = unit(cross(up, ahead));
  for (int i = -1; i <= 1; i++) {
    float s = static_cast<float>(i);
    Vec end = to + side * (spread * s) + ahead * (reach * (1 - 0.25f * std::fabs(s)));
    g.limb(from, thick, end, thick * 0.75f, skin);
    g.ball(end, {tip, tip * 0.82f, tip}, light);
  }
}

ClayPart body_part(const FrogPose& pose, const FrogLook& look, const ClayFrame& frame) {
  Vec skin = linear(look.skin), belly = linear(look.belly), spots = linear(look.spots);
  float fat = 1 + 0.05f * pose.breathe;
  ClayPart body;
  body.blend = 0.38f;
  body.frame = frame;
  body.ball({0, 0, -0.50f}, {1.12f * fat, 0.86f * fat, 1.10f}, skin);
  body.ball(kHead, kHeadSize, skin);
  for (float side : {-1.0f, 1.0f})
    body.ball({side * 0.70f, 0.55f, 0.86f}, {0.5f, 0.5f, 0.5f}, skin);
  body.ball({0, -0.35f, 0.1f}, {0.95f * fat, 0.6f * fat, 1.2f}, belly);
  body.paint = [=](Vec p, Vec c) { return paint_body(p, c, pose, spots, belly); };
  return body;
}

void add_crown(ClayScene& scene, const ClayFrame& body) {
  // It stands on the brow, upright when the chest is raised.
  const Vec up{0, 0.87f, 0.50f}, back{0, 0.50f, -0.87f}, foot{0, 0.66f, 0.62f};
  Vec gold = linear(kGold);
  ClayPart crown;
  crown.blend = 0.05f;
  crown.gloss = 0.9f;
  crown.frame = body;
  for (int i = 0; i < 5; i++) {
    float a = static_cast<float>(i * kTau / 5);
    auto at = [&](float r, float high) {
      return foot + Vec{r * std::sin(a), 0, 0} + back * (r * std::cos(a)) + up * high;
    };
    crown.limb(at(0.30f, 0.0f), 0.24f, at(0.42f, 0.62f), 0.10f, gold);
    crown.ball(at(0.42f, 0.70f), {0.17f, 0.17f, 0.17f}, linear(i % 2 ? kRed : kPink));
  }
  scene.push_back(crown);
}

void add_leg(ClayScene& scene, const FrogPose& pose, const FrogLook& look, const ClayFrame& f,
             float side, float height) {
  Vec skin = linear(look.skin), light = linear(mix(look.skin, look.belly, 0.45));
  auto at = [&](Vec folded, Vec stretched) {
    Vec v = lerp(folded, stretched, pose.air);
    return v + Vec{0, pose.lift, pose.ahead};
  };
  float h = height;
  Vec hip = at({side * 0.72f, h - 0.10f, -0.85f}, {side * 0.66f, h - 0.10f, -0.95f});
  Vec knee =
      at({side * 1.60f, 0.80f - 0.15f * pose.crouch, -0.25f}, {side * 0.96f, h - 0.20f, -1.80f});
  Vec ankle = at({side * 1.18f, 0.28f, -1.45f}, {side * 0.80f, h - 0.42f, -2.50f});
  Vec toes = at({side * 1.86f, 0.14f, -1.38f}, {side * 1.02f, h - 0.62f, -3.0f});
  auto seat = [&](Vec& v, Vec upright) {
    v = lerp(v, upright + Vec{0, pose.lift, pose.ahead}, pose.stand);
  };
  float spring = pose.stand * pose.air;  // a jump on the spot straightens the legs downward
  seat(hip, {side * 0.72f, h - 0.05f, -0.70f});
  seat(knee, {side * 1.55f, 1.00f - 0.7f * spring, 0.10f});
  seat(ankle, {side * 1.18f, 0.30f - 1.0f * spring, -0.35f});
  seat(toes, {side * 1.62f, 0.14f - 1.2f * spring, 0.50f});
  ClayPart leg;
  leg.blend = 0.16f;
  leg.frame = f;
  leg.limb(hip, 0.56f, knee, 0.36f, skin);
  leg.limb(knee, 0.32f, ankle, 0.19f, skin);
  add_toes(leg, ankle, toes, {0, 1, 0}, 0.46f, 0.04f, 0.15f, 0.21f, skin, light);
  scene.push_back(leg);
}

void add_arm(ClayScene& scene, const FrogPose& pose, const FrogLook& look, const ClayFrame& f,
             const ClayFrame& body_in_f, float side) {
  Vec skin = linear(look.skin), light = linear(mix(look.skin, look.belly, 0.45));
  int which = side < 0 ? 0 : 1;
  float up = pose.arm_up[which], in = pose.arm_in[which];
  Vec shoulder = body_in_f.out({side * 0.80f, -0.12f, 0.5f});
  Vec ground = {0, pose.lift, pose.ahead};
  Vec elbow = lerp(Vec{side * 1.40f, 0.55f, 0.40f} + ground,
                   body_in_f.out({side * 1.22f, -0.2f, 1.15f}), pose.air);
  Vec hand = lerp(Vec{side * 1.42f, 0.14f, 1.12f} + ground,
                  body_in_f.out({side * 1.40f, -0.25f, 1.90f}), pose.air);
  elbow = lerp(elbow, Vec{side * 1.30f, 0.95f, 0.45f} + ground, pose.stand);
  hand = lerp(hand, Vec{side * 0.95f, 0.62f, 0.95f} + ground, pose.stand);
  elbow = lerp(elbow, shoulder + Vec{side * 0.72f, 0.30f, 0.28f}, up);
  hand = lerp(hand, shoulder + Vec{side * 0.98f, 1.55f, 0.32f}, up);
  elbow = lerp(elbow, shoulder + Vec{side * 0.55f, -0.25f, 0.55f}, in);
  hand = lerp(hand, body_in_f.out({side * 0.22f, -0.25f, 1.75f}), in);
  ClayPart arm;
  arm.blend = 0.13f;
  arm.frame = f;
  arm.limb(shoulder, 0.32f, elbow, 0.24f, skin);
  arm.limb(elbow, 0.22f, hand, 0.15f, skin);
  Vec reach = hand - elbow;
  // A hand on the ground lies flat; a raised one shows its palm.
  reach.y *= std::max(0.25f, std::min(1.0f, up + in));
  Vec palm_up = lerp({0, 1, 0}, {0, 0.1f, 1}, std::min(1.0f, up));
  add_toes(arm, hand, hand + unit(reach) * 0.2f, palm_up, 0.36f, 0.14f, 0.12f, 0.18f, skin, light);
  scene.push_back(arm);
}

}  // namespace

ClayScene frog_scene(const FrogPose& pose, const FrogLook& look) {
  const float deg = static_cast<float>(kTau) / 360;
  ClayFrame f = frame_yaw(pose.yaw_deg);
  float height = 0.95f - 0.30f * pose.crouch + 0.15f * pose.air;
  float s = std::sin(pose.rear_deg * deg), k = std::cos(pose.rear_deg * deg);
  float rs = std::sin(pose.roll_deg * deg), rk = std::cos(pose.roll_deg * deg);
  ClayFrame body;
  // Raised round the hips, then leaned to the side.
  Vec y{0, k, -s}, x{1, 0, 0};
  body.x = x * rk - y * rs;
  body.y = y * rk + x * rs;
  body.z = {0, s, k};
  Vec hips{0, height - 0.10f + pose.lift, -0.85f + pose.ahead + 0.35f * pose.stand};
  body.at = hips + body.y * 0.10f + body.z * 0.85f;
  ClayFrame body_world = frame_within(f, body);

  ClayScene scene;
  scene.push_back(body_part(pose, look, body_world));
  Vec skin = linear(look.skin) * 0.9f;
  for (float side : {-1.0f, 1.0f}) {
    add_leg(scene, pose, look, f, side, height);
    add_arm(scene, pose, look, f, body, side);
    float turn = std::sin(pose.head_deg * deg);
    Vec gaze = lerp({-side * 0.08f + turn, 0.25f, 0.95f}, {-side * 0.08f + turn, 1.0f, 0.10f},
                    pose.look_up);
    scene.push_back(clay_eye(body_world, {side * 0.72f, 0.84f, 0.94f}, 0.46f, gaze, 0.80f, skin,
                             pose.blink, {0, 0.35f, -0.9f}));
  }
  if (look.crown) add_crown(scene, body_world);
  return scene;
}

}  // namespace art
