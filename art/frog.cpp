// The player's frog in all its sheets.
#include <algorithm>
#include <cmath>
#include <vector>

#include "art/catalogue.h"
#include "art/frog_dance.h"
#include "art/frog_model.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
// The ground under the frog's middle; its heels end at the foot of the cell, y 248.
constexpr ClayCamera kCamera{50, 30, {128, 201}};
constexpr Colour kOutline{0.03, 0.18, 0.05};

void draw_scene(const Cell& cell, const FrogPose& pose, ClayScene& scene) {
  Canvas canvas(cell.width, cell.height);
  // The shadow stays on the ground, and gets smaller as the frog rises.
  Vec middle = frog_head_point(pose, {0, 0, -0.9f});
  float high = 1 / (1 + 0.42f * std::max(0.0f, middle.y - 0.9f));
  const double rx = 80 * high, ry = 34 * high;
  soft_spot(cell.ctx, 128 + 30 * middle.x, std::min(252 - ry, 208.0 - 23 * middle.z), rx, ry,
            kBlack, 0.52 * high);
  clay_draw(canvas, scene, kCamera, kOutline, 2.0f);
  paint_canvas(cell.ctx, canvas, 0, 0);
}

void draw_pose(const Cell& cell, const FrogPose& pose) {
  ClayScene scene = frog_scene(pose);
  draw_scene(cell, pose, scene);
}

