#include "art/bug_model.h"

#include <cmath>
#include <initializer_list>

#include "art/palette.h"

namespace art {

namespace {

constexpr float kTurn = static_cast<float>(kTau);
constexpr float kDeg = kTurn / 360;
constexpr float kPitch = 47;
constexpr float kStance = 0.58f;  // share of a step in which the foot is on the ground
constexpr int kFineness = 3;

}  // namespace

Step step_at(float turn) {
  float u = turn - std::floor(turn);
  if (u < kStance) return {1 - 2 * u / kStance, 0};
  float v = (u - kStance) / (1 - kStance);
  return {-std::cos(v * kTurn / 2), std::sin(v * kTurn / 2)};
}

Bug::Bug(float way, float yaw_deg, float turn) : turn_(turn) {
  float k = std::cos(yaw_deg * kDeg), s = std::sin(yaw_deg * kDeg);
  // The left is a mirror image of the right. The light is not mirrored, because it falls on the
  // model in the world.
  ground_.x = {k * way, 0, -s};
  ground_.z = {s * way, 0, k};
}

void Bug::sway(float bob, float roll_deg, float nod_deg) {
  // Each set of three legs carries the body once a step: two rises, one roll.
  float rise = -std::cos(2 * kTurn * turn_), lean = std::sin(kTurn * turn_);
  float n = nod_deg * kDeg * std::sin(2 * kTurn * turn_), r = roll_deg * kDeg * lean;
  body_.x = unit({1, n, 0});
  body_.z = unit({0, r, 1});
  body_.y = cross(body_.z, body_.x);
  body_.at = {0, bob * rise, 0};
}

ClayPart& Bug::body_part(float blend, float gloss) {
  ClayPart& g = ground_part(blend, gloss);
  g.frame = frame_within(ground_, body_);
  return g;
}

ClayPart& Bug::ground_part(float blend, float gloss) {
  ClayPart& g = scene_.emplace_back();
  g.blend = blend;
  g.gloss = gloss;
  g.frame = ground_;
  return g;
}

void Bug::legs(const BugLegs& l) {
  for (int pair = 0; pair < l.pairs; pair++) {
    for (float side : {-1.0f, 1.0f}) {
      bool first = (pair % 2 == 0) == (side > 0);
      float row = static_cast<float>(1 - pair), x = l.front_x + l.gap * (row - 1);
      // A little later from front to rear, like a ripple.
      Step step = step_at(turn_ + (first ? 0 : 0.5f) + 0.05f * row);
      Vec hip = from_body({x, l.hip_y, side * l.hip_z});
      Vec foot{x + l.splay * row + l.stride * step.x, l.thick + 0.34f * step.lift,
               side * (l.hip_z + l.reach)};
      Vec knee = lerp(hip, foot, 0.52f) + Vec{0, 0.26f + 0.14f * step.lift, side * 0.06f};
      ClayPart& leg = ground_part(0.06f, 0.4f);
      leg.limb(hip, l.thick * 1.15f, knee, l.thick, l.colour);
      leg.limb(knee, l.thick, foot, l.thick * 0.9f, l.colour);
      leg.ball(foot + Vec{0.10f, 0, 0}, {l.thick * 1.5f, l.thick * 1.1f, l.thick * 1.25f}, l.foot);
    }
  }
}

void Bug::feelers(const BugFeelers& f) {
  constexpr int kJoints = 4;
  for (float side : {-1.0f, 1.0f}) {
    ClayPart& part = body_part(0.03f, 0.4f);
    // Both lean away from the viewer; otherwise the near one would cross the face.
    Vec at{f.from.x, f.from.y, f.from.z * side + 0.10f};
    for (int i = 0; i < kJoints; i++) {
      // Its outer parts swing later and wider.
      float lag = 0.11f * static_cast<float>(i);
      float sway = f.sway_deg * (0.5f + 0.4f * static_cast<float>(i)) *
                   std::sin(kTurn * (turn_ - lag + (side > 0 ? 0.12f : 0)));
      float a = (f.rise_deg - f.curl_deg * static_cast<float>(i) + sway) * kDeg;
      Vec next = at + Vec{std::cos(a), std::sin(a), 0.30f + side * f.spread} * (f.length / kJoints);
      part.limb(at, f.thick, next, f.thick * 0.92f, f.colour);
      at = next;
    }
    part.ball(at, {f.tip, f.tip, f.tip}, f.tip_colour);
  }
}

void Bug::eyes(Vec far_one, float radius, Vec look) {
  for (float side : {1.0f, -1.0f})
    scene_.push_back(clay_big_eye(frame_within(ground_, body_),
                                  {far_one.x, far_one.y, far_one.z * side}, radius, look));
}

void Bug::draw(const Cell& cell, float px_per_unit, Point at, double shadow_rx, double shadow_ry) {
  soft_spot(cell.ctx, at.x + 2, at.y + 3, shadow_rx, shadow_ry, {0.01, 0.06, 0.01}, 0.62);
  Canvas canvas(cell.width, cell.height);
  clay_draw_fine(canvas, scene_, {kPitch, px_per_unit, at}, {0.07, 0.03, 0.06}, 1.5f, kFineness);
  paint_canvas(cell.ctx, canvas, 0, 0);
}

}  // namespace art
