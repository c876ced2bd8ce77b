// Coins, credits and tickets through whole ticks: the switches' presses on one side, the books and
// the board's commands on the other.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick.h"
#include "frame/tick_steps.h"
#include "frame/tick_timers.h"
#include "frame/ticket_status.h"
#include "io/lamp_effects.h"
#include "io/watchdog_link.h"
#include "operator/main_menu.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/headless/clock_control.h"
#include "platform/headless/power_record.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "presentation/volume.h"
#include "tests/fakes/jamma_fake.h"
#include "tests/fakes/jps_fake.h"
#include "tests/io_watchdog/fake_usb.h"
#include "tests/plain_sheets.h"
#include "tests/reset_game.h"
#include "tests/temp_folder.h"

namespace {

constexpr std::int32_t MOST = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t DAY = 86400000, HOUR = 3600000;

// Sum of the second argument over the calls of a command for a side: coins, tickets, requests.
int jamma_fake_sum(std::int32_t command, int side) {
  std::intptr_t sum = 0;
  for (std::size_t i = 0; i < jamma_fake.call_count; ++i) {
    const JammaFakeCall& call = jamma_fake.calls[i];
    if (call.command == command && call.a == side) sum += call.b;
  }
  return static_cast<int>(sum);
}

class Money : public testing::Test {
 protected:
  Money() {
    files_use_roots(drive.path(), drive.path());
    jamma_fake_reset();
    jps_fake_reset();
    plain_sheets();
    reset_game();
    menus_free();
    menus_build();
    headless_reboots_ordered = 0;
    for (auto& next : tick_timers.attract_demo_next) next = 1LL << 40;  // never
    frog_enqueue(SIDE_LEFT);
    frog_enqueue(SIDE_RIGHT);
    tick();
    jamma_fake_reset();
  }

  void tick(int count = 1) {
    for (int i = 0; i < count; ++i) running = game_tick(now_ms() + 17);
  }
  void coin(int side, std::uint32_t n = 1) {
    jamma_fake.pending[side == 0 ? PRESS_C1 : PRESS_C2] = n;
    tick();
  }
  void start(int side) {
    jamma_fake.pending[side == 0 ? PRESS_P1S : PRESS_P2S] = 1;
    tick();
  }
  static int credits(int side) { return audit_count(AUDIT_CURRENT_CREDITS, side); }
  // Coins towards a credit, credits, coins taken by the books, and by the meter.
  static std::tuple<int, int, int, int> money(int side) {
    return {audit_count(AUDIT_CURRENT_COINS, side), credits(side),
            audit_count(AUDIT_COIN_DROPS, side), jamma_fake_sum(JAMMA_PULSE_COIN_METER, side)};
  }
  static int games(int side) { return audit_count(AUDIT_GAMES_PLAYED, side); }
  static int in_state(int side, FrogState state) {
    return static_cast<int>(std::ranges::count_if(stations[side].frogs,
                                                  [&](const Frog& f) { return f.state == state; }));
  }
  // What the next run of the game orders for each side.
  static std::pair<int, int> ordered_by_next_run() {
    jamma_fake_forget_calls();
    tickets_restore();
    return {jamma_fake_sum(JAMMA_ADD_TICKETS, 0), jamma_fake_sum(JAMMA_ADD_TICKETS, 1)};
  }
  // What the coils were told: 1 opens a slot, -1 closes it.
  static std::pair<int, int> coils() {
    return {jamma_fake_sum(JAMMA_SET_LOCKOUT, 0), jamma_fake_sum(JAMMA_SET_LOCKOUT, 1)};
  }

