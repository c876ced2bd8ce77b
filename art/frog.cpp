// The player's frog in all its sheets, and the small figures on the gold objects.
#include <cmath>

#include "art/catalogue.h"
#include "art/frog_model.h"
#include "art/palette.h"

namespace art {

namespace {

constexpr float kPi = static_cast<float>(kTau / 2);
// The ground under the frog's middle; its heels end at the cell's foot, y 248.
constexpr ClayCamera kCamera{50, 30, {128, 197}};
constexpr Colour kOutline{0.03, 0.18, 0.05};

// Up and down once while t runs from 0 to 1, at rest at both ends.
float bump(float t) {
  return t <= 0 || t >= 1 ? 0 : 0.5f - 0.5f * std::cos(2 * kPi * t);
}
// The part of a run between a and b as 0 to 1.
float part(double run, double a, double b) {
  return static_cast<float>(clamp01((run - a) / (b - a)));
}

void draw_pose(const Cell& cell, const FrogPose& pose) {
  Canvas canvas(cell.width, cell.height);
  float high = 1 / (1 + 0.6f * pose.lift);
  soft_spot(cell.ctx, 128, 207 - 18 * pose.ahead, 82 * high, 33 * high, kBlack, 0.42 * high);
  ClayScene scene = frog_scene(pose, kPlayerFrog);
  clay_draw(canvas, scene, kCamera, kOutline, 2.0f);
  paint_canvas(cell.ctx, canvas, 0, 0);
}

void draw_frog_hop(const Cell& cell) {
  float t = static_cast<float>(cell.turn());
  FrogPose pose;
  // The first frame is the frog at rest: it is also the picture of a sitting frog.
  pose.crouch = bump(t / 0.24f) + 0.8f * bump((t - 0.78f) / 0.30f);
  pose.air = t < 0.13f || t > 0.87f ? 0 : std::sin(kPi * (t - 0.13f) / 0.74f);
  pose.air = std::min(1.0f, pose.air * 1.15f);
  // The feet push off from where they stood; then all of it flies.
  pose.ahead = 1.35f * pose.air;
  pose.lift = 1.15f * pose.air * pose.air;
  draw_pose(cell, pose);
}

void draw_frog_breathe(const Cell& cell) {
  FrogPose pose;
  // The second half repeats the first one backwards, so everything here is even in time.
  float t = static_cast<float>(cell.run());
  pose.breathe = 0.5f - 0.5f * std::cos(4 * kPi * t);
  pose.blink = bump(0.5f + (t - 0.5f) / 0.14f);
  draw_pose(cell, pose);
}

void draw_frog_look_round(const Cell& cell) {
  FrogPose pose;
  double t = cell.run();
  float left = part(t, 0.06, 0.16) - part(t, 0.36, 0.46),
        right = part(t, 0.46, 0.56) - part(t, 0.80, 0.92);
  left = left * left * (3 - 2 * left);
  right = right * right * (3 - 2 * right);
  float aside = right - left;
  pose.head_deg = 55 * aside;
  pose.roll_deg = 7 * aside;
  pose.yaw_deg = 14 * aside;
  pose.rear_deg = 6 * std::fabs(aside);
  pose.breathe = 0.5f - 0.5f * std::cos(4 * kPi * static_cast<float>(t));
  pose.blink = bump(part(t, 0.40, 0.50)) + bump(part(t, 0.92, 1.0));
  draw_pose(cell, pose);
}

void draw_frog_yawn(const Cell& cell) {
  FrogPose pose;
  double t = cell.run();
  // It scratches its head, then stretches.
  float scratch = part(t, 0.05, 0.16) - part(t, 0.46, 0.56);
  float stretch = part(t, 0.58, 0.72) - part(t, 0.86, 0.98);
  scratch = scratch * scratch * (3 - 2 * scratch);
  stretch = stretch * stretch * (3 - 2 * stretch);
  float wiggle = std::sin(2 * kPi * 5 * part(t, 0.16, 0.46));
  pose.arm_up[1] = scratch * (0.86f + 0.14f * wiggle);
  pose.roll_deg = -6 * scratch + 1.5f * wiggle * scratch;
  pose.head_deg = 30 * scratch;
  pose.rear_deg = 16 * stretch;
  pose.arm_up[0] = stretch;
  pose.arm_up[1] += stretch;
  pose.blink = std::max(0.7f * scratch, stretch);
  pose.crouch = -0.25f * stretch;
  draw_pose(cell, pose);
}

void draw_frog_win(const Cell& cell) {
  FrogPose pose;
  double t = cell.run();
  float around = part(t, 0, 0.16);
  around = around * around * (3 - 2 * around);
  float joy = part(t, 0.14, 0.22) - part(t, 0.93, 1.0);
  pose.yaw_deg = 180 * around;
  pose.lift = 0.8f * bump(part(t, 0.0, 0.16));
  pose.look_up = 1 - around;
  pose.rear_deg = 42 * around;
  pose.stand = around;
  // Five jumps for joy, an arm higher on either side in turn.
  float beat = part(t, 0.20, 0.94) * 5;
  float in_beat = beat - std::floor(beat);
  float jump = std::sin(kPi * std::min(1.0f, in_beat / 0.62f));
  if (in_beat > 0.62f) jump = 0;
  pose.lift += 1.0f * joy * jump;
  pose.crouch = 0.7f * joy * (in_beat > 0.62f ? bump((in_beat - 0.62f) / 0.38f) : 0);
  pose.air = 0.30f * joy * jump;
  float swing = std::sin(kPi * beat);
  pose.arm_up[0] = joy * (0.82f + 0.18f * swing);
  pose.arm_up[1] = joy * (0.82f - 0.18f * swing);
  pose.roll_deg = 8 * joy * swing;
  pose.mouth = joy * (0.55f + 0.45f * jump);
  pose.blink = bump(part(t, 0.05, 0.12));
  draw_pose(cell, pose);
}

void draw_frog_icon(const Cell& cell, double scale, double ground_y) {
  // Seen from the front, sitting: it has to read at half an inch.
  Canvas canvas(cell.width, cell.height);
  FrogPose pose;
  pose.yaw_deg = 180;
  pose.rear_deg = 40;
  pose.stand = 1;
  pose.look_up = 0.1f;
  pose.mouth = 0.35f;
  ClayScene scene = frog_scene(pose, kPlayerFrog);
  clay_draw(canvas, scene, {40, static_cast<float>(scale), {cell.width / 2.0, ground_y}}, kOutline,
            cell.width == 64 ? 1.2f : 2.0f);
  paint_canvas(cell.ctx, canvas, 0, 0);
}

constexpr CatalogueRow kRows[] = {
    sheet("anim_gfrog_win.tga", 4096, 2048, 16, 8, 88, Play::kOnce, draw_frog_win),
    sheet("anim_gfrog_idle2.tga", 4096, 1024, 16, 4, 60, Play::kOnce, draw_frog_look_round),
    sheet("anim_gfrog_idle3.tga", 4096, 1024, 16, 4, 60, Play::kOnce, draw_frog_yawn),
    sheet("anim_gfrog_idle1.tga", 4096, 1024, 16, 4, 60, Play::kLoop, draw_frog_breathe,
          Twin::kThereBack),
    sheet("anim_gfrog.tga", 2048, 512, 8, 2, 15, Play::kOnce, draw_frog_hop),
    // 52 pixels from one to the next; the middle one stands under a line of words.
    still("frogicon.tga", 64, 64, [](const Cell& c) { draw_frog_icon(c, 11.2, 42); }),
    still("frogiconmed.tga", 128, 128, [](const Cell& c) { draw_frog_icon(c, 19.5, 88); }),
    still("frogiconlrg.tga", 128, 128, [](const Cell& c) { draw_frog_icon(c, 23, 79); }),
};

}  // namespace

const Family kFrogFamily{"art/frog.cpp", kRows};

}  // namespace art
