// Who plays. A player sees what a screen shows and has two fingers: one for Start, one for coins.
// Its chance is its own and never moves the game's.
#pragma once

#include <cstdint>

#include "frame/sides.h"

enum PlayerKind : std::int32_t {
  PLAYER_RANDOM = 0,   // presses at a random moment once its frog is ready
  PLAYER_EAGER = 1,    // presses as soon as its frog is ready
  PLAYER_WATCHER = 2,  // waits for a good first log, with a hand's delay and error
  PLAYER_EXPERT = 3,   // looks ahead over all lanes at their present speeds
  PLAYER_KINDS = 4,
};

extern const char* const player_names[PLAYER_KINDS];

struct PlayerSettings {
  PlayerKind kind = PLAYER_RANDOM;
  float wait_s = 1.0F;         // random: mean wait, from nothing to twice that
  float reaction_ms = 250.0F;  // watcher: from seeing to the press, on the average
  float error_ms = 60.0F;      // and its standard deviation
  float patience_s = 10.0F;    // watcher, expert: longest wait for a good moment
};

// Both players sit down at a cabinet that has just booted.
void players_reset(const PlayerSettings& settings, std::uint64_t seed);

// Before each tick: coins where they are due and a press of Start where the player wants it.
// `may_launch` is cleared for a side that has had all its frogs.
void players_step(const bool (&may_launch)[SIDE_COUNT]);
