// The timers that the tick keeps, in milliseconds of the game clock. Written by the game thread,
// read by the drawing.
#pragma once

#include <cstdint>

#include "frame/sides.h"
#include "platform/shared.h"  // Shared

struct TickTimers {
  // Accumulating: grow by the tick's step while what each names holds, else 0.
  Shared<std::int64_t> idle_both_ms;                // both stations idle
  Shared<std::int64_t> idle_ms[SIDE_COUNT];         // that station idle
  Shared<std::int64_t> no_money_ms;                 // no coin and no credit on either side
  Shared<std::int64_t> credit_wait_ms[SIDE_COUNT];  // a credit waits to be played
  Shared<std::int64_t> since_award_ms[SIDE_COUNT];  // since the side's last payout

  // Points in time.
  Shared<std::int64_t> coin_prompt_start[SIDE_COUNT];
  Shared<std::int64_t> coin_prompt_until[SIDE_COUNT];
  Shared<std::int64_t> next_bonk_ms;  // one for both sides
  Shared<std::int64_t> attract_demo_next[SIDE_COUNT];
  Shared<std::int64_t> volume_overlay_until;
  Shared<std::int64_t> next_music_check_ms;
  Shared<std::int64_t> next_vox_ms;  // one gate for all spoken lines

  Shared<std::int32_t> award_done[SIDE_COUNT];  // set by a payout, cleared by a launch
  std::int32_t test_hold_ticks;                 // ticks that Test has been held
};

inline constinit TickTimers tick_timers{};