  TempFolder drive;
  bool running = true;
};

// Settings are not checked when they are read, so any value may come.
TEST_F(Money, CoinsBecomeCreditsAndAreStoredInTheSameTick) {
  const struct {
    const char* what;
    int to_play, frogs, unit, per_pulse;
    std::uint32_t presses;
    int coins, credits, taken;
  } rows[] = {{"two games of two frogs, and two coins more", 3, 2, CURRENCY_COINS, 1, 8, 2, 4, 8},
              {"a coin too few", 3, 2, CURRENCY_COINS, 1, 2, 2, 0, 2},
              {"a swipe of four coins", 1, 1, CURRENCY_SWIPES, 4, 1, 0, 4, 4},
              {"a pulse that is no swipe", 1, 1, CURRENCY_EURO, 4, 1, 0, 1, 1},
              {"no price keeps the coins", 0, 1, CURRENCY_COINS, 1, 2, 2, 0, 2},
              {"frogs below one", 1, -3, CURRENCY_COINS, 1, 1, 0, 1, 1},
              {"frogs without end", 1, MOST, CURRENCY_COINS, 1, 1, 0, 100, 1},
              {"a swipe of no coin", 1, 1, CURRENCY_SWIPES, 0, 1, 0, 1, 1},
              {"a swipe without end", 1, 1, CURRENCY_SWIPES, MOST, 1, 0, 100, 100}};
  for (const auto& row : rows) {
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
      SCOPED_TRACE(row.what);
      audits_reset();
      jamma_fake_forget_calls();
      jps_fake_reset();
      prefs[PREF_COINS_TO_PLAY].int_value = row.to_play;
      prefs[PREF_FROGS_PER_GAME].int_value = row.frogs;
      prefs[PREF_CURRENCY_UNIT].int_value = row.unit;
      prefs[PREF_COINS_PER_SWIPE_PULSE].int_value = row.per_pulse;
      coin(side, row.presses);
      EXPECT_EQ(money(side), std::tuple(row.coins, row.credits, row.taken, row.taken));
      EXPECT_EQ(money(1 - side), std::tuple(0, 0, 0, 0));
      EXPECT_EQ(jps_fake_count("coin"), 1) << "one sound for several in one tick";
      const std::string in_memory(reinterpret_cast<const char*>(&audits), sizeof audits);
      EXPECT_TRUE(drive.read("audits").substr(4) == in_memory);
    }
  }
}

// The books aren't checked either.
TEST_F(Money, DamagedCountsOfMoneyAreHeldToTheirLimits) {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    audits[AUDIT_CURRENT_CREDITS + side].count = -100;
    audits[AUDIT_CURRENT_COINS + side].count = std::numeric_limits<std::int32_t>::min();
  }
  audits_save();
  audits_load();
  coin(SIDE_LEFT);
  EXPECT_EQ(money(0), std::tuple(0, 1, 1, 1));
  EXPECT_EQ(money(1), std::tuple(0, 0, 0, 0));

  prefs[PREF_FROGS_PER_GAME].int_value = 2;
  for (const int row : {AUDIT_CURRENT_COINS, AUDIT_COIN_DROPS, AUDIT_SERVICE_CREDITS}) {
    audits[row].count = MOST;
  }
  coin(SIDE_LEFT);
  jamma_fake.pending[PRESS_SRV] = 1;
  tick();
  EXPECT_EQ(money(0), std::tuple(0, MOST, MOST, 2));
  EXPECT_EQ(audit_count(AUDIT_SERVICE_CREDITS), MOST);

  audits[AUDIT_TICKETS_OWED].count = -1;
  audits[AUDIT_TICKETS_OWED + 1].count = 1 << 20;
  EXPECT_EQ(ordered_by_next_run(), std::pair(0, 1023)) << "what a board can owe";
}

