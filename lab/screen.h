// What a player knows: the lanes on the screen now, and, for one that remembers, all cells that
// have been on the screen before. It never knows a cell that no screen has shown.
#pragma once

#include <cstdint>

#include "playfield/playfield.h"

constexpr int FROG_MIDDLE_PX = 128;  // of a frog's cell, from its left edge

// A new boot: nothing has been seen.
void screen_reset();
// Looks at the present screen. Call it every few ticks, so that no cell passes unseen.
void screen_look();

// The cell at a place of a lane, in pixels from the left edge of the screen. False if that is off
// the screen.
bool screen_shows(int lane, float x_px, LaneCell& cell);

// Pixels per tick; positive moves to the left.
float screen_speed(int lane);
// The middle of the frog that waits to be launched.
float screen_frog_middle(int side);

// The ring of a lane by number of its cell, wrapped, as far as it has been seen; unseen cells count
// as empty. An eaten bug is gone from it.
LaneCell memory_cell(int lane, int number);
// A place on the endless ring, in pixels from the start of some cell 0, and its cell.
struct RingCell {
  int number;  // wrapped
  float into;  // part of the cell before the place, 0 to 1
};
RingCell memory_ring(int lane, float place_px);
// The ring's place of a point of the screen.
float memory_place(int lane, float x_px);
// True once all of every lane has been seen.
bool memory_whole();
// A place of the river. Edges are those between water and anything that carries a frog.
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