// The key poses of a hop. During the hop its cell moves the height of a lane at a steady pace, so
// anything on the ground moves backwards in the cell before the leap, and comes in from ahead after
// it.
std::vector<FrogKey> hop_keys() {
  constexpr float kSlide = 2.43f / 15;  // units of ground for each frame
  const FrogPose sit = frog_sitting();
  FrogPose crouch = sit;
  crouch.hips.y = 0.58f;
  crouch.hips.z = -1.0f;
  crouch.tall = 0.78f;
  crouch.slim = 0.94f;
  crouch.pitch_deg = -5;
  crouch.head_pitch_deg = 12;
  both(crouch.arm, {{1.50f, 0.16f, 0.85f}, {0.6f, -0.12f, 0.8f}, {0.9f, 0.6f, -0.2f}});

  FrogPose push = sit;  // the toes are still on the ground
  push.hips = {0, 1.10f, -0.40f};
  push.pitch_deg = 24;
  push.slim = 1.18f;
  both(push.leg, {{1.02f, 0.40f, -1.62f}, {0.60f, -0.50f, -0.20f}, {1, 0.3f, 0.2f}});
  both(push.arm, {{1.62f, 0.55f, 0.75f}, {0.6f, -0.6f, 0.2f}, {0.8f, 0.2f, -0.7f}});

  FrogPose stretch = sit;
  stretch.hips = {0, 0.95f, -0.50f};
  stretch.pitch_deg = 12;
  stretch.slim = 1.20f;
  both(stretch.leg, {{0.80f, 0.20f, -2.50f}, {0.45f, -0.30f, -0.85f}, {1, 0.3f, 0.3f}});
  both(stretch.arm, {{1.75f, 0.62f, -0.05f}, {0.6f, -0.1f, -0.7f}, {0.9f, 0.2f, 0.1f}});
  FrogPose trail = stretch;
  trail.pitch_deg = 8;
  trail.slim = 1.10f;
  both(trail.leg, {{0.62f, 0.30f, -2.45f}, {0.20f, -0.2f, -0.95f}, {1, 0.3f, 0.3f}});

  FrogPose tuck = sit;
  tuck.hips = {0, 0.95f, -0.70f};
  tuck.pitch_deg = 2;
  tuck.slim = 0.84f;
  tuck.tall = 1.08f;
  both(tuck.leg, {{1.12f, 0.45f, -1.38f}, {0.60f, -0.45f, -0.50f}, {0.9f, 0.3f, 0.6f}});
  both(tuck.arm, {{1.22f, 0.55f, 0.95f}, {0.5f, -0.5f, 0.6f}, {0.9f, 0.2f, -0.5f}});

  FrogPose reach = tuck;
  reach.pitch_deg = -14;
  reach.slim = 1.08f;
  reach.tall = 0.96f;
  reach.hips = {0, 1.10f, -0.75f};
  both(reach.leg, {{1.40f, 0.55f, -1.45f}, {0.8f, -0.3f, -0.3f}, {0.9f, 0.4f, 0.5f}});
  both(reach.arm, {{1.42f, 0.45f, 1.95f}, {0.35f, 0.05f, 0.9f}, {0.9f, 0.2f, 0.1f}});
  reach.spread[0] = reach.spread[1] = 1;

  FrogPose touch = reach;  // hands down, the rear still in the air
  touch.hips = {0, 1.20f, -0.62f};
  touch.pitch_deg = -17;
  touch.slim = 0.96f;
  both(touch.leg, {{1.45f, 0.50f, -1.25f}, {0.9f, -0.3f, 0.0f}, {0.8f, 0.5f, 0.5f}});
  both(touch.arm, {{1.36f, 0.16f, 1.22f}, {0.45f, -0.12f, 0.9f}, {0.9f, 0.4f, -0.3f}});

  FrogPose squash = sit;
  squash.hips = {0, 0.50f, -0.80f};
  squash.tall = 0.70f;
  squash.head_pitch_deg = -8;
  squash.spread[0] = squash.spread[1] = 1;
  both(squash.leg, {{1.40f, 0.26f, -1.34f}, {0.95f, -0.2f, 0.15f}, {0.8f, 0.2f, 0.6f}});
  both(squash.arm, {{1.58f, 0.16f, 0.98f}, {0.65f, -0.12f, 0.75f}, {0.9f, 0.5f, -0.3f}});

  FrogPose rebound = sit;
  rebound.hips.y = 0.95f;
  rebound.tall = 1.07f;
  rebound.head_pitch_deg = 5;

  std::vector<FrogKey> keys;
  auto key = [&](float frame, FrogPose pose, float up, float ahead) {
    pose.move = {0, up, ahead};
    keys.push_back({frame, pose});
  };
  key(0, sit, 0, 0);
  key(1, mix(sit, crouch, 0.72f), 0, -0.08f);
  key(2, crouch, 0, -0.14f);
  key(3, push, 0.10f, -0.02f);
  key(4, stretch, 0.80f, 0.62f);
  key(5, trail, 1.50f, 0.92f);
  key(7, tuck, 2.25f, 1.02f);
  key(9, reach, 1.75f, 0.95f);
  key(10, reach, 1.05f, 0.78f);
  key(11, touch, 0.25f, 3.5f * kSlide);
  key(12, squash, 0, 2.5f * kSlide);
  key(13, rebound, 0, 1.5f * kSlide);
  key(14, mix(sit, squash, 0.12f), 0, 0.5f * kSlide);
  return keys;
}

void draw_frog_hop(const Cell& cell) {
  static const std::vector<FrogKey> keys = hop_keys();
  draw_pose(cell, pose_between(keys, static_cast<float>(cell.frame)));
}

// The breath of all idle sheets, at its end in the first frame and in the last.
void breathe(FrogPose& pose, float t) {
  pose.breathe = 0.5f - 0.5f * std::cos(4 * kPi * t);
  pose.tall *= 1 + 0.035f * pose.breathe;
  pose.head_pitch_deg += 3 * pose.breathe;
}

void blink(FrogPose& pose, float t, float at) {
  float shut = bump(0.5f + (t - at) / 0.10f);
  for (float& lid : pose.lid) lid = std::max(lid, shut);
}

