// Scrolling lanes: rings of cells that wrap round.
#pragma once

#include <cstdint>

#include "gfx/panel.h"
#include "platform/shared.h"  // Shared

enum SlotKind : std::int32_t { SLOT_ANIMATED = 2, SLOT_EMPTY = 16 };

struct LaneSlot {                    // one object of a lane
  Shared<SpriteSheet*> sheet;        // null on an empty cell
  Shared<std::int32_t> frame;        // cell of the sheet
  Shared<std::int32_t> x, y;         // written by gfx_strip_draw while in view, stale otherwise
  Shared<std::int32_t> kind;         // SlotKind
  Shared<float> cycle_s;             // seconds for one run through the sheet
  Shared<std::int64_t> cycle_start;  // game clock, ms
  Shared<std::int32_t> active;       // 1 drawn, 0 not
};

struct Lane {
  std::int32_t direction;  // 1: across the screen
  std::int32_t cell_size;  // pixels
  std::int32_t sprite_w;   // width of a bug, for its return; 1 elsewhere
  Shared<float> speed;     // pixels per tick; positive moves the objects to the left
  Shared<float> scroll;    // pixels, 0 to slot_count times cell_size
  Panel* panels;           // one per cell, owned
  std::int32_t slot_count;
  LaneSlot* slots;  // owned
  float x;          // left end on screen
  std::int32_t y;   // top
  std::int32_t length, height;
  Shared<std::uint64_t> eaten;  // bit n: the bug of cell n is
};

// Allocates the panels and slots of a lane, every slot empty; zeroes the scroll and sets cell_size
// and sprite_w to 1.
void gfx_strip_create(Lane* lane, int direction, int slot_count);
void gfx_strip_free(Lane* lane);

// Gives slots the place that drawing would give them, bit n of `slots` for slot n. Those out of
// view keep theirs. For lanes of up to 64 slots, where nothing is drawn.
void gfx_slots_place(Lane* lane, std::uint64_t slots);

// Places and draws the lane's slots in view. Returns the first slot's number, not wrapped. Main
// thread.
int gfx_strip_draw(Lane* lane);
