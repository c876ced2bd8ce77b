// A frog's state machine, by the clock alone. Game thread.
#pragma once

#include <cstdint>

#include "playfield/playfield.h"

constexpr float HOP_SECONDS = 0.35F;  // of a hop, and of a rest
constexpr float WIN_SECONDS = 4.0F;
constexpr float FADE_SECONDS = 0.6F;

struct FrogTimes {  // since each began, as the frog's tick found them
  float state;      // seconds
  std::int64_t ring_ms, launch_ms;
};

FrogTimes frog_times(const Frog& frog);

// How long a sinking frog shows what it won.
float sinking_seconds(const Frog& frog);

// Moves the frog, steps its animation and changes its state when the time is up.
void frog_state_step(int side, Frog& frog, const FrogTimes& times);