void draw_frog_breathe(const Cell& cell) {
  FrogPose pose = frog_sitting();
  float t = static_cast<float>(cell.run());
  breathe(pose, t);
  // The second breath becomes a croak: the bubbles swell, quiver and shrink.
  float call = ease(t, 0.52f, 0.68f) - ease(t, 0.84f, 0.94f);
  pose.bubbles = pose.pouch = call * (0.92f + 0.08f * std::cos(2 * kPi * 9 * t));
  pose.head_pitch_deg += 9 * call;
  pose.tall -= 0.05f * bump((t - 0.46f) / 0.12f) - 0.02f * call;
  blink(pose, t, 0.20f);
  blink(pose, t, 0.30f);
  for (float& lid : pose.lid) lid = std::max(lid, 0.25f * call);
  blink(pose, t, 0.90f);
  draw_pose(cell, pose);
}

void draw_frog_look_round(const Cell& cell) {
  FrogPose pose = frog_sitting();
  float t = static_cast<float>(cell.run());
  breathe(pose, t);
  // A dip the other way, the eyes, then the head, then the body: each a little later than the last.
  auto aside = [&](float late) {
    float u = t - late;
    return 0.12f * bump((u - 0.02f) / 0.12f) - ease(u, 0.08f, 0.20f) +
           1.12f * ease(u, 0.38f, 0.50f) + ease(u, 0.38f, 0.50f) -
           0.12f * bump((u - 0.49f) / 0.14f) - 1.12f * ease(u, 0.76f, 0.88f);
  };
  float eyes = aside(0), head = aside(0.025f), body = aside(0.06f);
  pose.gaze_x = 0.75f * eyes;
  pose.to_sky = 1 - 0.45f * std::fabs(eyes);
  pose.head_yaw_deg = 44 * head;
  pose.head_roll_deg = 9 * head;
  pose.yaw_deg = 15 * body;
  pose.move.z = 0.30f * std::fabs(body);  // its feet turn on the spot
  pose.roll_deg = 5 * body;
  pose.sway = -0.12f * body;
  float lifted = std::fabs(head);
  pose.pitch_deg = 9 * lifted;
  pose.hips.y += 0.06f * lifted;
  // It blinks with each turn, like all animals with lids.
  blink(pose, t, 0.12f);
  blink(pose, t, 0.44f);
  blink(pose, t, 0.66f);
  blink(pose, t, 0.83f);
  draw_pose(cell, pose);
}

// The tongue of a yawn, in the head's axes: it unrolls, curls up and whips back.
void add_yawn_tongue(ClayScene& scene, const FrogPose& pose, float out, float curl) {
  if (out < 0.05f) return;
  Vec path[14];
  Vec at{0, -0.42f, 0.55f};
  float angle = -0.15f;
  for (Vec& p : path) {
    p = frog_head_point(pose, at);
    at = at + Vec{0.02f, std::sin(angle), std::cos(angle)} * (0.15f * out);
    angle += 0.06f + 0.26f * curl;
  }
  scene.push_back(frog_tongue(path, 0.25f, 0.26f));
}

