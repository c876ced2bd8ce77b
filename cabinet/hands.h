// The hands of players and attendants: switches that are to be pressed, once or in bursts at a
// rate. Bursts on the same switch follow each other; those on different ones run side by side.
#pragma once

#include <cstdint>
#include <vector>

#include "cabinet/board.h"

struct Burst {
  int input;
  long presses;  // still to begin or to end
  double period_ms;
  double closed_ms;  // how long each press lasts
  double next_ms;    // when the next edge is due
  bool begun = false;
  bool closed = false;
};

struct Hands {
  std::vector<Burst> bursts;
};

// Presses a switch `count` times at `rate` presses a second.
void hands_press(Hands& hands, int input, long count, double rate);

// Presses it once for `closed_ms`.
void hands_hold(Hands& hands, int input, double closed_ms);

// Moves the switches that are due.
void hands_advance(Hands& hands, Board& board, std::int64_t now_ms);

// Lets go of everything that was still to be pressed; what is held is released.
void hands_drop(Hands& hands, Board& board, std::int64_t now_ms);