// The program was ended in the middle of a payout. A board that kept running pays on by itself; one
// that restarted has lost its count.
TEST_F(Money, OwedTicketsAreOrderedAgainUnlessBoardKeptRunning) {
  const struct {
    const char* what;
    void (*meanwhile)();
    int ordered, asked;
    std::uint8_t coin_counter = 2;
  } rows[] = {
      {"nothing happened", [] {}, 0, 1},
      {"players pressed buttons", [] { jamma_fake.counters[COUNTER_P1S] += 6; }, 0, 1},
      {"the board restarted", [] { jamma_fake.counters[COUNTER_C1] = 0; }, 22, 0},
      {"the machine lost its power", [] { headless_boot_id = "another"; }, 22, 0},
      {"a board that counted nothing looks like one that restarted", [] {}, 22, 0, 0},
      {"no counters yet", [] { jamma_fake.synced = false; }, 22, 0},
      {"it did, but the board reports a count",
       [] {
         headless_boot_id = "another";
         jamma_fake.tickets_reported = true;
       },
       0, 1},
      {"the dispenser jammed, as the board has said", [] { jamma_fake.flags = LEFT_TICKET_FAULT; },
       0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    jamma_fake_reset();
    headless_boot_id = "boot";
    audits[AUDIT_TICKETS_OWED].count = 0;
    jamma_fake.counters[COUNTER_C1] = row.coin_counter;
    tickets_restore();
    jamma_fake.tickets_owed[0] = 22;
    tickets_poll();
    jamma_fake.tickets_owed[0] = 0;  // the board has yet to report to the next run
    ticket_status.tickets_owed[0] = 0;
    row.meanwhile();
    EXPECT_EQ(ordered_by_next_run(), std::pair(row.ordered, 0));
    EXPECT_EQ(jamma_fake_count(JAMMA_ADD_TICKETS), 2U);
    EXPECT_EQ(std::to_array(jamma_fake.tickets_asked), (std::array{row.asked, 0}));
    std::filesystem::remove(drive.file("audits"));
    tickets_poll();
    EXPECT_EQ(drive.has("audits"), row.ordered == 0) << "stored if it fell to zero";
  }
}

TEST_F(Money, QueuedTicketsAreOrderedAfterRestart) {
  jamma_fake.counters[COUNTER_C1] = 2;
  tickets_restore();
  jamma_fake.tickets_owed[1] = 1023;
  jamma_fake.tickets_queued[1] = 977;
  tickets_poll();
  EXPECT_EQ(ordered_by_next_run(), std::pair(0, 977));
  jamma_fake.tickets_owed[1] = jamma_fake.tickets_queued[1] = 0;  // all were cleared
  tickets_poll();
  EXPECT_EQ(ordered_by_next_run(), std::pair(0, 0));

  std::filesystem::resize_file(drive.file("board"), 30);  // cut off: not used
  audits[AUDIT_TICKETS_OWED + 1].count = 5;
  EXPECT_EQ(ordered_by_next_run(), std::pair(0, 5));
  std::filesystem::remove(drive.file("board"));  // as on the first start
  EXPECT_EQ(ordered_by_next_run(), std::pair(0, 5));
}

// The cable was out when 5 tickets were won, and the game ends before they are ordered again.
TEST_F(Money, OrderThatNeverReachedTheBoardIsRepeatedAfterRestart) {
  jamma_fake.counters[COUNTER_C1] = 2;
  const auto ordered_after = [&](std::int64_t unanswered_ms, std::int32_t at_the_end) {
    tickets_restore();
    jamma_fake.tickets_owed[0] = jamma_fake.tickets_unanswered[0] = 5;
    tickets_poll();
    game_clock.now_ms = now_ms() + unanswered_ms;
    tickets_poll();
    jamma_fake.tickets_unanswered[0] = at_the_end;
    jamma_fake.tickets_owed[0] = at_the_end;
    tickets_poll();
    return ordered_by_next_run().first;
  };
  EXPECT_EQ(ordered_after(249, 5), 0) << "the answer may be on its way";
  EXPECT_EQ(ordered_after(250, 5), 5);
  EXPECT_EQ(ordered_after(250, 0), 0) << "the board has answered";
}

TEST_F(Money, StartTakesOneCreditAndLaunchesOneFrog) {
  coin(SIDE_LEFT, 2);
  start(SIDE_LEFT);
  EXPECT_EQ(credits(0), 1);
  EXPECT_EQ(in_state(0, FROG_LAUNCHING), 1);
  EXPECT_EQ(in_state(0, FROG_WAITING), 1) << "the next in line";
  EXPECT_EQ(games(0), 1);
  EXPECT_EQ(jps_fake_count("ricochet"), 1);
  EXPECT_EQ(jps_fake_count("jump"), 1);

  start(SIDE_LEFT);  // in flight
  start(SIDE_LEFT);  // too soon for another sound
  EXPECT_EQ(credits(0), 1);
  EXPECT_EQ(jps_fake_count("bonk"), 1);
  tick(30);
  start(SIDE_LEFT);
  EXPECT_EQ(jps_fake_count("bonk"), 2);

  prefs[PREF_FREEPLAY].int_value = 1;
  start(SIDE_RIGHT);
  EXPECT_EQ(credits(1), 0);
  EXPECT_EQ(in_state(1, FROG_LAUNCHING), 1);
}

TEST_F(Money, TimePlayedIsThatOfTheSideWithFrogs) {
  for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
    playfield_reset();
    frog_enqueue(side);
    audits_reset();
    coin(side);
    start(side);
    tick(60);
    EXPECT_NEAR(audits[AUDIT_TIME_TOTAL_PLAYED + side].time_ms, 60 * 17, 17) << side;
    EXPECT_EQ(audits[AUDIT_TIME_TOTAL_PLAYED + 1 - side].time_ms, 0) << side;
  }
}

