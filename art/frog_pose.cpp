#include "art/frog_pose.h"

#include <array>
#include <bit>
#include <cmath>
#include <type_traits>

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
constexpr size_t kNumbers = sizeof(FrogPose) / sizeof(float);
static_assert(std::is_trivially_copyable_v<FrogPose> && sizeof(FrogPose) % sizeof(float) == 0);
using Numbers = std::array<float, kNumbers>;

// The slope through the middle one of three values, without overshoot.
float slope(float before, float after) {
  return before * after <= 0 ? 0 : 2 * before * after / (before + after);
}

}  // namespace

FrogLimb mirrored(const FrogLimb& limb) {
  auto turn = [](Vec v) { return Vec{-v.x, v.y, v.z}; };
  return {turn(limb.at), turn(limb.toward), turn(limb.bend)};
}

void both(FrogLimb* pair, const FrogLimb& right) {
  pair[0] = mirrored(right);
  pair[1] = right;
}

FrogPose frog_sitting() {
  FrogPose pose;
  both(pose.leg, {{1.18f, 0.28f, -1.42f}, {0.92f, -0.20f, 0.05f}, {0.65f, 0.35f, 0.70f}});
  both(pose.arm, {{1.56f, 0.16f, 1.22f}, {0.55f, -0.12f, 0.8f}, {0.9f, 0.5f, -0.4f}});
  return pose;
}

FrogPose frog_upright() {
  FrogPose pose;
  pose.hips = {0, 0.82f, -0.50f};
  pose.pitch_deg = 34;
  pose.to_sky = 0;
  pose.gaze_y = 0.25f;
  both(pose.leg, {{1.12f, 0.24f, -0.30f}, {0.55f, -0.10f, 0.85f}, {0.75f, 0.65f, 0.55f}});
  both(pose.arm, {{0.72f, 0.20f, 0.86f}, {0.28f, -0.15f, 0.9f}, {0.9f, 0.1f, -0.1f}});
  return pose;
}

FrogPose mix(const FrogPose& a, const FrogPose& b, float t) {
  auto x = std::bit_cast<Numbers>(a), y = std::bit_cast<Numbers>(b);
  for (size_t i = 0; i < kNumbers; i++) x[i] += (y[i] - x[i]) * t;
  return std::bit_cast<FrogPose>(x);
}

FrogPose pose_between(std::span<const FrogKey> keys, float frame) {
  if (frame <= keys.front().frame) return keys.front().pose;
  if (frame >= keys.back().frame) return keys.back().pose;
  size_t i = 1;
  while (keys[i].frame < frame) i++;
  auto at = [&](size_t k) { return std::bit_cast<Numbers>(keys[k].pose); };
  auto span = [&](size_t k) { return keys[k].frame - keys[k - 1].frame; };
  const bool first = i == 1, last = i + 1 == keys.size();
  const Numbers a = at(first ? 0 : i - 2), b = at(i - 1), c = at(i), d = at(last ? i : i + 1);
  const float wide = span(i), t = (frame - keys[i - 1].frame) / wide;
  Numbers out;
  for (size_t k = 0; k < kNumbers; k++) {
    const float own = (c[k] - b[k]) / wide;
    const float from = first ? 0 : slope((b[k] - a[k]) / span(i - 1), own);
    const float to = last ? 0 : slope(own, (d[k] - c[k]) / span(i + 1));
    const float u = 1 - t;
    out[k] = b[k] * u * u * (1 + 2 * t) + c[k] * t * t * (3 - 2 * t) +
             wide * (from * t * u * u - to * t * t * u);
  }
  return std::bit_cast<FrogPose>(out);
}

float bump(float t) {
  return t <= 0 || t >= 1 ? 0 : 0.5f - 0.5f * std::cos(2 * kPi * t);
}

float ringing(float t, float turns, float decay) {
  return t <= 0 ? 0 : std::exp(-decay * t) * std::sin(2 * kPi * turns * t);
}

float ease(float run, float a, float b) {
  return step_s(a, b, run);
}

}  // namespace art
