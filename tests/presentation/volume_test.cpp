// Volume in attract and in play, the fade between the two, and the change of music.
#include "presentation/volume.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <utility>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick_timers.h"
#include "platform/files.h"
#include "presentation/win_show.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jps_fake.h"
#include "tests/reset_game.h"
#include "tests/temp_folder.h"

namespace {

constexpr std::int64_t BEGUN_MS = 1000000;

class Volume : public testing::Test {
 protected:
  Volume() {
    files_use_roots(drive.path(), drive.path());
    jps_fake_reset();
    reset_game(BEGUN_MS);
    attract_begin();
    quiet(20000, 20000);
  }
  ~Volume() override { win_show_reset(); }

  static void quiet(std::int64_t idle_ms, std::int64_t no_money_ms) {
    tick_timers.idle_both_ms = idle_ms;
    tick_timers.no_money_ms = no_money_ms;
  }
  static void step(std::int64_t ms = 17) {
    game_clock.now_ms += ms;
    attract_volume_step();
  }
  // Play, with the fade up over.
  static void play() {
    quiet(0, 0);
    step();
    step(1001);
    ASSERT_EQ(attract_flag, 0);
  }
  static void expect_level(std::int32_t level, std::int32_t value) {
    EXPECT_EQ(volume_step, level);
    EXPECT_EQ(volume_value, value);
    EXPECT_EQ(jps_fake.master_volume, value);
  }

