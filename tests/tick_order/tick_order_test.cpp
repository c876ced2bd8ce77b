// The order of the tick. Everything that it calls is replaced by a recorder.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick.h"
#include "frame/tick_steps.h"
#include "frame/tick_timers.h"
#include "io/jamma.h"
#include "io/lamp_effects.h"
#include "io/lamps.h"
#include "io/watchdog_link.h"
#include "operator/menu.h"
#include "operator/test_screen.h"
#include "playfield/frog_flight.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "playfield/river.h"
#include "presentation/attract.h"
#include "presentation/voices.h"
#include "presentation/volume.h"
#include "presentation/win_show_start.h"

namespace {

// What is called, each call with a space behind it, and what the calls answer.
struct World {
  std::string calls;
  bool menu_open = false;
  bool idle[2] = {true, true};
  bool show[2] = {};
  bool ready = true;
  std::uint32_t pending[PRESS_COUNT] = {};
  JammaInputs inputs{};
  std::int32_t inputs_result = 0;
  bool reboot = false;
  bool board_awaited = false;
};
World* world = nullptr;

void call(const std::string& name) {
  world->calls += name + " ";
}
void call(const std::string& name, int n) {
  call(name + ":" + std::to_string(n));
}

}  // namespace

Shared<std::int32_t> attract_flag{1}, volume_step{0}, volume_value{0};
Shared<std::uint32_t> jamma_checksum_failures{0};

