// The jackpot show of a side.
#pragma once

#include <cstdint>

// One step of both shows. Worker thread, or a caller without threads.
void win_show_step();
// Draws the shows that run. Main thread.
void win_show_draw();
void win_show_reset();