  TempFolder drive;
};

TEST_F(Volume, AttractNeeds15IdleSecondsWithoutMoneyOrShow) {
  const struct {
    std::int32_t attract_before;
    std::int64_t idle_ms, no_money_ms;
    bool show;
    std::int32_t attract;
  } rows[] = {
      {0, 15001, 15001, false, 1}, {0, 15000, 15001, false, 0}, {0, 15001, 15000, false, 0},
      {0, 99999, 15000, false, 0}, {0, 15000, 99999, false, 0}, {0, 15001, 15001, true, 0},
      {1, 1, 1, false, 1},         {1, 0, 20000, false, 0},     {1, 20000, 0, false, 0},
      {1, 20000, 20000, true, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    win_show_reset();
    play();
    if (row.attract_before != 0) quiet(20000, 20000);
    step();
    ASSERT_EQ(attract_flag, row.attract_before);
    if (row.show) win_show_start(SIDE_RIGHT, 10);
    quiet(row.idle_ms, row.no_money_ms);
    step();
    EXPECT_EQ(attract_flag, row.attract);
    if (row.attract <= row.attract_before) continue;
    for (const auto& next : tick_timers.attract_demo_next) {
      EXPECT_GE(next, now_ms() + 7500);
      EXPECT_LE(next, now_ms() + 15000);
    }
  }
}

TEST_F(Volume, FadesDownInFourSecondsAndUpInOne) {
  play();
  expect_level(16, 227);
  quiet(20000, 20000);
  step();
  const std::int64_t down = now_ms();
  std::int32_t last = volume_value;
  for (const auto& [after_ms, value] : {std::pair{0, 227}, {1000, 210}, {2000, 194}, {4000, 161}}) {
    while (now_ms() < down + after_ms) {
      step(10);
      ASSERT_LE(volume_value, last);
      last = volume_value;
    }
    expect_level(16, value);
  }
  step(1);
  expect_level(8, 161);
  EXPECT_EQ(pref_int(PREF_ATTRACT_VOLUME), 8);

  quiet(0, 0);
  step();
  const std::int64_t up = now_ms();
  for (const auto& [after_ms, value] : {std::pair{0, 161}, {500, 194}, {1000, 227}}) {
    while (now_ms() < up + after_ms) {
      step(10);
      ASSERT_GE(volume_value, last);
      last = volume_value;
    }
    expect_level(8, value);
  }
  step(1);
  expect_level(16, 227);
  EXPECT_EQ(pref_int(PREF_VOLUME), 16);
  EXPECT_EQ(tick_timers.volume_overlay_until, 0) << "shown after a button only";
}

TEST_F(Volume, LouderAttractLevelIsSetAtEndOfFade) {
  prefs[PREF_VOLUME].int_value = 8;
  prefs[PREF_ATTRACT_VOLUME].int_value = 16;
  attract_begin();
  play();
  expect_level(8, 161);
  quiet(20000, 20000);
  step();
  for (int i = 0; i < 4; ++i) {
    step(1000);
    expect_level(8, 161);
  }
  step(1);
  expect_level(16, 227);
  quiet(0, 0);
  step();
  step(1000);
  expect_level(16, 227);
  step(1);
  expect_level(8, 161);
}

TEST_F(Volume, ReversedFadeContinuesFromCurrentVolume) {
  play();
  quiet(20000, 20000);
  step();
  step(2000);
  ASSERT_EQ(volume_value, 194);
  quiet(0, 0);
  step();
  EXPECT_EQ(volume_value, 194);
  step(400);
  EXPECT_EQ(volume_value, 194);
  step(350);
  EXPECT_EQ(volume_value, 210);
  step(251);
  expect_level(16, 227);
  volume_button(1);
  expect_level(17, 234);
}

TEST_F(Volume, ButtonsChangeTheCurrentLevelExceptDuringFade) {
  step(4001);
  volume_button(1);
  expect_level(9, 173);
  EXPECT_EQ(pref_int(PREF_ATTRACT_VOLUME), 9);
  EXPECT_EQ(pref_int(PREF_VOLUME), 16);
  EXPECT_EQ(tick_timers.volume_overlay_until, now_ms() + 1000);

  quiet(0, 0);
  step();
  step(500);
  const std::int32_t value = volume_value;
  const std::int64_t shown = tick_timers.volume_overlay_until;
  volume_button(1);
  expect_level(9, value);
  EXPECT_EQ(tick_timers.volume_overlay_until, shown);

  step(501);
  volume_button(-1);
  expect_level(15, 220);
  EXPECT_EQ(pref_int(PREF_VOLUME), 15);
  EXPECT_EQ(pref_int(PREF_ATTRACT_VOLUME), 9);
  EXPECT_EQ(tick_timers.volume_overlay_until, now_ms() + 1000);
  EXPECT_TRUE(drive.has("prefs"));
  for (int i = 0; i < 8; ++i) volume_button(1);
  expect_level(20, 255);
  for (int i = 0; i < 25; ++i) volume_button(-1);
  expect_level(0, 0);
}

TEST_F(Volume, MusicAdvancesInAttractOnly) {
  EXPECT_EQ(jps_fake_count("bgm"), 1);
  EXPECT_EQ(attract_flag, 1);
  step(180000);
  EXPECT_EQ(jps_fake_count("nextbgm"), 0);
  step(1);
  EXPECT_EQ(jps_fake_count("nextbgm"), 1);
  quiet(0, 0);
  step(180001);  // due during play: again in 30 s
  EXPECT_EQ(jps_fake_count("nextbgm"), 1);
  EXPECT_EQ(tick_timers.next_music_check_ms, now_ms() + 30000);
  step(30000);
  quiet(20000, 20000);
  step(0);
  EXPECT_EQ(jps_fake_count("nextbgm"), 1);
  step(1);
  EXPECT_EQ(jps_fake_count("nextbgm"), 2);
  quiet(15000, 20000);  // still attract, but a frog has just been in play
  step(180001);
  EXPECT_EQ(attract_flag, 1);
  EXPECT_EQ(jps_fake_count("nextbgm"), 2);
}

TEST_F(Volume, StoredLevelIsClampedToScale) {
  const struct {
    std::int32_t stored, level, value;
  } rows[] = {{INT_MIN, 0, 0}, {-1, 0, 0}, {99, 20, 255}, {INT_MAX, 20, 255}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.stored);
    prefs[PREF_VOLUME].int_value = row.stored;
    prefs[PREF_ATTRACT_VOLUME].int_value = row.stored;
    play();
    expect_level(row.level, row.value);
    EXPECT_EQ(pref_int(PREF_VOLUME), row.level) << "also in the table";
    quiet(20000, 20000);
    step();
    step(2000);
    EXPECT_EQ(volume_value, row.value);
    step(2001);
    expect_level(row.level, row.value);
  }
}

}  // namespace
