#include "frame/tick_steps.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "books/audits.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "frame/game_clock.h"  // now_ms
#include "frame/sides.h"
#include "frame/tick_timers.h"  // coin prompts, bonk gate
#include "io/jamma.h"
#include "platform/random.h"  // random_unit
#include "playfield/cues.h"   // cue_play
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"  // stations, station_idle
#include "presentation/win_show_start.h"

namespace {

constexpr JammaPress COIN_PRESS[SIDE_COUNT] = {PRESS_C1, PRESS_C2};
constexpr JammaPress START_PRESS[SIDE_COUNT] = {PRESS_P1S, PRESS_P2S};
constexpr std::int64_t PROMPT_S = 5;

// No file of settings is checked when it is read. Held to these, a damaged one can't swallow a
// coin, give frogs away without end, or keep the tick.
constexpr std::int32_t COINS_EACH_MOST = 100;
constexpr std::int32_t FROGS_EACH_MOST = 100;
constexpr std::int64_t CREDITS_MOST = std::numeric_limits<std::int32_t>::max();

void coin_drop(int side) {
  audit_add(AUDIT_CURRENT_COINS, side, 1);
  audit_add(AUDIT_COIN_DROPS, side, 1);
  jamma_command(JAMMA_PULSE_COIN_METER, side, 1);
}

// A cost below 1 comes only from a stored file; nothing can be bought for it, so the coins stay.
void buy_credits(int side) {
  const std::int32_t cost = pref_int(PREF_COINS_TO_PLAY);
  if (cost < 1) return;
  const std::int32_t games = audit_count(AUDIT_CURRENT_COINS, side) / cost;
  if (games < 1) return;
  const std::int64_t frogs =
      std::int64_t{games} * std::clamp(pref_int(PREF_FROGS_PER_GAME), 1, FROGS_EACH_MOST);
  audit_add(AUDIT_CURRENT_COINS, side, -games * cost);
  audit_add(AUDIT_CURRENT_CREDITS, side, static_cast<std::int32_t>(std::min(frogs, CREDITS_MOST)));
}

void clear_demo(int side) {
  for (Frog& frog : stations[side].frogs) {
    if (is_demo(frog) && frog.state != FROG_FADING) {
      frog.state = FROG_FADING;
      frog.state_time = now_ms();
    }
  }
}

bool may_play(int side) {
  return audit_count(AUDIT_CURRENT_CREDITS, side) > 0 || pref_on(PREF_FREEPLAY);
}

void spend_and_launch(int side) {
  cue_play("ricochet");
  if (!pref_on(PREF_FREEPLAY)) audit_add(AUDIT_CURRENT_CREDITS, side, -1);
  tick_timers.credit_wait_ms[side] = 0;
  frog_launch(side, false);
  frog_enqueue(side);
}

// A press during the prompt keeps it alive on the one-second grid of its start.
void prompt_for_coin(int side) {
  const std::int64_t now = now_ms();
  if (now > tick_timers.coin_prompt_until[side]) {
    tick_timers.coin_prompt_start[side] = now;
    tick_timers.coin_prompt_until[side] = now + PROMPT_S * 1000;
  } else {
    const std::int64_t start = tick_timers.coin_prompt_start[side];
    tick_timers.coin_prompt_until[side] = start + ((now - start) / 1000 + PROMPT_S) * 1000;
  }
}

void bonk() {
  if (now_ms() <= tick_timers.next_bonk_ms) return;
  cue_play("bonk");
  tick_timers.next_bonk_ms = now_ms() + static_cast<std::int64_t>(250.0 + random_unit() * 250.0);
}

}  // namespace

void coins_take(int side) {
  const std::uint32_t presses = jamma_presses_pending(COIN_PRESS[side]);
  if (presses == 0) return;
  const bool swipes = pref_int(PREF_CURRENCY_UNIT) == CURRENCY_SWIPES;
  const std::int32_t coins_each =
      swipes ? std::clamp(pref_int(PREF_COINS_PER_SWIPE_PULSE), 1, COINS_EACH_MOST) : 1;
  for (std::uint32_t press = 0; press < presses; ++press) {
    for (std::int32_t coin = 0; coin < coins_each; ++coin) coin_drop(side);
  }
  buy_credits(side);
  journal_put(swipes ? JOURNAL_SWIPE : JOURNAL_COIN,
              {side, static_cast<std::int32_t>(presses) * coins_each,
               audit_count(AUDIT_CURRENT_COINS, side), audit_count(AUDIT_CURRENT_CREDITS, side)});
  tick_timers.coin_prompt_until[side] = now_ms();
  cue_play("coin");
  clear_demo(side);
  audits_save();
}

void start_take(int side) {
  if (jamma_presses_pending(START_PRESS[side]) == 0) return;
  if (may_play(side)) {
    if (frog_ready(side)) {
      spend_and_launch(side);
      return;
    }
  } else if (station_idle(side) && !win_show_active(side)) {
    prompt_for_coin(side);
  }
  bonk();
}

void service_credits_take() {
  const auto presses = static_cast<std::int32_t>(jamma_presses_pending(PRESS_SRV));
  if (presses == 0) return;
  audit_add(AUDIT_CURRENT_CREDITS, SIDE_LEFT, presses);
  audit_add(AUDIT_CURRENT_CREDITS, SIDE_RIGHT, presses);
  audit_add(AUDIT_SERVICE_CREDITS, presses);
  journal_put(JOURNAL_SERVICE, {presses, audit_count(AUDIT_CURRENT_CREDITS, SIDE_LEFT),
                                audit_count(AUDIT_CURRENT_CREDITS, SIDE_RIGHT)});
  audits_save();
}

void auto_launch() {
  const std::int64_t limit_ms = std::int64_t{pref_int(PREF_TIMEOUT_SECONDS)} * 1000;
  for (int side = 0; side < SIDE_COUNT; ++side) {
    // A wait may outlive its credit, which a reset of the books can take away.
    if (tick_timers.credit_wait_ms[side] > limit_ms && may_play(side) && frog_ready(side)) {
      spend_and_launch(side);
    }
  }
}
