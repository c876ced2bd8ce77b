// How the books write a duration.
#pragma once

#include <cstdint>

constexpr int AUDIT_TIME_SIZE = 40;

// "h:mm:ss.hh", or "m:ss.hh" below an hour. Any thread.
void audit_format_time(std::int64_t ms, char (&buffer)[AUDIT_TIME_SIZE]);
