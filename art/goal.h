// The goal of a side on the far bank: flags, pennants and lamps in front of a turning sun.
#pragma once

#include "art/canvas.h"

namespace art {

// One frame of its loop; the cell is 512 x 256, its top 44 rows are above the screen.
void draw_goal(const Cell& cell);

}  // namespace art
