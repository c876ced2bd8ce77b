// Small workers that step animation frames against the game clock: scenery, riders, effects. Each
// is a step on its own records; one thread carries them all.
#pragma once

#include <cstdint>

// Starts the next record of a ring. Game thread.
void fx_splash_start(int x, int y, int lane);
void fx_spark_start(int x, int y);
void fx_heart_start(int rider);  // rises from a gold rider

// One pass over all of them at the present game clock. Worker thread, or a caller without threads.
void workers_step();
void workers_reset();

// The part of these that splashes, sparks and hearts are.
void effects_step();
void effects_reset();
