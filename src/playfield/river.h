// What moves on the field without a player. Game thread, in play mode, once per tick in this order.
#pragma once

#include <cstdint>

#include "playfield/playfield.h"

void river_speed_step();
void lane_update(int lane);
void butterfly_update();

// Back to the speeds and times of process start; `change_at` is the end of the first period.
void river_reset(std::int64_t change_at);
