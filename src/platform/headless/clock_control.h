// The controls of the clock for tests and the lab. It stands still until they move it.
#pragma once

#include <cstdint>

// Sets `clock_ms`. The system tick and the calendar move by the same step. Any thread.
void headless_clock_set(std::int64_t ms);
void headless_clock_advance(std::int64_t ms);

// Sets the present calendar (seconds since 1970) and system tick; both then advance with the clock.
void headless_calendar_set(std::int64_t seconds);
void headless_system_tick_set(std::uint32_t tick_ms);

// Back to clock 0, tick 0 and a calendar of 1,000,000,000.
void headless_clock_reset();
