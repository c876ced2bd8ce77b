// A frog's looks and its state machine, by the clock alone. Game thread.
#pragma once

#include "playfield/playfield.h"

struct FrogTimes {  // seconds, as the tick found them
  float state, ring, launch;
};

FrogTimes frog_times(const Frog& frog);

// Scale, alpha, pulse and ring alpha.
void frog_looks_update(Frog& frog, const FrogTimes& times);

// Moves the frog, steps its animation and changes its state when the time is up.
void frog_state_step(int side, Frog& frog, const FrogTimes& times);
