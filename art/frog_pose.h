// The frog's poses, and the motion between them.
#pragma once

#include <span>

#include "art/clay.h"

namespace art {

// A leg or an arm of the frog: the joint in the middle is calculated from these.
struct FrogLimb {
  Vec at;      // ankle or wrist
  Vec toward;  // where the toes point
  Vec bend;    // where the knee or the elbow points
};

// Only floats, so that two poses can be mixed number by number. Units are those of clay, or degrees
// if the name says so. Axes: x to its right, y up, z ahead; the left limbs come first.
struct FrogPose {
  Vec move{0, 0, 0};           // of the whole frog, in the world's axes; the rest is in its own
  float yaw_deg = 0;           // 0 seen from behind, 180 faces the viewer
  Vec hips{0, 0.85f, -0.85f};  // pivot of the body
  float pitch_deg = 0;         // the chest raised
  float roll_deg = 0;          // the body leaned to its right
  float sway = 0;              // the hips pushed to its right, under a still head
  float tall = 1;              // squash and stretch: across the back
  float slim = 1;              // and along it
  float head_yaw_deg = 0, head_pitch_deg = 0, head_roll_deg = 0;
  float gaze_x = 0;          // eyes to its right, at most 1
  float gaze_y = 0;          // up, at most 1
  float to_sky = 1;          // turns up the eyes of a frog that is seen from above and behind
  float lid[2] = {0, 0};     // 0 open, 1 closed
  float cheer = 0;           // the lower lids pushed up by a grin
  float glee[2] = {0, 0};    // 1: an eye closed in a laughing arc, the cheeks red
  float mouth = 0;           // 0 closed, 1 wide open
  float smile = 1;           // -1 to 1: corners of the mouth down or up
  float tongue_out = 0;      // 1: it has left the mouth and is drawn separately
  float pouch = 0;           // the throat blown up
  float bubbles = 0;         // and the bubbles at the sides of the head
  float cheeks = 0;          // a full mouth
  float breathe = 0;         // 0 to 1
  float gulp = 0;            // position of a mouthful: 0 in the mouth, 1 in the belly
  float spread[2] = {0, 0};  // the fingers of each hand; 1: as wide as possible
  FrogLimb leg[2], arm[2];
};

// At rest on all fours, ready to leap: the first picture of every sheet of the player's frog.
FrogPose frog_sitting();
// Upright, feet and hands ahead of it on the ground.
FrogPose frog_upright();

// The left limb's mirror image.
FrogLimb mirrored(const FrogLimb& limb);
void both(FrogLimb* pair, const FrogLimb& right);

FrogPose mix(const FrogPose& a, const FrogPose& b, float t);

struct FrogKey {
  float frame;
  FrogPose pose;
};
// The pose at a frame, between keys in rising order: smooth, through each key and without
// overshoot. Before the first key and after the last it is theirs.
FrogPose pose_between(std::span<const FrogKey> keys, float frame);

// Up and down once while t runs from 0 to 1, at rest at both ends.
float bump(float t);
// An oscillation that starts at t 0 and dies away: loose parts after a stop.
float ringing(float t, float turns, float decay);
// An S-curve from 0 to 1 between a and b.
float ease(float run, float a, float b);

}  // namespace art
