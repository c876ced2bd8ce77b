// The tick: everything the cabinet does about 60 times a second, in one fixed order.
#pragma once

#include <cstdint>

// What stands before the first tick: demo times, a frog in each line, owed tickets given back.
// Game thread, or a caller without threads.
void game_begin();

// One tick at time `t_ms` of the clock. The game thread calls it with clock_ms(), a test with a
// number, the lab as fast as it can. Returns false once a reboot was ordered: there is no
// further tick unless `periodic_reboot_refused`.
bool game_tick(std::int64_t t_ms);

// True if `t_ms` is far enough past the last tick for the next one: at least 17 ms.
bool game_tick_due(std::int64_t t_ms);
