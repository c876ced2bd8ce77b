// The colours that all pictures share: one sun, one ink, one wood, one green frog.
#pragma once

#include "art/canvas.h"

namespace art {

constexpr Colour kWhite{1, 1, 1};
constexpr Colour kBlack{0, 0, 0};
constexpr Colour kInk{0.06, 0.07, 0.12};
constexpr Colour kSunlight{1, 1, 0.75};
constexpr Colour kShade{0.02, 0.12, 0.20};

constexpr Colour kFrogGreen{0.42, 0.84, 0.18};
constexpr Colour kLeafDark{0.13, 0.42, 0.10};
constexpr Colour kLeaf{0.28, 0.66, 0.16};
constexpr Colour kLeafLight{0.62, 0.88, 0.28};
constexpr Colour kForest{0.03, 0.20, 0.06};

constexpr Colour kWood{0.68, 0.44, 0.22};
constexpr Colour kWoodLight{0.86, 0.63, 0.36};
constexpr Colour kWoodDark{0.30, 0.16, 0.06};
constexpr Colour kBark{0.50, 0.30, 0.14};
constexpr Colour kGold{1.0, 0.78, 0.14};
constexpr Colour kGoldLight{1.0, 0.95, 0.50};
constexpr Colour kGoldDark{0.62, 0.36, 0.02};

constexpr Colour kSand{0.82, 0.68, 0.42};
constexpr Colour kWater{0.09, 0.42, 0.66};
constexpr Colour kFoam{0.86, 0.97, 1.0};
constexpr Colour kPink{0.98, 0.42, 0.66};
constexpr Colour kPinkDark{0.72, 0.12, 0.40};
constexpr Colour kRed{0.90, 0.16, 0.12};
constexpr Colour kCream{1.0, 0.96, 0.80};
constexpr Colour kYellow{1.0, 0.86, 0.16};

}  // namespace art
