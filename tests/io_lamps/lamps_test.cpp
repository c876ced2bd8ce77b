// Lamps: brightness over time, as the board is told, and what they show in each state of the game.
#include "io/lamps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "io/lamp_effects.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jamma_fake.h"
#include "tests/fakes/jps_fake.h"
#include "tests/plain_sheets.h"
#include "tests/reset_game.h"

namespace {

constexpr int LEFT_START = 5, RIGHT_START = 7, LEFT_PODIUM = 3, RIGHT_PODIUM = 2;
constexpr int MARQUEE[] = {15, 14, 13};  // from the one that is set first

class Lamps : public testing::Test {
 protected:
  Lamps() {
    jamma_fake_reset();
    jps_fake_reset();
    plain_sheets();
    reset_game(1000, 3);
    jamma_lamps_init();
  }

  // The brightness of a channel after each tick, as the board was told.
  std::vector<int> told(int channel, int ticks, bool update = true) {
    std::vector<int> curve;
    for (int i = 0; i < ticks; ++i) {
      jamma_fake_forget_calls();
      if (update) lamps_update();
      jamma_lamps_tick();
      for (std::size_t n = 0; n < jamma_fake.call_count; ++n) {
        const JammaFakeCall& call = jamma_fake.calls[n];
        if (call.command == JAMMA_SET_LAMP)
          seen_[static_cast<int>(call.a)] = static_cast<int>(call.b);
        frames_ += call.command == JAMMA_SET_LAMP ? 1 : 0;
      }
      curve.push_back(seen_[channel]);
    }
    return curve;
  }
  std::vector<int> effect(int ticks) { return told(LEFT_PODIUM, ticks, false); }

