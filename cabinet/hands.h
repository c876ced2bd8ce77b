// The hands of players and attendants: they press switches, once or in bursts at a given rate.
// Bursts on one switch follow each other; those on different switches run in parallel.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
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
  std::deque<int> turns;  // switches still to be pressed one after the other
  double turn_rate = 1;   // presses a second
  double turn_ms = 0;     // when the next one is due
  // Asked from then on until it may be pressed, and once more after the last; then empty.
  std::function<bool(std::int64_t now_ms)> turn_ready;
};

// Presses a switch `count` times at `rate` presses a second.
void hands_press(Hands& hands, int input, long count, double rate);

// Presses these switches once each, one after the other, at most `rate` presses a second, and each
// only once `ready` says so: the game takes all presses of a tick as one. The hands are idle when
// it says so after the last. Late hands don't catch up.
void hands_press_in_turn(Hands& hands, const std::vector<int>& inputs, double rate,
                         std::function<bool(std::int64_t now_ms)> ready);

// Presses it once for `closed_ms`.
void hands_hold(Hands& hands, int input, double closed_ms);

// True if nothing is pressed and nothing is still to be.
bool hands_idle(const Hands& hands);

// Moves the switches that are due.
void hands_advance(Hands& hands, Board& board, std::int64_t now_ms);

// Cancels all presses that are still to come and releases what is held.
void hands_drop(Hands& hands, Board& board, std::int64_t now_ms);
