// The seven game lamps and their effects.
#pragma once

void jamma_lamps_init();  // start-up
void lamps_update();      // game thread, each tick: what the lamps show
void jamma_lamps_tick();  // game thread, behind lamps_update: one step of the effects