// Functions of the game in whose place only their name is noted, the second kind with its number.
#define RECORDS(function) \
  void function() {       \
    call(#function);      \
  }
#define RECORDS_NUMBER(function) \
  void function(int number) {    \
    call(#function, number);     \
  }

RECORDS(attract_volume_step)
RECORDS(river_speed_step)
RECORDS(lead_lane_update)
RECORDS_NUMBER(lane_update)
RECORDS(butterfly_update)
RECORDS_NUMBER(station_update)
RECORDS(voices_step)
RECORDS(attract_step)
RECORDS(menu_input)
RECORDS(test_screen_input)
RECORDS_NUMBER(coins_take)
RECORDS_NUMBER(start_take)
RECORDS(service_credits_take)
RECORDS(auto_launch)
RECORDS_NUMBER(test_hold_step)
RECORDS_NUMBER(volume_button)
RECORDS(jamma_update_lockouts)
RECORDS(tickets_poll)
RECORDS(late_board_begin)
RECORDS(tickets_restore)
RECORDS(lamps_update)
RECORDS(jamma_lamps_tick)
RECORDS_NUMBER(frog_enqueue)
RECORDS(watchdog_heartbeat)

bool station_idle(int side) {
  return world->idle[side];
}
int station_live_frogs(int) {
  return 0;
}
std::int32_t jamma_command(std::int32_t command, std::intptr_t a, std::intptr_t, std::intptr_t,
                           std::intptr_t) {
  call("jamma_command", command);
  if (command == JAMMA_GET_INPUTS && world->inputs_result == 0) {
    *reinterpret_cast<JammaInputs**>(a) = &world->inputs;
  }
  return world->inputs_result;
}
std::uint32_t jamma_presses_pending(JammaPress press) {
  return world->pending[press];
}
void jamma_presses_clear(JammaPress press) {
  call("clear", press);
}
bool menu_is_open() {
  return world->menu_open;
}
bool late_board_step(std::int64_t) {
  call("late_board_step");
  return world->board_awaited;
}
bool frog_ready(int) {
  return world->ready;
}
void frog_launch(int side, bool demo) {
  call(demo ? "demo_launch" : "launch", side);
}
bool win_show_active(int side) {
  return world->show[side];
}
bool periodic_reboot_step() {
  call("periodic_reboot_step");
  return world->reboot;
}

namespace {

const std::string PLAYFIELD =
    "attract_volume_step river_speed_step lead_lane_update lane_update:0 lane_update:1 "
    "lane_update:2 lane_update:3 lane_update:4 lane_update:5 lane_update:6 lane_update:7 "
    "lane_update:8 lane_update:9 lane_update:10 lane_update:11 lane_update:12 butterfly_update "
    "station_update:0 station_update:1 voices_step ";
const std::string BEGIN = "attract_step jamma_command:2 ";
const std::string PLAY_INPUTS =
    "coins_take:0 coins_take:1 start_take:0 start_take:1 service_credits_take test_hold_step:0 ";
const std::string REST =
    "clear:2 clear:3 clear:0 clear:1 clear:5 clear:6 clear:7 clear:8 late_board_step "
    "jamma_update_lockouts tickets_poll lamps_update jamma_lamps_tick ";
const std::string END = "watchdog_heartbeat periodic_reboot_step ";
const std::string IN_PLAY = PLAYFIELD + BEGIN + PLAY_INPUTS + REST;

class TickOrder : public testing::Test {
 protected:
  TickOrder() {
    world = &state;
    prefs_reset();
    audits_reset();
    audits_tick_reset();
    game_mode = MODE_PLAY;
    game_clock.now_ms = 0;
    attract_flag = 1;
    std::construct_at(&tick_timers);
    for (auto& next : tick_timers.attract_demo_next) next = 1 << 20;
  }

  std::string tick(std::int64_t at) {
    state.calls.clear();
    game_tick(at);
    return state.calls;
  }

  World state;
};

TEST_F(TickOrder, EachModeReadsItsOwnInputs) {
  EXPECT_EQ(tick(17), IN_PLAY + END);
  EXPECT_EQ(now_ms(), 17);
  state.inputs.counters[COUNTER_TST] = 7;  // odd: held
  EXPECT_NE(tick(20).find("test_hold_step:1"), std::string::npos);
  state.inputs_result = JAMMA_ERR_NOT_OPEN;
  EXPECT_EQ(tick(23), IN_PLAY + END) << "without a board it is up";
  state.inputs_result = 0;
  state.inputs.counters[COUNTER_TST] = 8;
  state.pending[PRESS_VLU] = 3;
  state.pending[PRESS_VLD] = 1;
  EXPECT_EQ(tick(34),
            PLAYFIELD + BEGIN + PLAY_INPUTS + "volume_button:1 volume_button:-1 " + REST + END);
  game_mode = MODE_OPERATOR;
  state.menu_open = true;
  EXPECT_EQ(tick(51), BEGIN + "menu_input " + REST + END);
  state.menu_open = false;
  EXPECT_EQ(tick(68), BEGIN + "test_screen_input " + REST + END);
  game_mode = MODE_GOING_DOWN;  // no input is read, but presses are cleared
  EXPECT_EQ(tick(85), BEGIN + REST + END);
}

// Demo frogs fly in attract without a time-out. The next one's time is set even if none could fly.
TEST_F(TickOrder, LaunchesDemoFrogsInAttractOrByTimeout) {
  tick_timers.attract_demo_next[0] = 100;
  EXPECT_EQ(tick(100), IN_PLAY + END) << "not due yet";
  EXPECT_EQ(tick(101), IN_PLAY + "demo_launch:0 frog_enqueue:0 " + END);
  EXPECT_GE(tick_timers.attract_demo_next[0], 101 + 7500);
  EXPECT_LE(tick_timers.attract_demo_next[0], 101 + 15000);

  state.ready = false;
  tick_timers.attract_demo_next[1] = 0;
  EXPECT_EQ(tick(200), IN_PLAY + END);
  EXPECT_GE(tick_timers.attract_demo_next[1], 200 + 7500);

  tick_timers.attract_demo_next[0] = 0;
  prefs[PREF_TIMEOUT_SECONDS].int_value = 0;
  EXPECT_EQ(tick(217), IN_PLAY + "auto_launch " + END);
}

// States of the game at random, and each timer beside its rule.
TEST_F(TickOrder, TimersGrowByTheStepAndReset) {
  std::mt19937 dice(1);
  const auto once_in = [&dice](unsigned times) { return dice() % times == 0; };
  std::int64_t now = 0, both = 0, no_money = 0, idle[2] = {}, wait[2] = {}, since[2] = {};
  prefs[PREF_TIMEOUT_SECONDS].int_value = -1;
  for (int i = 0; i < 4000; ++i) {
    const auto side = static_cast<int>(dice() % 2);
    if (once_in(10)) state.idle[side] = !once_in(3);
    if (once_in(10)) state.show[side] = once_in(4);
    if (once_in(10)) audits[AUDIT_CURRENT_CREDITS + side].count = once_in(4) ? 1 : 0;
    if (once_in(10)) audits[AUDIT_CURRENT_COINS + side].count = once_in(4) ? 1 : 0;
    if (once_in(10)) tick_timers.award_done[side] = once_in(2) ? 1 : 0;
    if (once_in(10)) prefs[PREF_FREEPLAY].int_value = once_in(4) ? 1 : 0;
    const int dt = 17 + static_cast<int>(dice() % 5);
    tick(now += dt);
    const auto grow = [dt](std::int64_t& timer, bool grows) { timer = grows ? timer + dt : 0; };
    bool money = false;
    grow(both, state.idle[0] && state.idle[1]);
    for (int s = 0; s < 2; ++s) {
      const bool credit = audits[AUDIT_CURRENT_CREDITS + s].count > 0;
      money = money || credit || audits[AUDIT_CURRENT_COINS + s].count > 0;
      grow(idle[s], state.idle[s]);
      grow(since[s], tick_timers.award_done[s] != 0);
      if (credit) wait[s] += dt;
      if (state.show[s] || prefs[PREF_FREEPLAY].int_value == 1) wait[s] = 0;
      ASSERT_EQ(tick_timers.idle_ms[s], idle[s]) << i;
      ASSERT_EQ(tick_timers.credit_wait_ms[s], wait[s]) << i;
      ASSERT_EQ(tick_timers.since_award_ms[s], since[s]) << i;
    }
    grow(no_money, !money);
    ASSERT_EQ(tick_timers.idle_both_ms, both) << i;
    ASSERT_EQ(tick_timers.no_money_ms, no_money) << i;
  }
}

TEST_F(TickOrder, TickIsDueEvery17Milliseconds) {
  tick(1000);
  EXPECT_FALSE(game_tick_due(1016));
  EXPECT_TRUE(game_tick_due(1017));
  state.reboot = true;
  EXPECT_FALSE(game_tick(1017)) << "a reboot ends the ticks";
}

TEST_F(TickOrder, TicketsArePolledOnceTheAwaitedBoardHasThem) {
  game_begin();
  EXPECT_EQ(state.calls, "frog_enqueue:0 frog_enqueue:1 late_board_begin tickets_restore ");
  state.board_awaited = true;
  std::string without_poll = IN_PLAY + END;
  without_poll.erase(without_poll.find("tickets_poll "), 13);
  EXPECT_EQ(tick(1000), without_poll);
}

}  // namespace