void draw_frog_yawn(const Cell& cell) {
  FrogPose pose = frog_sitting();
  float t = static_cast<float>(cell.run());
  breathe(pose, t);
  // It leans away and scratches its head with a hind foot.
  float lean = ease(t, 0.02f, 0.12f) - ease(t, 0.40f, 0.52f);
  float up = ease(t, 0.06f, 0.15f) - ease(t, 0.38f, 0.47f);
  float rub = std::sin(2 * kPi * 6 * (t - 0.14f)) * (t > 0.14f && t < 0.39f ? 1.0f : 0.0f);
  FrogLimb& foot = pose.leg[1];
  const FrogLimb raised{{1.62f, 1.28f + 0.20f * rub, 0.15f + 0.22f * rub},
                        {-0.45f, 0.55f, 0.75f},
                        {0.9f, 0.3f, -0.3f}};
  foot.at = lerp(foot.at, raised.at, up);
  foot.toward = lerp(foot.toward, raised.toward, up);
  foot.bend = lerp(foot.bend, raised.bend, up);
  pose.roll_deg = -13 * lean - 1.5f * rub;
  pose.sway = -0.10f * lean;
  pose.head_roll_deg = 15 * lean + 4 * rub;
  pose.head_yaw_deg = 14 * lean;
  pose.lid[1] = 0.95f * up;
  pose.lid[0] = 0.55f * up;
  // Then it yawns: down first, the head far back, and the tongue whips back.
  float down = bump((t - 0.50f) / 0.12f);
  float yawn = ease(t, 0.55f, 0.68f) - ease(t, 0.82f, 0.90f);
  float out = ease(t, 0.62f, 0.74f) - ease(t, 0.83f, 0.87f);
  float snap = ringing(t - 0.87f, 10, 30) * (1 - ease(t, 0.95f, 1.0f));
  pose.tall -= 0.10f * down - 0.05f * yawn + 0.08f * snap;
  pose.pitch_deg = 16 * yawn;
  pose.head_pitch_deg += 44 * yawn - 6 * down;
  pose.mouth = yawn;
  pose.tongue_out = out > 0.05f ? 1.0f : 0.0f;
  pose.spread[0] = pose.spread[1] = yawn;
  for (float& lid : pose.lid) lid = std::max(lid, yawn);
  blink(pose, t, 0.95f);

  ClayScene scene = frog_scene(pose);
  add_yawn_tongue(scene, pose, out, ease(t, 0.68f, 0.80f));
  draw_scene(cell, pose, scene);
}

void draw_frog_win(const Cell& cell) {
  draw_pose(cell, frog_dance(static_cast<float>(cell.frame)));
}

// Sitting, seen from the front: it must be recognisable at half an inch.
FrogPose icon_pose() {
  FrogPose pose = frog_upright();
  pose.yaw_deg = 180;
  pose.pitch_deg = 38;
  pose.mouth = 0.45f;
  return pose;
}

void draw_frog_icon(const Cell& cell, const FrogPose& pose, double scale, Point ground) {
  Canvas canvas(cell.width, cell.height);
  ClayScene scene = frog_scene(pose);
  clay_draw(canvas, scene, {40, static_cast<float>(scale), ground}, kOutline,
            cell.width == 64 ? 1.2f : 2.0f);
  paint_canvas(cell.ctx, canvas, 0, 0);
}

// It follows a slash, which the price of a swipe has inside this cell, at x 36 to 50 and y 50 to
// 72. So the frog sits at the right and waves above that.
void draw_frog_waving(const Cell& cell) {
  FrogPose pose = icon_pose();
  pose.roll_deg = -4;
  pose.head_roll_deg = 5;
  both(pose.leg, {{0.84f, 0.24f, -0.30f}, {0.35f, -0.10f, 0.9f}, {0.75f, 0.65f, 0.55f}});
  pose.arm[1] = {{2.05f, 2.75f, 0.30f}, {0.30f, 0.95f, 0.1f}, {0.9f, -0.1f, 0.1f}};
  pose.spread[1] = 1;
  draw_frog_icon(cell, pose, 19.2, {87.5, 82});
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_GFROG_WIN, 256, 256, Play::kOnce, draw_frog_win),
    sheet(SHEET_GFROG_IDLE2, 256, 256, Play::kOnce, draw_frog_look_round),
    sheet(SHEET_GFROG_IDLE3, 256, 256, Play::kOnce, draw_frog_yawn),
    sheet(SHEET_GFROG_IDLE1, 256, 256, Play::kLoop, draw_frog_breathe),
    sheet(SHEET_GFROG, 256, 256, Play::kOnce, draw_frog_hop),
    // 52 pixels from one to the next; the middle one stands under a line of words.
    still(PANEL_FROGICON, 64, 64,
          [](const Cell& c) { draw_frog_icon(c, icon_pose(), 11.2, {32, 42}); }),
    still(PANEL_FROGICONMED, 128, 128,
          [](const Cell& c) { draw_frog_icon(c, icon_pose(), 19.5, {64, 88}); }),
    still(PANEL_FROGICONLRG, 128, 128, draw_frog_waving),
};

}  // namespace

const Family kFrogFamily{"art/frog.cpp", kRows};

}  // namespace art
