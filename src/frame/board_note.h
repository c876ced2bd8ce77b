// A note beside the books, of the board that tickets were handed to. A program that was ended in
// the middle of a payout leaves a board that pays on, so its next start must not order those
// tickets again. After a power cut, which took the board's count with it, it must. The note tells
// the two apart: it names the power-up of the machine and holds the board's own counters, which
// start from 0 with the board. Game thread.
#pragma once

#include <cstdint>

#include "frame/sides.h"

struct BoardNote {
  bool stayed_up = false;  // the board on the line is the one of the note, and has its count yet
  std::int32_t tickets_queued[SIDE_COUNT]{};  // it doesn't know of these yet
};

// What the note says of the board on the line. After the link has come up.
BoardNote board_note_read();

// Updates the note while the board owes tickets or some are not ordered yet. Each tick,
// before the books are stored.
void board_note_keep(bool owes, const std::int32_t (&tickets_queued)[SIDE_COUNT]);
