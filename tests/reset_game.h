// The game, as at the start of the program: the rules, the shows, the lamps and the tick.
#pragma once

#include <cstdint>

#include "frame/tick_steps.h"
#include "io/jamma.h"
#include "io/lamps.h"
#include "presentation/attract.h"
#include "presentation/scene.h"
#include "presentation/voices.h"
#include "presentation/win_show.h"
#include "tests/reset_rules.h"

inline void reset_game(std::int64_t clock_ms = 0, std::uint64_t seed = 1) {
  jamma_link_error = 0;
  win_show_reset();
  reset_rules(clock_ms, seed);
  lockouts_reset();
  periodic_reboot_reset();
  lamps_reset();
  attract_reset();
  voices_reset();
  far_bank_reset();
}
