// The machine's clocks. All calls are safe from any thread.
#pragma once

#include <cstdint>

// Whole milliseconds since the process began. Steady: it never goes back and does not follow
// changes of the calendar.
std::int64_t clock_ms();

// The machine's millisecond counter, which starts anywhere and wraps at 2^32: for deadlines of the
// I/O link. Compare two of them by the sign of their difference.
std::uint32_t clock_system_tick_ms();

// Calendar time in seconds since 1970.
std::int64_t clock_calendar_s();

// The same in milliseconds.
std::int64_t clock_calendar_ms();

// Sleeps for at least `ms` milliseconds.
void clock_sleep_ms(int ms);
