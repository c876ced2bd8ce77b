// What the thirteen lanes are made of: their fixed table, the objects of the river, and the slots
// that show what lies in the cells.
#pragma once

#include <cstdint>

#include "gfx/panel_table.h"  // SheetIndex

struct LaneRow {
  std::int32_t lane;
  std::int32_t y, height;  // pixels
  float speed;             // at start; positive runs to the left
  std::int32_t cell_size, sprite_w;
  SheetIndex sheet;  // of the lane's plain objects; unused on a bank
  float cycle_s;
};

extern const LaneRow lane_rows[];

// Makes the strips of all lanes with a random scroll each, and puts the fixed objects into their
// cells. The lanes that the paytable fills, 1 and the meadow, stay empty. Start-up.
void lanes_create();
void lanes_free();

// Puts the logs of lane 1 into its cells: six, or three with `boost`.
void lane1_cells_fill(bool boost);

// Rewrites the 40 slots of a lane from its cells, each animation at a random place of its cycle.
void lane_slots_fill(int lane);