TEST_F(Money, StartWithoutCreditExtendsPromptByWholeSeconds) {
  start(SIDE_LEFT);
  const std::int64_t begun = now_ms();
  EXPECT_EQ(tick_timers.coin_prompt_start[0], begun);
  EXPECT_EQ(tick_timers.coin_prompt_until[0], begun + 5000);
  tick(100);  // 1.7 s later
  start(SIDE_LEFT);
  EXPECT_EQ(tick_timers.coin_prompt_start[0], begun);
  EXPECT_EQ(tick_timers.coin_prompt_until[0], begun + 6000);
  EXPECT_EQ(tick_timers.coin_prompt_until[1], 0);
  coin(SIDE_LEFT);
  EXPECT_EQ(tick_timers.coin_prompt_until[0], now_ms()) << "a coin ends it";
}

TEST_F(Money, ServiceAddsACreditToEachSide) {
  jamma_fake.pending[PRESS_SRV] = 2;
  tick();
  EXPECT_EQ(std::tuple(credits(0), credits(1), audit_count(AUDIT_SERVICE_CREDITS)),
            std::tuple(2, 2, 2));
}

TEST_F(Money, TimeoutPlaysAWaitingCredit) {
  prefs[PREF_TIMEOUT_SECONDS].int_value = -2;  // off, like -1
  tick(1000);
  prefs[PREF_TIMEOUT_SECONDS].int_value = 15;  // the wait has ended, but there is no credit
  tick_timers.credit_wait_ms[0] = 60000;
  tick();
  EXPECT_EQ(std::tuple(games(0), games(1), credits(0)), std::tuple(0, 0, 0));

  tick_timers.credit_wait_ms[0] = 0;
  coin(SIDE_LEFT);
  tick(15000 / 17);
  EXPECT_EQ(credits(0), 1);
  tick(3);
  EXPECT_EQ(credits(0), 0);
  EXPECT_EQ(in_state(0, FROG_LAUNCHING), 1);
  prefs[PREF_TIMEOUT_SECONDS].int_value = 0;
  coin(SIDE_RIGHT);
  tick(1);
  EXPECT_EQ(credits(1), 0);
}

TEST_F(Money, CoinEndsDemoOnItsSideOnly) {
  for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
    frog_launch(side, true);
    frog_enqueue(side);
  }
  coin(SIDE_LEFT);
  EXPECT_EQ(in_state(0, FROG_FADING), 1);
  EXPECT_EQ(in_state(1, FROG_FADING), 0);
  EXPECT_EQ(games(0), 0);
}

TEST_F(Money, TestHeldWithoutBreakOpensTheMenusWherePressesAreDiscarded) {
  auto& test_switch = jamma_fake.inputs.counters[COUNTER_TST];  // odd: closed
  prefs[PREF_VOLUME].int_value = 9;
  prefs[PREF_ATTRACT_VOLUME].int_value = 3;
  attract_begin();
  test_switch = 1;
  tick(119);
  test_switch = 2;
  tick();
  test_switch = 3;
  tick(120);
  EXPECT_EQ(game_mode, MODE_PLAY);
  EXPECT_EQ(jps_fake.stops, 0);
  EXPECT_EQ(volume_step, 3);
  tick(1);
  EXPECT_EQ(game_mode, MODE_OPERATOR);
  EXPECT_EQ(jps_fake.stops, 1);
  EXPECT_EQ(audit_count(AUDIT_TEST_ENTRY_COUNT), 1);
  EXPECT_EQ(sound_enabled, 0);
  EXPECT_EQ(volume_step, 9);
  EXPECT_EQ(pref_int(PREF_VOLUME), 9);
  jamma_fake_forget_calls();
  coin(SIDE_LEFT, 5);
  EXPECT_EQ(money(0), std::tuple(0, 0, 0, 0));
  EXPECT_EQ(jamma_fake.pending[PRESS_C1], 0U);

  // The release of the held button counts as a press, which only wakes the menu.
  test_switch = 4;
  jamma_fake.pending[PRESS_TST] = 1;
  tick();
  EXPECT_EQ(game_mode, MODE_OPERATOR);
  jamma_fake.pending[PRESS_SRV] = 1;
  tick();
  EXPECT_EQ(game_mode, MODE_PLAY);
  EXPECT_EQ(sound_enabled, 1);
}

