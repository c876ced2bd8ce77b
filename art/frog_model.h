// The frog in clay: one body for the player's frog and the big one of the attract sequence.
#pragma once

#include <span>

#include "art/frog_pose.h"

namespace art {

ClayScene frog_scene(const FrogPose& pose);

// The position of a point of the head in the world: (0, 0, 0) is its middle, (0, 0, 1) the tip of
// its snout.
Vec frog_head_point(const FrogPose& pose, Vec p);

// A tongue along points of the world, thick at its root, with a sticky lump at its end.
ClayPart frog_tongue(std::span<const Vec> path, float thick, float lump);

}  // namespace art
