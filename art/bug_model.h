// What all bugs share: a body that sways over its feet, six legs that step in threes, eyes, and
// feelers that lag behind. Own axes: x ahead, y up, z sideways, positive on the far side.
#pragma once

#include "art/clay.h"

namespace art {

// Where a foot is in its step: x from 1 (ahead) to -1 (behind), lift from 0 (on the ground) to 1.
struct Step {
  float x, lift;
};
Step step_at(float turn);

struct BugLegs {
  float front_x, gap;  // the front hips, and the distance between pairs
  float hip_y, hip_z;
  float reach;   // sideways, from hip to foot
  float splay;   // how far front and hind feet point away from the middle
  float stride;  // half a step's length
  float thick;
  Vec colour, foot;
  int pairs = 3;
};

struct BugFeelers {
  Vec from;  // the far one's foot; the near one mirrors it
  float length, thick, tip;
  float rise_deg, curl_deg;  // how steep it starts, and how much it bends down at each of 3 joints
  float spread;              // sideways for each unit of length
  float sway_deg;
  Vec colour, tip_colour;
};

class Bug {
 public:
  // way 1 walks to the right in the picture, -1 to the left; yaw turns its face to the viewer. turn
  // is the phase of the step: 0 to 1 for the first, and so on.
  Bug(float way, float yaw_deg, float turn);

  // Lifts, rolls and nods the body as the legs step. Call before adding anything to the body.
  void sway(float bob, float roll_deg, float nod_deg);
  ClayPart& body_part(float blend, float gloss);
  ClayPart& ground_part(float blend, float gloss);
  void legs(const BugLegs& legs);
  void feelers(const BugFeelers& feelers);
  void eyes(Vec far_one, float radius, Vec look);
  // A point of the body in the axes of the ground.
  Vec from_body(Vec p) const { return body_.out(p); }

  // Draws it into the cell, with the ground below the body's middle at the given point, and a
  // shadow.
  void draw(const Cell& cell, float px_per_unit, Point at, double shadow_rx, double shadow_ry);

 private:
  ClayScene scene_;
  ClayFrame ground_, body_;
  float turn_;
};

}  // namespace art