TEST_F(Money, OwedTicketsAreStoredWhenTheyRiseOrReachZero) {
  const auto stored = [&](int owed) {
    std::filesystem::remove(drive.file("audits"));
    jamma_fake.tickets_owed[0] = owed;
    tick();
    EXPECT_EQ(audit_count(AUDIT_TICKETS_OWED, 0), owed);
    EXPECT_EQ(ticket_status.tickets_owed[0], owed);
    return drive.has("audits");
  };
  EXPECT_TRUE(stored(30));
  EXPECT_FALSE(stored(29));
  EXPECT_FALSE(stored(1));
  EXPECT_TRUE(stored(0));
  EXPECT_FALSE(stored(0));
  EXPECT_TRUE(stored(2));
}

TEST_F(Money, FaultsFollowBoardAndOwedTicketsSurviveItsAbsence) {
  const auto faults = [] {
    return std::pair(ticket_status.ticket_error[0].get(), ticket_status.ticket_error[1].get());
  };
  jamma_fake.flags = RIGHT_TICKET_FAULT;
  tick();
  EXPECT_EQ(faults(), std::pair(0, 1));
  jamma_fake.flags = 0;
  tick();
  EXPECT_EQ(faults(), std::pair(0, 0));

  audits[AUDIT_TICKETS_OWED].count = 12;
  jamma_fake.open = false;
  tick(3);
  EXPECT_EQ(audit_count(AUDIT_TICKETS_OWED, 0), 12) << "an error code is no count";
  jamma_fake.open = true;
  EXPECT_EQ(ordered_by_next_run(), std::pair(12, 0));
}

TEST_F(Money, HandsOwedTicketsAndCoilsToABoardThatComesLate) {
  const auto begin_without_board = [&] {
    jamma_fake_reset();
    jamma_fake.open = jamma_fake.synced = false;
    audits[AUDIT_TICKETS_OWED].count = 9;
    audits[AUDIT_CURRENT_CREDITS].count = 1;
    game_begin();
    tick(3);
    jamma_fake_forget_calls();
    jamma_fake.open = true;
  };
  begin_without_board();
  tick(30);
  EXPECT_EQ(audit_count(AUDIT_TICKETS_OWED, 0), 9)
      << "it owes nothing yet that the books could copy";
  EXPECT_EQ(jamma_fake_count(JAMMA_ADD_TICKETS), 0U) << "its counters may show that it has them";
  jamma_fake_forget_calls();
  jamma_fake.synced = true;
  tick(3);
  EXPECT_EQ(jamma_fake_sum(JAMMA_ADD_TICKETS, 0), 9);
  EXPECT_EQ(coils(), std::pair(1, 1));
  EXPECT_GT(lamp_value(LAMP_LEFT_PODIUM), 0) << "a waiting credit invites again";
  EXPECT_EQ(audit_count(AUDIT_TICKETS_OWED, 0), 0) << "the board's own count is the books' now";

  begin_without_board();
  tick(58);
  EXPECT_EQ(jamma_fake_sum(JAMMA_ADD_TICKETS, 0), 0);
  tick(4);
  EXPECT_EQ(jamma_fake_sum(JAMMA_ADD_TICKETS, 0), 9) << "a second is enough for a board to speak";
}

// Before the program ends they fall, also if they are disabled in the menu. What has passed the
// slot by then still counts.
TEST_F(Money, LockoutCoilsFollowCreditsWhenEnabledAndFallBeforeTheEnd) {
  jamma_fake_reset();
  lockouts_reset();
  tick(2);  // disabled: both coils are energised once
  EXPECT_EQ(coils(), std::pair(1, 1));
  jamma_fake_forget_calls();
  lockouts_hold_closed(true);
  coin(SIDE_LEFT);
  EXPECT_EQ(coils(), std::pair(-1, -1));
  EXPECT_EQ(credits(0), 1);
  lockouts_hold_closed(false);
  audits[AUDIT_CURRENT_CREDITS].count = 0;
  tick();
  jamma_fake_forget_calls();
  prefs[PREF_LOCKOUT_COILS].int_value = 1;
  coin(SIDE_RIGHT);
  tick(2);
  EXPECT_EQ(jamma_fake_count(JAMMA_SET_LOCKOUT), 1U);
  EXPECT_EQ(coils(), std::pair(0, -1));
  jamma_fake_forget_calls();
  start(SIDE_RIGHT);
  EXPECT_EQ(coils(), std::pair(0, 1));
}

