// The frog, posed: the same body for the player's frog, the riders and the attract picture.
#pragma once

#include "art/clay.h"

namespace art {

struct FrogPose {
  float crouch = 0;          // 0 sits, 1 pressed to the ground
  float air = 0;             // 0 legs folded, 1 stretched in the leap
  float lift = 0;            // height of the whole frog, units
  float yaw_deg = 0;         // 0 seen from behind, 180 faces the viewer
  float rear_deg = 0;        // the chest raised
  float stand = 0;           // 1 sits upright on its heels, feet ahead, hands on its knees
  float ahead = 0;           // moved ahead along the ground, units
  float roll_deg = 0;        // leaning to its right
  float blink = 0;           // 0 open, 1 closed
  float mouth = 0;           // 0 a smile, 1 wide open
  float breathe = 0;         // 0 to 1
  float head_deg = 0;        // the eyes turned aside
  float look_up = 1;         // 1 eyes to the sky, 0 straight ahead
  float arm_up[2] = {0, 0};  // left, right: 0 on the ground, 1 thrown up
  float arm_in[2] = {0, 0};  // 1: the hand at the mouth
};

struct FrogLook {
  Colour skin, belly, spots;
  bool crown;
};
extern const FrogLook kPlayerFrog;
extern const FrogLook kRiderFrog;

ClayScene frog_scene(const FrogPose& pose, const FrogLook& look);

}  // namespace art
