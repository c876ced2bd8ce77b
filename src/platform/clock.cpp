#include "platform/clock.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace {

using Steady = std::chrono::steady_clock;

std::int64_t whole_ms(Steady::duration span) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(span).count();
}

// Set while the program is loaded, so that the first call doesn't become the origin.
const Steady::time_point process_start = Steady::now();

}  // namespace

std::int64_t clock_ms() {
  return whole_ms(Steady::now() - process_start);
}

std::uint32_t clock_system_tick_ms() {
  return static_cast<std::uint32_t>(whole_ms(Steady::now().time_since_epoch()));
}

std::int64_t clock_calendar_s() {
  return std::time(nullptr);
}

std::int64_t clock_calendar_ms() {
  using std::chrono::system_clock;
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             system_clock::now().time_since_epoch())
      .count();
}

void clock_sleep_ms(int ms) {
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}
