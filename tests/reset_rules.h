// The rules and what they stand on, as at the start of the program.
#pragma once

#include <cstdint>
#include <memory>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "frame/ticket_status.h"
#include "platform/random.h"
#include "playfield/playfield.h"

// The game clock starts at `clock_ms`. Sheets have to be set up before: see plain_sheets.h.
inline void reset_rules(std::int64_t clock_ms = 0, std::uint64_t seed = 1) {
  game_clock.now_ms = clock_ms;
  game_mode = MODE_PLAY;
  sound_enabled = 1;
  std::construct_at(&tick_timers);
  std::construct_at(&ticket_status);
  random_seed(seed);
  prefs_reset();
  audits_reset();
  audits_tick_reset();
  playfield_reset();
}
