// The goal of a side on the far bank: flags, pennants and lamps before a sun that turns.
#pragma once

#include "art/canvas.h"

namespace art {

// One frame of its loop; the cell is 512 x 256, its top 44 lines lie above the screen.
void draw_goal(const Cell& cell);

}  // namespace art
