// How long a jackpot's show runs, and what may not happen meanwhile.
#include "presentation/win_show.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "frame/ticket_status.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jps_fake.h"
#include "tests/plain_sheets.h"

namespace {

int blink = 0;  // what the LED board was told last

}  // namespace

extern "C" {  // NOLINTBEGIN: the linker's names
void __real__Z13led_set_blinki(int on);
void __wrap__Z13led_set_blinki(int on) {
  blink = on;
  __real__Z13led_set_blinki(on);
}
}  // NOLINTEND

namespace {

constexpr std::int64_t BEGUN_MS = 500000;
constexpr std::int64_t FADE_MS = 125;  // a show is over when it has faded out

class WinShow : public testing::Test {
 protected:
  WinShow() {
    prefs_reset();
    jps_fake_reset();
    game_mode = MODE_PLAY;
    sound_enabled = 1;
    plain_sheets();
    game_clock.now_ms = BEGUN_MS;
    playfield_reset();
    win_show_reset();
    for (int side = 0; side < SIDE_COUNT; ++side) {
      ticket_status.tickets_owed[side] = 500;
      ticket_status.ticket_error[side] = 0;
    }
  }
  ~WinShow() override {
    win_show_reset();
    jps_fake.on_play = nullptr;
    for (int side = 0; side < SIDE_COUNT; ++side) {
      ticket_status.tickets_owed[side] = 0;
      ticket_status.ticket_error[side] = 0;
    }
  }

  static void at(std::int64_t ms) {
    game_clock.now_ms = BEGUN_MS + ms;
    win_show_step();
  }
  // Runs on until the side's show is over: milliseconds since the test began, -1 if never.
  static std::int64_t end_of(int side) {
    const std::int64_t last = now_ms() + 60000;
    while (win_show_active(side) && now_ms() < last) at(now_ms() + 1 - BEGUN_MS);
    return win_show_active(side) ? -1 : now_ms() - BEGUN_MS;
  }
};

TEST_F(WinShow, ItRunsWhileItPaysButNoLongerThanItMay) {
  const struct {
    std::int32_t owed, fault_at_start, fault_later, paid_at_ms;
    std::int64_t end_ms;
  } rows[] = {
      {500, 0, 0, 60000, 20000},  // pays all the time
      {500, 1, 1, 60000, 10000},  // can't pay
      {500, 1, 0, 60000, 10000},  // a refill changes nothing
      {500, 0, 1, 60000, 20000},  // nor does a fault that comes later
      {0, 0, 0, 0, 10001},        // nothing to pay
      {500, 0, 0, 9000, 10001},   // paid before the shortest time
      {500, 0, 0, 13000, 13000},  // paid after it
  };
  int ended = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(ended));
    game_clock.now_ms = BEGUN_MS;
    ticket_status.tickets_owed[SIDE_LEFT] = row.owed;
    ticket_status.ticket_error[SIDE_LEFT] = row.fault_at_start;
    ticket_status.ticket_error[SIDE_RIGHT] = 1 - row.fault_at_start;  // means nothing here
    win_show_start(SIDE_LEFT, 500);
    EXPECT_TRUE(win_show_active(SIDE_LEFT));
    EXPECT_FALSE(win_show_active(SIDE_RIGHT));
    ticket_status.ticket_error[SIDE_LEFT] = row.fault_later;
    at(row.paid_at_ms - 1 < row.end_ms ? row.paid_at_ms - 1 : 0);
    if (row.paid_at_ms <= row.end_ms) ticket_status.tickets_owed[SIDE_LEFT] = 0;
    EXPECT_EQ(end_of(SIDE_LEFT), row.end_ms + FADE_MS);
    EXPECT_EQ(jps_fake_count("endjackpotbgm"), ++ended);
    EXPECT_EQ(jps_fake_count("endjackpotcheer"), ended);
    EXPECT_EQ(jps_fake_count("jackpotbgm"), ended);
    EXPECT_EQ(jps_fake_count("jackpotcheer"), ended);
  }
}

