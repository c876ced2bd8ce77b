// The paper tickets that rain on a side while it celebrates a jackpot.
#pragma once

#include <cstdint>

// Puts all flakes of a side out of use. Worker thread, when the side's show is over.
void ticket_flakes_clear(int side);
// Lets a flake fall, if one is idle: seldom, by chance, for each pass of the worker.
void ticket_flakes_drop(int side);
// Moves the side's flakes by `dt_s` seconds. Worker thread.
void ticket_flakes_move(int side, float dt_s);
// Main thread.
void ticket_flakes_draw(int side);
