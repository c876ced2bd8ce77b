// The grounds of the scene without plants: the borders between banks, river and meadow, and the
// colour of each place. Pixels of the whole screen, 1360 x 768.
#pragma once

#include "art/canvas.h"

namespace art {

constexpr double kScreenWidth = 1360, kScreenHeight = 768;

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
