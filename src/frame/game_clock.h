// The only time base of the game, the drawing and the workers.
#pragma once

#include <cstdint>

#include "platform/random.h"  // random_unit
#include "platform/shared.h"  // Shared

struct GameClock {
  Shared<std::int64_t> now_ms;  // clock_ms() at the start of the tick; written once per tick
  std::int64_t last_render_ms;  // main loop only
};

inline constinit GameClock game_clock{};

// Milliseconds of the game clock. Any thread.
inline std::int64_t now_ms() {
  return game_clock.now_ms;
}

// Seconds from `then_ms` to the present tick as the rules compare them: a 32-bit float.
inline float seconds_since(std::int64_t then_ms) {
  return static_cast<float>(static_cast<double>(now_ms() - then_ms) / 1000.0);
}

// Is the game clock past this time? A timer that is due may fire.
inline bool is_due(std::int64_t timer_ms) {
  return now_ms() > timer_ms;
}

// A time from `base_ms` to `base_ms + span_ms` ahead, by chance.
inline std::int64_t from_now_ms(double base_ms, double span_ms) {
  return static_cast<std::int64_t>(static_cast<double>(now_ms()) + base_ms +
                                   span_ms * random_unit());
}
