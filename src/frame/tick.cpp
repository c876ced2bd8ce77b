#include "frame/tick.h"

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/sides.h"
#include "frame/tick_steps.h"
#include "frame/tick_timers.h"
#include "io/jamma.h"
#include "io/lamp_effects.h"
#include "io/lamps.h"
#include "io/watchdog_link.h"
#include "operator/menu.h"
#include "operator/test_screen.h"
#include "platform/clock.h"   // clock_ms
#include "platform/random.h"  // random_unit
#include "playfield/frog_flight.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "playfield/river.h"
#include "presentation/attract.h"
#include "presentation/voices.h"
#include "presentation/volume.h"
#include "presentation/win_show_start.h"

namespace {

constexpr double TICK_MS = 16.666667938232422;  // 1/60 s as a 32-bit float has it
constexpr JammaPress TICK_PRESSES[] = {PRESS_C1,  PRESS_C2,  PRESS_P1S, PRESS_P2S,
                                       PRESS_SRV, PRESS_TST, PRESS_VLU, PRESS_VLD};

std::int64_t next_demo(std::int64_t from) {
  return from + static_cast<std::int64_t>(7500.0 + random_unit() * 7500.0);
}

bool no_money() {
  return audit_count(AUDIT_CURRENT_CREDITS, SIDE_LEFT) == 0 &&
         audit_count(AUDIT_CURRENT_CREDITS, SIDE_RIGHT) == 0 &&
         audit_count(AUDIT_CURRENT_COINS, SIDE_LEFT) == 0 &&
         audit_count(AUDIT_CURRENT_COINS, SIDE_RIGHT) == 0;
}

void grow(Shared<std::int64_t>& timer, std::int64_t dt, bool running) {
  timer = running ? timer + dt : 0;
}

void timers_step(std::int64_t dt) {
  TickTimers& timers = tick_timers;
  const bool idle[SIDE_COUNT] = {station_idle(SIDE_LEFT), station_idle(SIDE_RIGHT)};
  const bool freeplay = pref_on(PREF_FREEPLAY);
  grow(timers.idle_both_ms, dt, idle[SIDE_LEFT] && idle[SIDE_RIGHT]);
  grow(timers.idle_ms[SIDE_LEFT], dt, idle[SIDE_LEFT]);
  grow(timers.idle_ms[SIDE_RIGHT], dt, idle[SIDE_RIGHT]);
  grow(timers.no_money_ms, dt, no_money());
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (audit_count(AUDIT_CURRENT_CREDITS, side) > 0 || freeplay) {
      timers.credit_wait_ms[side] += dt;
    }
  }
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (win_show_active(side) || freeplay) timers.credit_wait_ms[side] = 0;
  }
  for (int side = 0; side < SIDE_COUNT; ++side) {
    grow(timers.since_award_ms[side], dt, timers.award_done[side] != 0);
  }
}

void playfield_step() {
  attract_volume_step();
  river_speed_step();
  lead_lane_update();
  for (int lane = 0; lane < LANE_COUNT; ++lane) lane_update(lane);
  butterfly_update();
  station_update(SIDE_LEFT);
  station_update(SIDE_RIGHT);
  voices_step();
}

void audits_step() {
  AuditsTick tick{now_ms(), {}, {}, jamma_checksum_failures};
  for (int side = 0; side < SIDE_COUNT; ++side) {
    tick.live_frogs[side] = station_live_frogs(side);
    tick.idle[side] = tick.live_frogs[side] == 0;
  }
  audits_tick(tick);
}

// 1 while the Test button is held, 0 without a board.
int read_test_level() {
  JammaInputs* inputs = nullptr;
  const std::int32_t result =
      jamma_command(JAMMA_GET_INPUTS, reinterpret_cast<std::intptr_t>(&inputs));
  return result == 0 ? static_cast<int>(inputs->counters[COUNTER_TST] & 1U) : 0;
}

void inputs_in_play(int test_level) {
  coins_take(SIDE_LEFT);
  coins_take(SIDE_RIGHT);
  start_take(SIDE_LEFT);
  start_take(SIDE_RIGHT);
  service_credits_take();
  test_hold_step(test_level);
  if (jamma_pressed(PRESS_VLU)) volume_button(1);
  if (jamma_pressed(PRESS_VLD)) volume_button(-1);
}

void inputs_step() {
  const int test_level = read_test_level();
  if (menu_is_open()) {
    menu_input();
  } else if (game_mode == MODE_PLAY) {
    inputs_in_play(test_level);
  } else if (game_mode == MODE_OPERATOR) {
    test_screen_input();
  }
  for (const JammaPress press : TICK_PRESSES) jamma_presses_clear(press);
}

void demo_frogs_step() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (tick_timers.attract_demo_next[side] >= now_ms()) continue;
    if (frog_ready(side)) {
      frog_launch(side, true);
      frog_enqueue(side);
    }
    tick_timers.attract_demo_next[side] = next_demo(now_ms());
  }
}

void launches_step() {
  // Before a reboot no frog is launched: the flight could not end, and the credit would be lost.
  if (game_mode == MODE_GOING_DOWN) return;
  if (pref_int(PREF_TIMEOUT_SECONDS) >= 0) {
    auto_launch();
  } else if (attract_flag) {
    demo_frogs_step();
  }
}

}  // namespace

void game_begin() {
  for (auto& next : tick_timers.attract_demo_next) next = next_demo(clock_ms());
  frog_enqueue(SIDE_LEFT);
  frog_enqueue(SIDE_RIGHT);
  late_board_begin();
  tickets_restore();
}

bool game_tick_due(std::int64_t t_ms) {
  return static_cast<double>(now_ms()) + TICK_MS <= static_cast<double>(t_ms);
}

// The order is fixed: later steps read what earlier ones wrote.
bool game_tick(std::int64_t t_ms) {
  timers_step(t_ms - now_ms());
  game_clock.now_ms = t_ms;
  if (game_mode == MODE_PLAY) playfield_step();
  attract_step();
  audits_step();
  inputs_step();
  const bool board_awaited = late_board_step(t_ms);
  jamma_update_lockouts();
  if (!board_awaited) tickets_poll();
  lamps_update();
  jamma_lamps_tick();
  launches_step();
  watchdog_heartbeat();
  return !periodic_reboot_step();
}
