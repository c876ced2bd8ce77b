#include "books/audit_time.h"

#include <cstdio>

void audit_format_time(std::int64_t ms, char (&buffer)[AUDIT_TIME_SIZE]) {
  constexpr std::int64_t HOUR_MS = 3600000;
  constexpr std::int64_t MINUTE_MS = 60000;
  const auto hours = static_cast<int>(ms / HOUR_MS);
  const auto minutes = static_cast<int>(ms % HOUR_MS / MINUTE_MS);
  const double seconds = static_cast<double>(ms % MINUTE_MS) / 1000.0;
  if (hours > 0) {
    std::snprintf(buffer, sizeof buffer, "%d:%02d:%04.2f", hours, minutes, seconds);
  } else {
    std::snprintf(buffer, sizeof buffer, "%d:%05.2f", minutes, seconds);
  }
}
