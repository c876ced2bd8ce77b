// The hands of players and attendants: they press switches, once or in bursts at a given rate.
// Bursts on one switch follow each other; those on different switches run in parallel.
#pragma once

#include <cstdint>
#include <vector>

#include "cabinet/board.h"

struct Burst {
  int input;
  long presses;  // not yet started or finished
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

// Presses these switches once each, one after the other, at `rate` presses a second.
void hands_press_in_turn(Hands& hands, const std::vector<int>& inputs, double rate,
                         std::int64_t now_ms);

// Presses it once for `closed_ms`.
void hands_hold(Hands& hands, int input, double closed_ms);

// Moves the switches that are due.
void hands_advance(Hands& hands, Board& board, std::int64_t now_ms);

// Cancels all presses that are still to come and releases what is held.
void hands_drop(Hands& hands, Board& board, std::int64_t now_ms);
