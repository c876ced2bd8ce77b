#include "platform/clock.h"

#include <atomic>
#include <cstdint>

#include "platform/headless/clock_control.h"

namespace {

constexpr std::int64_t FIRST_CALENDAR_MS = 1'000'000'000'000;

constinit std::atomic<std::int64_t> now_ms{0};
constinit std::atomic<std::int64_t> calendar_offset_ms{FIRST_CALENDAR_MS};
constinit std::atomic<std::uint32_t> tick_offset_ms{0};

}  // namespace

std::int64_t clock_ms() {
  return now_ms;
}

std::uint32_t clock_system_tick_ms() {
  return static_cast<std::uint32_t>(now_ms.load()) + tick_offset_ms;
}

std::int64_t clock_calendar_s() {
  return clock_calendar_ms() / 1000;
}

std::int64_t clock_calendar_ms() {
  return calendar_offset_ms + now_ms;
}

void clock_sleep_ms(int ms) {
  headless_clock_advance(ms);
}

void headless_clock_set(std::int64_t ms) {
  now_ms = ms;
}

void headless_clock_advance(std::int64_t ms) {
  now_ms += ms;
}

void headless_calendar_set(std::int64_t seconds) {
  calendar_offset_ms = seconds * 1000 - now_ms;
}

void headless_system_tick_set(std::uint32_t tick_ms) {
  tick_offset_ms = tick_ms - static_cast<std::uint32_t>(now_ms.load());
}

void headless_clock_reset() {
  now_ms = 0;
  calendar_offset_ms = FIRST_CALENDAR_MS;
  tick_offset_ms = 0;
}
