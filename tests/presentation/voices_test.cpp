// Spoken lines of attract and play: their conditions and intervals.
#include "presentation/voices.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "presentation/volume.h"
#include "tests/fakes/jps_fake.h"
#include "tests/plain_sheets.h"
#include "tests/reset_game.h"

namespace {

constexpr std::int64_t BEGUN_MS = 900000;

// A credit has waited long enough for the line that asks to press the button.
void patient(int side) {
  tick_timers.credit_wait_ms[side] = 5001;
  tick_timers.idle_ms[side] = 5001;
}

class Voices : public testing::Test {
 protected:
  Voices() {
    jps_fake_reset();
    plain_sheets();
    reset_game(BEGUN_MS);
    attract_flag = 0;
  }
};

TEST_F(Voices, EachLineIsSpokenUnderItsCondition) {
  const struct {
    const char* name;  // "": silence
    std::function<void()> set;
  } rows[] = {
      {"", [] {}},
      {"voxchatter", [] { attract_flag = 1; }},
      {"voxpressbutton", [] { patient(0); }},
      {"voxpressbutton", [] { patient(1); }},
      {"voxeatbugs",  // a frog is still in play
       [] {
         tick_timers.credit_wait_ms[1] = 5001;
         tick_timers.idle_ms[1] = 5000;
       }},
      {"voxeatbugs", [] { tick_timers.credit_wait_ms[0] = 3001; }},
      {"", [] { tick_timers.credit_wait_ms[0] = 3000; }},
      {"",
       [] {
         tick_timers.credit_wait_ms[0] = 3001;
         prefs[PREF_TICKET_USE].int_value = 0;
       }},
      {"voxinsertcoins", [] { tick_timers.coin_prompt_until[1] = now_ms() + 1; }},
      {"", [] { tick_timers.coin_prompt_until[1] = now_ms(); }},
      {"",
       [] {
         tick_timers.coin_prompt_until[0] = now_ms() + 1;
         prefs[PREF_CURRENCY_UNIT].int_value = CURRENCY_SWIPES;
       }},
      {"", [] { tick_timers.since_award_ms[1] = 9000; }},
  };
  for (const auto& row : rows) {
    jps_fake_reset();
    reset_game(BEGUN_MS);
    attract_flag = 0;
    row.set();
    voices_step();
    std::string heard;
    for (const std::string& name : jps_fake.played) heard += name;
    EXPECT_EQ(heard, row.name) << (&row - rows);
  }
}

TEST_F(Voices, LinesKeepMinimumIntervals) {
  patient(0);
  const std::int64_t end = BEGUN_MS + 10LL * 60 * 1000;
  std::int64_t last_ms = 0;
  std::int64_t last_press_ms = 0;
  std::int64_t last_eat_ms = 0;
  std::size_t heard = 0;
  while (now_ms() < end) {
    game_clock.now_ms += 17;
    voices_step();
    if (jps_fake.played.size() == heard) continue;
    ASSERT_EQ(jps_fake.played.size(), heard + 1) << "two at once";
    const std::string& name = jps_fake.played[heard++];
    EXPECT_GT(now_ms() - last_ms, 2000);
    last_ms = now_ms();
    std::int64_t& own = name == "voxpressbutton" ? last_press_ms : last_eat_ms;
    EXPECT_GT(now_ms() - own, name == "voxpressbutton" ? 7500 : 12500) << name;
    own = now_ms();
  }
  EXPECT_GT(jps_fake_count("voxpressbutton"), 35);
  EXPECT_LT(jps_fake_count("voxpressbutton"), 80);
  EXPECT_GT(jps_fake_count("voxeatbugs"), 20);
}

TEST_F(Voices, PlayAgainIsSpokenThreeTimesOutOfFour) {
  int moments = 0;
  for (int i = 0; i < 1000; ++i) {
    voices_reset();
    tick_timers.next_vox_ms = 0;
    tick_timers.since_award_ms[0] = 1;
    voices_step();
    moments += tick_timers.next_vox_ms > now_ms() ? 1 : 0;
  }
  EXPECT_EQ(moments, 1000);
  EXPECT_NEAR(jps_fake_count("voxplayagain"), 750, 60);
}

TEST_F(Voices, MutedSoundStillStartsTheInterval) {
  sound_enabled = 0;
  attract_flag = 1;
  voices_step();
  EXPECT_TRUE(jps_fake.played.empty());
  EXPECT_GT(tick_timers.next_vox_ms, now_ms());
}

TEST_F(Voices, ChatterPausesAfterPlay) {
  voices_step();  // in play
  attract_flag = 1;
  game_clock.now_ms += 4900;
  voices_step();
  EXPECT_EQ(jps_fake_count("voxchatter"), 0);
  game_clock.now_ms += 10200;
  voices_step();
  EXPECT_EQ(jps_fake_count("voxchatter"), 1);
}

}  // namespace
