// A counting sound, eight to the second.
#pragma once

#include <cstdint>

// Counts `count` on the sound of `lane` (0 to 5). A longer run takes over a shorter rest. Game
// thread.
void ticket_dings(int lane, int count);

// One step of the count; called at least every few milliseconds. Worker thread, or a test.
void ticket_dings_step(std::int64_t now_ms);
void ticket_dings_reset();
