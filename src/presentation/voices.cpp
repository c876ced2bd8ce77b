#include "presentation/voices.h"

#include <cstdint>

#include "books/prefs.h"
#include "frame/game_clock.h"   // is_due, from_now_ms
#include "frame/tick_timers.h"  // next_vox_ms, credit_wait_ms, idle_ms, ...
#include "platform/random.h"    // random_unit
#include "playfield/cues.h"
#include "playfield/playfield.h"  // station_idle
#include "presentation/volume.h"  // attract_flag

namespace {

constexpr std::int64_t PATIENCE_MS = 5000;
constexpr std::int64_t HINT_AFTER_MS = 3000;
constexpr std::int64_t THANKS_UNTIL_MS = 8999;
constexpr double THANKS_CHANCE = 0.75;

// Both sides share the pace of a line.
struct Voices {
  std::int64_t chatter_ms, press_button_ms, insert_coins_ms, eat_bugs_ms, play_again_ms;
};
constinit Voices next{};

bool may_speak(std::int64_t own_ms) {
  return is_due(tick_timers.next_vox_ms) && is_due(own_ms);
}

void chatter() {
  if (attract_flag == 0) {
    next.chatter_ms = from_now_ms(5000.0, 10000.0);
    return;
  }
  if (!may_speak(next.chatter_ms)) return;
  cue_play("voxchatter");
  next.chatter_ms = from_now_ms(15000.0, 30000.0);
  tick_timers.next_vox_ms = from_now_ms(2500.0, 2500.0);
}

void press_button(int side) {
  if (tick_timers.credit_wait_ms[side] <= PATIENCE_MS) return;
  if (tick_timers.idle_ms[side] <= PATIENCE_MS || !may_speak(next.press_button_ms)) return;
  cue_play("voxpressbutton");
  next.press_button_ms = from_now_ms(7500.0, 7500.0);
  tick_timers.next_vox_ms = from_now_ms(2000.0, 2000.0);
}

void insert_coins(int side) {
  if (now_ms() >= tick_timers.coin_prompt_until[side]) return;
  if (pref_int(PREF_CURRENCY_UNIT) == CURRENCY_SWIPES || !may_speak(next.insert_coins_ms)) return;
  cue_play("voxinsertcoins");
  next.insert_coins_ms = from_now_ms(5000.0, 5000.0);
  tick_timers.next_vox_ms = from_now_ms(2000.0, 1000.0);
}

void eat_bugs(int side) {
  if (tick_timers.credit_wait_ms[side] <= HINT_AFTER_MS || !pref_on(PREF_TICKET_USE)) return;
  if (!may_speak(next.eat_bugs_ms)) return;
  cue_play("voxeatbugs");
  next.eat_bugs_ms = from_now_ms(12500.0, 12500.0);
  tick_timers.next_vox_ms = from_now_ms(2000.0, 2000.0);
}

void play_again(int side) {
  const std::int64_t since_ms = tick_timers.since_award_ms[side];
  if (tick_timers.credit_wait_ms[side] > HINT_AFTER_MS) return;
  if (since_ms < 1 || since_ms > THANKS_UNTIL_MS || !station_idle(side)) return;
  if (!may_speak(next.play_again_ms)) return;
  if (random_unit() < THANKS_CHANCE) cue_play("voxplayagain");  // held back, it counts as spoken
  next.play_again_ms = from_now_ms(5000.0, 5000.0);
  tick_timers.next_vox_ms = from_now_ms(2000.0, 2000.0);
}

}  // namespace

// The order decides who speaks when several may.
void voices_step() {
  chatter();
  press_button(SIDE_LEFT);
  press_button(SIDE_RIGHT);
  insert_coins(SIDE_LEFT);
  insert_coins(SIDE_RIGHT);
  for (int side = 0; side < SIDE_COUNT; ++side) {
    eat_bugs(side);
    play_again(side);
  }
}

void voices_reset() {
  next = {};
}