// There are ten seconds' notice on the screen before it reboots. If that is refused, play goes on
// and the slots open again; an hour later it is tried once more.
TEST_F(Money, RebootsAfterADayOnceQuietFor240SecondsAndAnHourAfterARefusal) {
  FakeUsb usb;
  const auto watchdog = usb.plug();
  game_tick(DAY - 1000);
  coin(SIDE_LEFT);
  start(SIDE_LEFT);
  std::int64_t last_busy = 0;
  while (game_mode == MODE_PLAY) {
    ASSERT_LT(now_ms(), DAY + 400000) << "no reboot";
    tick();
    if (!station_idle(SIDE_LEFT) || !station_idle(SIDE_RIGHT)) last_busy = now_ms();
  }
  EXPECT_GT(last_busy, DAY) << "the frog was still in play when the day was over";
  const std::int64_t notice = now_ms();
  EXPECT_GT(notice, last_busy + 240000);
  EXPECT_LE(notice, last_busy + 240000 + 2 * 17);
  jamma_fake_forget_calls();
  EXPECT_TRUE(game_tick(notice + 10000));
  EXPECT_EQ(game_mode, MODE_GOING_DOWN);
  EXPECT_EQ(coils(), std::pair(-1, -1)) << "nobody counts coins from here on";
  EXPECT_EQ(headless_reboots_ordered, 0);
  watchdog->heard.clear();
  EXPECT_FALSE(game_tick(notice + 10001));
  EXPECT_EQ(headless_reboots_ordered, 1);
  EXPECT_EQ(watchdog->words(), std::vector<std::uint16_t>{WATCHDOG_WORD_REBOOT});
  watchdog_reset();

  EXPECT_FALSE(periodic_reboot_refused()) << "there is no answer yet";
  headless_reboot_refused = true;
  ASSERT_TRUE(periodic_reboot_refused());
  const std::int64_t refused = now_ms();
  tick();
  EXPECT_EQ(game_mode, MODE_PLAY);
  EXPECT_EQ(coils(), std::pair(0, 0));
  coin(SIDE_LEFT);
  EXPECT_EQ(credits(0), 1);
  while (game_mode == MODE_PLAY && now_ms() < refused + 2 * HOUR) tick();
  EXPECT_EQ(game_mode, MODE_GOING_DOWN);
  EXPECT_GT(now_ms(), refused + HOUR);
  EXPECT_LE(now_ms(), refused + HOUR + 2 * 17);
  while (running) tick();
  EXPECT_EQ(headless_reboots_ordered, 2);
  EXPECT_EQ(audit_count(AUDIT_PERIODIC_REBOOT_COUNT), 1) << "one run, one reboot";
}

TEST_F(Money, WaitingCreditSurvivesPeriodicReboot) {
  prefs[PREF_TIMEOUT_SECONDS].int_value = 15;
  game_tick(DAY - 6000);  // quiet since the start, so it goes down when the day is over
  coin(SIDE_LEFT);
  coin(SIDE_RIGHT, 2);
  while (running) tick();
  EXPECT_GT(now_ms(), DAY + 10000) << "never within a day";
  EXPECT_LE(now_ms(), DAY + 10000 + 2 * 17);
  EXPECT_GT(tick_timers.credit_wait_ms[0], 15000) << "long enough for a launch by time-out";
  EXPECT_EQ(std::tuple(credits(0), credits(1), games(0)), std::tuple(1, 2, 0));
}

// What the calendar says is no matter of the game: not a jump of thirty years, forward or back.
TEST_F(Money, StepsOfTheCalendarChangeNothing) {
  const auto books_after_steps_of = [this](std::int64_t years) {
    reset_game();
    headless_clock_reset();
    frog_enqueue(SIDE_LEFT);
    for (int second = 0; second < 700; ++second) {
      if (second % 100 == 50) headless_calendar_set(clock_calendar_s() + years * 365 * 86400);
      if (second % 20 == 0) coin(SIDE_LEFT);
      if (second % 20 == 5) start(SIDE_LEFT);
      for (int i = 0; i < 58; ++i) {
        headless_clock_advance(17);
        tick();
      }
    }
    EXPECT_EQ(game_mode, MODE_PLAY);
    EXPECT_GT(audits[AUDIT_TIME_GAME_ON].time_ms, 690000);
    audits_save();
    return drive.read("audits");
  };
  const std::string books = books_after_steps_of(0);
  EXPECT_EQ(books_after_steps_of(30), books);
  EXPECT_EQ(books_after_steps_of(-30), books);
}

}  // namespace
