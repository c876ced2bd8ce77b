// What a player has to go by: the lanes as they stand on the screen now, and for one who looks long
// enough, the memory of what has come round. Nothing here tells what no screen has shown.
#pragma once

#include <cstdint>

#include "playfield/playfield.h"

constexpr int FROG_MIDDLE_PX = 128;  // of a frog's cell, from its left edge

// A new boot: nothing has been seen.
void screen_reset();
// Looks at the screen of the moment. To be called every few ticks; a cell that stays in view for
// less than that would be missed, and none does.
void screen_look();

// What lies at a place of a lane, in pixels from the left edge of the screen, if that is on the
// screen: true, and the cell.
bool screen_shows(int lane, float x_px, LaneCell& cell);

// Pixels per tick; positive moves to the left.
float screen_speed(int lane);
// The middle of the frog that waits to be launched.
float screen_frog_middle(int side);

// The ring of a lane by number of its cell, wrapped, as far as it has been seen; unseen cells count
// as empty. An eaten bug is gone from it.
LaneCell memory_cell(int lane, int number);
// Cells run on through the wrap: a place, in pixels from the start of some cell 0, and its cell.
struct RingCell {
  int number;  // wrapped
  float into;  // part of the cell that lies before the place, 0 to 1
};
RingCell memory_ring(int lane, float place_px);
// The ring's place of a point of the screen.
float memory_place(int lane, float x_px);
// True once every lane has come round.
bool memory_whole();
// What lies at a place of the river. Edges are those between what carries a frog and water.
struct Footing {
  LaneCell cell;
  float margin_px;  // to the nearest edge: positive on a log or turtle, negative in the water
  float edge_px;    // to the next edge to the right, or to the left
  float cell_px;    // to the end of the cell on that side
};
Footing memory_footing(int lane, float place_px, bool to_right);

// Bugs in the cells of the meadow from one place to another.
struct Passing {
  int bugs;
  float steady_px;  // how far both places may go on in that direction within their cells
};
Passing memory_bugs(int lane, float from_px, float to_px);