  std::map<int, int> seen_;
  int frames_ = 0;
};

int largest(const std::vector<int>& curve) {
  return *std::ranges::max_element(curve);
}

int smallest(const std::vector<int>& curve) {
  return *std::ranges::min_element(curve);
}

TEST_F(Lamps, EffectsFollowTheirCurves) {
  lamp_set(LAMP_LEFT_PODIUM, LAMP_BREATHE, 1000, 0, 320, 0);
  EXPECT_EQ(effect(10), (std::vector<int>{320, 640, 960, 1000, 680, 360, 40, 0, 0, 0}));
  lamp_set(LAMP_LEFT_PODIUM, LAMP_BREATHE, 100, 0, 8, 8);  // nine steps a tick
  EXPECT_EQ(effect(4), (std::vector<int>{72, 60, 0, 0}));
  lamp_set(LAMP_LEFT_PODIUM, LAMP_OFF);
  effect(1);
  lamp_set(LAMP_LEFT_PODIUM, LAMP_BREATHE, 500, 0, 250, 0);
  lamp_set(LAMP_LEFT_PODIUM, LAMP_DELAY, 3);
  EXPECT_EQ(effect(8), (std::vector<int>{0, 0, 0, 250, 500, 250, 0, 0}));
  lamp_set(LAMP_LEFT_PODIUM, LAMP_BLINK, 4095, 2);
  lamp_set(LAMP_LEFT_PODIUM, LAMP_REPEAT, 1);
  EXPECT_EQ(effect(16), (std::vector<int>{4095, 4095, 4095, 4095, 4095, 0, 0, 0, 4095, 4095, 4095,
                                          4095, 4095, 0, 0, 0}));
  lamp_set(LAMP_LEFT_PODIUM, LAMP_FADE, 100, 400, 100);
  EXPECT_EQ(effect(5), (std::vector<int>{200, 300, 400, 400, 400}));
  lamp_set(LAMP_LEFT_PODIUM, LAMP_FADE, 50, 0, -100);
  EXPECT_EQ(effect(2), (std::vector<int>{0, 0}));
}

TEST_F(Lamps, UnknownLampIsIgnored) {
  for (const int number : {7, 8, 255, -1}) {
    const auto lamp = static_cast<Lamp>(number);
    for (std::int32_t operation = LAMP_OFF; operation <= LAMP_DELAY + 1; ++operation) {
      lamp_set(lamp, operation, 4095, 0, 1, 0);
    }
    EXPECT_EQ(lamp_value(lamp), 0);
  }
  effect(3);
  EXPECT_EQ(frames_, 0);
}

TEST_F(Lamps, RepeatingBreathHoldsAnExtraTickAtItsEnds) {
  lamp_set(LAMP_LEFT_PODIUM, LAMP_BREATHE, 600, 0, 300, 0);
  lamp_set(LAMP_LEFT_PODIUM, LAMP_REPEAT, -1);
  EXPECT_EQ(effect(14),
            (std::vector<int>{300, 600, 300, 0, 0, 300, 600, 600, 300, 0, 0, 300, 600, 600}));
}

TEST_F(Lamps, PulseRisesAtOnceAndFallsSlowly) {
  lamp_set(LAMP_LEFT_PODIUM, LAMP_NO_REPEAT);
  lamp_set(LAMP_LEFT_PODIUM, LAMP_BREATHE, 0, 0, 1, 0);  // so that it falls to 0
  effect(2);
  lamp_set(LAMP_LEFT_PODIUM, LAMP_PULSE, 4095);
  const std::vector<int> curve = effect(60);
  EXPECT_GT(curve[0], 4000) << "eleven rises of 767 fill it in the first tick";
  for (std::size_t i = 2; i < 40; ++i) EXPECT_EQ(curve[i - 1] - curve[i], 80) << i;
  EXPECT_EQ(curve.back(), 0);
}

TEST_F(Lamps, MarqueeIsLimitedToHalfBrightness) {
  lamp_set(LAMP_MARQUEE_2, LAMP_ON);
  EXPECT_EQ(largest(told(14, 3, false)), 2048);
  lamp_set(LAMP_MARQUEE_2, LAMP_BREATHE, 4095, 0, 300, 0);
  EXPECT_EQ(largest(told(14, 40, false)), 2048);
}

TEST_F(Lamps, SendsOnlyChangesAndNothingWithoutLink) {
  told(LEFT_START, 2);
  frames_ = 0;
  EXPECT_EQ(told(LEFT_START, 100).back(), 4095);
  const int marquee_only = frames_;
  EXPECT_LE(marquee_only, 300);
  jamma_fake.alive = false;
  frames_ = 0;
  told(LEFT_START, 20);
  EXPECT_EQ(frames_, 0);
  audits[AUDIT_CURRENT_CREDITS].count = 1;
  jamma_fake.alive = true;
  EXPECT_EQ(largest(told(LEFT_START, 30)), 4095) << "sent again with the next change";
}

TEST_F(Lamps, StartLampFollowsIdleCreditAndFlight) {
  EXPECT_EQ(told(LEFT_START, 3).back(), 4095);
  EXPECT_EQ(seen_[LEFT_PODIUM], 4095);
  EXPECT_EQ(seen_[RIGHT_START], 4095);
  audits[AUDIT_CURRENT_CREDITS + 1].count = 1;
  const std::vector<int> blink = told(RIGHT_START, 140);
  int changes = 0;
  for (std::size_t i = 1; i < blink.size(); ++i) changes += blink[i] != blink[i - 1] ? 1 : 0;
  EXPECT_NEAR(changes, 20, 2) << "five ticks lit, nine dark";
  std::vector<int> breath = told(RIGHT_PODIUM, 60);
  EXPECT_EQ(largest(breath), 4095);
  EXPECT_EQ(smallest(breath), 0);
  EXPECT_EQ(seen_[LEFT_START], 4095) << "the other side is not affected";

  ASSERT_TRUE(frog_ready(SIDE_RIGHT));
  frog_launch(SIDE_RIGHT, false);
  ASSERT_FALSE(station_idle(SIDE_RIGHT));
  told(RIGHT_START, 2);
  EXPECT_EQ(seen_[RIGHT_START], 0);
  EXPECT_EQ(seen_[RIGHT_PODIUM], 0);
}

TEST_F(Lamps, FreeplayBlinksStartLampWithoutCredits) {
  prefs[PREF_FREEPLAY].int_value = 1;
  const std::vector<int> blink = told(LEFT_START, 40);
  EXPECT_EQ(smallest(blink), 0);
  EXPECT_EQ(largest(blink), 4095);
}

TEST_F(Lamps, MarqueeBreathesAndFlashesDuringJackpotShow) {
  std::vector<int> slow = told(MARQUEE[0], 3000);
  EXPECT_LE(largest(slow), 1024);
  EXPECT_GT(largest(slow), 1024 - 72) << "the peak may lie between two ticks";
  int steepest = 0;
  for (std::size_t i = 1; i < slow.size(); ++i) {
    steepest = std::max(steepest, slow[i] - slow[i - 1]);
  }
  EXPECT_LE(steepest, 72) << "nine steps of 8";
  win_show_start(SIDE_LEFT, 10);
  const std::vector<int> wild = told(MARQUEE[0], 480);
  int turns = 0;
  for (std::size_t i = 2; i < wild.size(); ++i) {
    turns += (wild[i] - wild[i - 1]) * (wild[i - 1] - wild[i - 2]) < 0 ? 1 : 0;
  }
  EXPECT_GT(turns, 60);
}

TEST_F(Lamps, OperatorModeTurnsLampsOff) {
  audits[AUDIT_CURRENT_CREDITS].count = 2;
  told(LEFT_START, 20);
  game_mode = MODE_OPERATOR;
  told(LEFT_START, 2);
  for (const int channel : {2, 3, 5, 7, 13, 14, 15}) EXPECT_EQ(seen_[channel], 0) << channel;
  frames_ = 0;
  lamp_set(LAMP_LEFT_START, LAMP_ON);  // a test screen
  EXPECT_EQ(told(LEFT_START, 10).back(), 4095) << "it stays on";
  game_mode = MODE_PLAY;
  EXPECT_EQ(smallest(told(LEFT_START, 40)), 0) << "the credit makes it blink again";
}

}  // namespace