TEST_F(WinShow, ASecondJackpotRunsTheWholeTimeAgain) {
  win_show_start(SIDE_RIGHT, 100);
  at(15000);
  win_show_start(SIDE_RIGHT, 200);
  at(20200);
  EXPECT_TRUE(win_show_active(SIDE_RIGHT));
  EXPECT_EQ(end_of(SIDE_RIGHT), 35000 + FADE_MS);
  EXPECT_EQ(jps_fake_count("jackpotbgm"), 2);
  EXPECT_EQ(jps_fake_count("endjackpotbgm"), 1);

  game_clock.now_ms = BEGUN_MS;
  win_show_start(SIDE_RIGHT, 100);
  at(20060);  // in its fade-out
  win_show_start(SIDE_RIGHT, 200);
  EXPECT_EQ(end_of(SIDE_RIGHT), 40060 + FADE_MS);
}

TEST_F(WinShow, TheMusicEndsWithTheLaterOfTwo) {
  win_show_start(SIDE_LEFT, 100);
  at(4000);
  win_show_start(SIDE_RIGHT, 100);
  EXPECT_EQ(end_of(SIDE_LEFT), 20000 + FADE_MS);
  EXPECT_TRUE(win_show_active(SIDE_RIGHT));
  EXPECT_EQ(jps_fake_count("endjackpotbgm") + jps_fake_count("endjackpotcheer"), 0);
  EXPECT_EQ(end_of(SIDE_RIGHT), 24000 + FADE_MS);
  EXPECT_EQ(jps_fake_count("endjackpotbgm"), 1);
  EXPECT_EQ(jps_fake_count("endjackpotcheer"), 1);
}

// The shows' worker and the game thread meet in the middle of each other's work.
TEST_F(WinShow, OneEndsWhileTheOtherBegins_MusicAndBlinkAreTheNewOnes) {
  const auto last_music = [] {
    std::string last;
    for (const std::string& name : jps_fake.played) {
      if (name.ends_with("jackpotbgm")) last = name;
    }
    return last;
  };
  win_show_start(SIDE_RIGHT, 100);
  at(0);
  game_clock.now_ms = BEGUN_MS + 20000 + FADE_MS;
  jps_fake.on_play = [](const std::string& name) {
    if (name == "jackpotbgm") win_show_step();  // which ends the right one
  };
  win_show_start(SIDE_LEFT, 100);
  EXPECT_FALSE(win_show_active(SIDE_RIGHT));
  EXPECT_EQ(last_music(), "jackpotbgm");
  EXPECT_EQ(blink, 1);

  game_clock.now_ms += 20000 + FADE_MS;
  jps_fake.on_play = [](const std::string& name) {
    if (name == "endjackpotbgm") win_show_start(SIDE_RIGHT, 100);
  };
  win_show_step();  // which ends the left one
  EXPECT_FALSE(win_show_active(SIDE_LEFT));
  EXPECT_TRUE(win_show_active(SIDE_RIGHT));
  EXPECT_EQ(last_music(), "jackpotbgm");
  EXPECT_EQ(blink, 1);
}

TEST_F(WinShow, NoFrogIsLaunchedOnItsSideMeanwhile) {
  ASSERT_TRUE(frog_ready(SIDE_LEFT));
  win_show_start(SIDE_LEFT, 100);
  for (const std::int64_t ms : {0, 10000, 20000, 20124}) {
    at(ms);
    EXPECT_FALSE(frog_ready(SIDE_LEFT)) << ms;
    EXPECT_TRUE(frog_ready(SIDE_RIGHT)) << ms;
  }
  at(20126);
  EXPECT_TRUE(frog_ready(SIDE_LEFT));
}

TEST_F(WinShow, ItSpeaksWhileItPaysButNotAtItsEnd) {
  tick_timers.next_vox_ms = 0;
  win_show_start(SIDE_LEFT, 500);
  EXPECT_EQ(jps_fake_count("voxwin"), 1);
  for (std::int64_t ms = 0; ms < 5000; ++ms) at(ms);
  EXPECT_EQ(jps_fake_count("voxtickets"), 0);
  for (std::int64_t ms = 5000; ms < 20000; ++ms) at(ms);
  const int spoken = jps_fake_count("voxtickets");
  EXPECT_GE(spoken, 1);
  EXPECT_LE(spoken, 3);
  prefs[PREF_TICKET_USE].int_value = 0;
  win_show_reset();
  win_show_start(SIDE_LEFT, 0);
  for (std::int64_t ms = 20000; ms < 40000; ++ms) at(ms);
  EXPECT_EQ(jps_fake_count("voxtickets"), spoken) << "there are no tickets to speak of";
}

}  // namespace
