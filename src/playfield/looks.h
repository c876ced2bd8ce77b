// What is only seen of the field: frames, scales, alphas. No rule reads any of it. Game
// thread, called by the rules at the moment of the tick that each belongs to.
#pragma once

#include "playfield/frog_states.h"  // FrogTimes
#include "playfield/playfield.h"

// Scale, alpha, pulse and ring alpha, before anything happens to the frog.
void frog_looks_update(Frog& frog, const FrogTimes& times);
// The cell of a frog in a hop, and that of the rings round a frog.
void frog_hop_frame(Frog& frog, const FrogTimes& times);
void frog_ring_frame(Frog& frog, const FrogTimes& times);

// Sheet and cell of a frog in line and of one that has won. Unlike all else here these run when
// nobody looks: they draw from the one source of chance, and set the time of the state.
void frog_idle_frame(Frog& frog, const FrogTimes& times);
void frog_win_frame(Frog& frog, const FrogTimes& times);

constexpr float CAUGHT_SECONDS = 2.0F;  // that the butterfly shows what it brought
// `seconds` in its present state. Before it moves on.
void butterfly_looks_update(float seconds);

// Shows what isn't eaten, and steps the animation of the lane's objects.
void lane_looks_update(const Lane& lane);

// False where nothing is drawn: the rest of the above then does nothing. True at process start.
// Before the first tick.
void looks_set_watched(bool somebody);
