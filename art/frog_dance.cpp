#include "art/frog_dance.h"

#include <cmath>
#include <vector>

namespace art {

namespace {

// The dance is only seen on the far bank, where the screen ends 54 pixels above the cell's foot. So
// the frog comes forward once it has turned, and dances low, its face between its knees.
constexpr float kForward = -1.06f;
constexpr float kBeat = 8;  // frames from hip to hip

const FrogLimb kPlanted{{1.36f, 0.24f, 0.22f}, {0.62f, -0.12f, 0.80f}, {0.9f, 0.55f, 0.35f}};
const FrogLimb kLifted{{2.15f, 0.70f, 0.50f}, {0.80f, 0.55f, 0.10f}, {0.6f, 0.80f, 0.25f}};
const FrogLimb kOnHip{{1.30f, 0.78f, 0.12f}, {-0.75f, -0.20f, 0.55f}, {1.0f, 0.25f, -0.2f}};
const FrogLimb kOut{{2.10f, 1.55f, 0.62f}, {0.85f, 0.50f, 0.15f}, {0.3f, -0.8f, 0.2f}};
const FrogLimb kHigh{{1.50f, 2.40f, 0.70f}, {0.40f, 0.90f, 0.05f}, {0.9f, -0.5f, 0.2f}};
const FrogLimb kFolded{{0.85f, 0.85f, 1.10f}, {-0.60f, 0.30f, 0.70f}, {0.9f, -0.4f, -0.2f}};

FrogPose facing() {
  FrogPose pose = frog_upright();
  pose.yaw_deg = 180;
  pose.move = {0, 0, kForward};
  pose.hips = {0, 0.80f, -0.40f};
  pose.pitch_deg = 28;
  pose.head_pitch_deg = -13;
  pose.gaze_y = 0.45f;
  both(pose.leg, kPlanted);
  both(pose.arm, kOut);
  pose.spread[0] = pose.spread[1] = 1;
  pose.mouth = 0.75f;
  return pose;
}

// Weight on one foot, that hip pushed out and a hand on it; the other arm and leg fly.
FrogPose hip(float side) {
  FrogPose pose = facing();
  const int down = side > 0 ? 1 : 0, up = 1 - down;
  auto turned = [](const FrogLimb& limb, int which) { return which ? limb : mirrored(limb); };
  pose.hips.x = 0.46f * side;
  pose.hips.y = 0.66f;
  pose.sway = 0.42f * side;
  pose.roll_deg = -15 * side;
  pose.yaw_deg += 13 * side;
  pose.head_roll_deg = 17 * side;
  pose.tall = 0.90f;
  pose.leg[down] = turned(kPlanted, down);
  pose.leg[up] = turned(kLifted, up);
  pose.arm[down] = turned(kOnHip, down);
  pose.arm[up] = turned(kOut, up);
  pose.arm[up].at.y += 0.95f;
  pose.arm[up].at.x *= 0.86f;
  pose.mouth = 0.55f;
  pose.cheer = 0.36f;
  return pose;
}

// Between two hips: up on both feet.
FrogPose passing() {
  FrogPose pose = facing();
  pose.hips.y = 0.98f;
  pose.tall = 1.07f;
  both(pose.arm, mix(frog_upright(), facing(), 0.8f).arm[1]);
  pose.arm[0].at.y -= 0.25f;
  pose.arm[1].at.y -= 0.25f;
  pose.mouth = 0.85f;
  pose.cheer = 0.2f;
  return pose;
}

FrogPose squat(float depth) {
  FrogPose pose = facing();
  pose.hips.y = 0.80f - 0.32f * depth;
  pose.tall = 1 - 0.26f * depth;
  pose.pitch_deg = 30 - 8 * depth;
  both(pose.arm, kFolded);
  pose.mouth = 0.25f;
  return pose;
}

FrogPose leaping(float yaw_deg, float up, float forward) {
  FrogPose pose = frog_sitting();
  pose.yaw_deg = yaw_deg;
  pose.move = {0, up, forward};
  pose.hips.y = 1.0f;
  pose.tall = 1.10f;
  pose.pitch_deg = 14;
  pose.to_sky = 0.4f;
  both(pose.leg, {{1.05f, 0.20f, -1.20f}, {0.6f, -0.65f, 0.1f}, {0.8f, 0.4f, 0.6f}});
  both(pose.arm, {{1.75f, 0.90f, 0.80f}, {0.8f, 0.2f, 0.4f}, {0.6f, -0.5f, 0.0f}});
  return pose;
}

std::vector<FrogKey> dance_keys() {
  std::vector<FrogKey> keys;
  auto key = [&](float frame, const FrogPose& pose) { keys.push_back({frame, pose}); };
  const FrogPose rest = frog_sitting();
  key(0, rest);

  // It turns in two hops, each time with the head ahead of the body.
  FrogPose wind = rest;
  wind.hips.y = 0.62f;
  wind.tall = 0.80f;
  wind.move.z = 0.12f;
  wind.yaw_deg = -14;
  wind.head_yaw_deg = -12;
  key(3, wind);
  FrogPose up = leaping(52, 0.75f, 0.0f);
  up.head_yaw_deg = 34;
  key(5.5f, up);
  FrogPose side = rest;
  side.yaw_deg = 92;
  side.move.z = 0.12f;
  side.hips.y = 0.58f;
  side.tall = 0.76f;
  side.to_sky = 0.3f;
  side.head_yaw_deg = 40;
  key(8, side);
  FrogPose wind2 = side;
  wind2.hips.y = 0.66f;
  wind2.tall = 0.84f;
  wind2.yaw_deg = 84;
  wind2.head_yaw_deg = 18;
  key(10, wind2);
  up = leaping(140, 0.85f, -0.60f);
  up.head_yaw_deg = 30;
  up.to_sky = 0;
  up.mouth = 0.3f;
  key(12.5f, up);
  FrogPose land = squat(1);
  land.mouth = 0.1f;
  key(15, land);
  key(17, squat(0.8f));

  // It sees the player: both arms up.
  FrogPose joy = facing();
  joy.hips.y = 1.12f;
  joy.tall = 1.14f;
  joy.pitch_deg = 44;
  joy.mouth = 1;
  both(joy.arm, kHigh);
  key(20, joy);
  joy.hips.y = 1.0f;
  joy.tall = 1.02f;
  key(23, joy);

  for (int beat = 0; beat < 4; beat++) {
    const float frame = 27 + kBeat * static_cast<float>(beat), way = beat % 2 ? -1.0f : 1.0f;
    key(frame, hip(way));
    // Its weight rests on the hip for a moment before it changes sides.
    FrogPose sit_in = hip(way);
    sit_in.hips.y -= 0.05f;
    sit_in.sway *= 1.12f;
    key(frame + 2, sit_in);
    if (beat < 3) key(frame + kBeat - 3, passing());
  }

  // Down, and one turn in the air with the arms held in.
  FrogPose low = squat(1);
  low.move.z += 0.06f;
  key(57.5f, low);
  FrogPose take_off = squat(0);
  take_off.hips.y = 1.2f;
  take_off.tall = 1.18f;
  take_off.move = {0, 0.6f, kForward + 0.5f};
  take_off.yaw_deg = 215;
  key(59.5f, take_off);
  FrogPose spin = take_off;
  spin.move.z = kForward + 0.2f;
  spin.move.y = 1.5f;
  spin.tall = 1.06f;
  spin.yaw_deg = 360;
  both(spin.leg, {{0.95f, 0.30f, -0.15f}, {0.5f, -0.6f, 0.6f}, {0.9f, 0.4f, 0.5f}});
  key(63, spin);
  spin.move.y = 0.5f;
  spin.yaw_deg = 515;
  key(66, spin);
  FrogPose down = squat(1.15f);
  down.yaw_deg = 540;
  down.mouth = 0.3f;
  key(68, down);

  // And the final pose.
  FrogPose bow = facing();
  bow.yaw_deg = 540;
  bow.hips = {0, 0.80f, -0.34f};
  bow.pitch_deg = 20;
  bow.head_pitch_deg = -17;
  bow.tall = 1.12f;
  bow.mouth = 0.68f;
  bow.move.z += 0.18f;  // otherwise its chin would leave the cell
  bow.cheer = 0.3f;
  FrogLimb out = kOut;
  out.at = {2.35f, 1.75f, 0.80f};
  both(bow.arm, out);
  key(71.5f, bow);
  bow.hips.y = 0.64f;
  bow.tall = 0.96f;
  bow.head_roll_deg = 9;
  key(74.5f, bow);
  bow.hips.y = 0.67f;
  bow.tall = 1;
  key(77, bow);
  return keys;
}

}  // namespace

FrogPose frog_dance(float frame) {
  static const std::vector<FrogKey> keys = dance_keys();
  FrogPose pose = pose_between(keys, frame);
  // Head, eyes and hands follow a little later than the body.
  const FrogPose late = pose_between(keys, frame - 1.6f);
  pose.head_roll_deg = late.head_roll_deg;
  for (int i : {0, 1}) {
    pose.arm[i].at = lerp(pose.arm[i].at, late.arm[i].at, 0.45f);
    pose.arm[i].toward = late.arm[i].toward;
  }
  const float shut = bump((frame - 9) / 6) + bump((frame - 66) / 5);
  for (float& lid : pose.lid) lid = shut;
  // While the bow is held its fingers flutter, and it winks.
  const float held = step_s(72, 76, frame);
  const float flutter = held * std::sin(static_cast<float>(kTau) * (frame - 72) / 5);
  for (int i : {0, 1}) {
    const float side = i == 0 ? -1.0f : 1.0f;
    pose.arm[i].toward.x += 0.45f * side * flutter;
    pose.arm[i].toward.y -= 0.35f * flutter;
  }
  pose.hips.y += 0.04f * flutter;
  pose.glee[0] = step_s(77, 79.5f, frame) - step_s(82.5f, 85, frame);
  return pose;
}

}  // namespace art
