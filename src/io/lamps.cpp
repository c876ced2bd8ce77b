#include "io/lamps.h"

// The lamps stay dark, as bring-up leaves them, until they have effects.
void jamma_lamps_init() {}
void lamps_update() {}
void jamma_lamps_tick() {}
