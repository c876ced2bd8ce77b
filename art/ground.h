// The scene's grounds without what grows on them: where the banks, the river and the meadow meet,
// and what colour each place has. Pixels of the whole screen.
#pragma once

#include "art/canvas.h"
#include "gfx/picture_list.h"  // LAYOUT_WIDTH, LAYOUT_HEIGHT

namespace art {

constexpr double kScreenWidth = LAYOUT_WIDTH, kScreenHeight = LAYOUT_HEIGHT;

// The y of a frog's feet in the meadow's lanes, and their distance.
constexpr double kLaneFoot = 432, kLaneStep = 56;
constexpr int kLanes = 5;

// The ragged borders between the grounds, at x.
double far_shore(double x);
double near_shore(double x);
double meadow_edge(double x);
double bank_edge(double x);

// The meadow's green at a place, before blades of grass add texture. It is mown lane by lane.
Colour meadow_green(double x, double y);
// The colour of the bare ground or the water.
Colour ground(double x, double y);

}  // namespace art
