// The lab's I/O board, which implements io/jamma.h. Players step its counters as fingers and coins
// do. Its dispensers never run out and pay each ticket at once.
#pragma once

#include <cstdint>

#include "frame/sides.h"
#include "io/jamma.h"

// The orders since `board_reset`.
struct BoardBooks {
  std::int64_t tickets[SIDE_COUNT];
  std::int64_t ticket_pulses[SIDE_COUNT];
  std::int64_t coin_pulses[SIDE_COUNT];
};
extern BoardBooks board_books;

// Called in each tick after its inputs, null for nothing: tests press and count there.
extern void (*board_after_inputs)();

// A board just plugged in: counters and books at 0, no press pending.
void board_reset();

// One press of a button, or one coin: its counter steps twice, and the press counts from then on.
void board_press(JammaPress press);
