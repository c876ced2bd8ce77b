// The dance of a frog that got across.
#pragma once

#include "art/frog_pose.h"

namespace art {

constexpr int kDanceFrames = 88;

// From the rest pose to the last bow, which fades out while it is held.
FrogPose frog_dance(float frame);

}  // namespace art
