#include "playfield/workers.h"

#include <algorithm>
#include <cstdint>

#include "frame/game_clock.h"
#include "playfield/ticket_dings.h"
#include "tests/fakes/jps_fake.h"
#include "tests/playfield/field.h"

namespace {

class Workers : public Field {
 protected:
  static void work(int ms) {
    game_clock.now_ms += ms;
    workers_step();
  }
};

TEST_F(Workers, EffectsPlayOnceInTheirDuration) {
  fx_splash_start(10, 20, 4);
  fx_spark_start(30, 40);
  EXPECT_EQ(splash_fx[0].frame, 0);
  work(93);
  EXPECT_EQ(splash_fx[0].frame, 2);  // 20 cells in 625 ms
  EXPECT_EQ(spark_fx[0].frame, 14);  // 16 cells in 100 ms
  work(7);
  EXPECT_EQ(spark_fx[0].frame, -1);
  work(524);
  EXPECT_EQ(splash_fx[0].frame, 19);
  work(1);
  EXPECT_EQ(splash_fx[0].frame, -1);
}

TEST_F(Workers, FinishedEffectNeverRestarts) {
  fx_spark_start(30, 40);
  for (const int days : {30, 200, 4000}) {
    game_clock.now_ms = std::int64_t{days} * 24 * 3600 * 1000;
    workers_step();
    EXPECT_EQ(spark_fx[0].frame, -1) << days;
    EXPECT_EQ(spark_fx[1].frame, -1) << days << ", one that never ran";
  }
}

TEST_F(Workers, HeartsFollowTheirRider) {
  gold_riders[3].x = 100;
  gold_riders[3].y = 50;
  fx_heart_start(3);
  EXPECT_EQ(heart_fx[0].x, 160);
  gold_riders[3].x = 90;
  gold_riders[3].y = 51;
  work(500);
  EXPECT_EQ(heart_fx[0].x, 150);
  EXPECT_EQ(heart_fx[0].y, 51);
  EXPECT_EQ(heart_fx[0].frame, 15);
  work(500);
  EXPECT_EQ(heart_fx[0].frame, -1);
}

TEST_F(Workers, FullRingReusesOldestEffect) {
  for (int i = 0; i <= SPLASH_COUNT; ++i) {
    fx_splash_start(i, 0, 1);
    work(1);
  }
  EXPECT_EQ(splash_fx[0].x, SPLASH_COUNT);
  EXPECT_EQ(splash_fx[1].x, 1);
  EXPECT_EQ(splash_fx[0].frame, 0);
  EXPECT_EQ(std::ranges::count_if(splash_fx, [](const Effect& e) { return e.frame >= 0; }),
            SPLASH_COUNT);
}

TEST_F(Workers, KissEndsInWave) {
  GoldRider& rider = gold_riders[2];
  rider.sheet_index = SHEET_KISS;
  rider.scale = 1.5F;
  rider.start = now_ms();
  int kissed_ms = 0;
  while (rider.sheet_index == SHEET_KISS && kissed_ms < 5000) {
    work(TICK_MS);
    kissed_ms += TICK_MS;
    ASSERT_LT(rider.frame, rider.sheet_index == SHEET_KISS ? 42 : 64);
  }
  EXPECT_EQ(kissed_ms, 87 * TICK_MS);  // the first tick past 1476.6 ms
  EXPECT_EQ(rider.frame, 0);
  EXPECT_EQ(rider.scale, 1.0F);
  work(2250 / 2);
  EXPECT_EQ(rider.frame, 32);
}

TEST_F(Workers, SceneryAnimatesAndLilyPadsPulsate) {
  float least = 2.0F;
  float most = 0.0F;
  for (int i = 0; i < 6000; ++i) {
    work(1);
    ASSERT_LT(plants[0].frame, 31);
    const Scenery& pad = far_bank[2];
    least = std::min(least, pad.scale.get());
    most = std::max(most, pad.scale.get());
    ASSERT_EQ(pad.x, static_cast<int>(276.0F - (pad.scale - 1.0F) * 64.0F));
  }
  EXPECT_NEAR(least, 0.9F, 0.001F);
  EXPECT_NEAR(most, 1.1F, 0.001F);

  workers_reset();
  work(2950 / 2);
  EXPECT_EQ(plants[0].frame, 15);
  EXPECT_EQ(signs[1].x, 552);
}

TEST_F(Workers, TicketDingsPlayEightPerSecond) {
  const auto run = [](std::int64_t from_ms, std::int64_t to_ms) {
    for (std::int64_t ms = from_ms; ms < to_ms; ++ms) ticket_dings_step(ms);
  };
  ticket_dings(5, 3);
  run(0, 1);
  EXPECT_EQ(jps_fake_count("ding03"), 1);
  run(1, 125);
  EXPECT_EQ(jps_fake_count("ding03"), 1);
  run(125, 126);
  EXPECT_EQ(jps_fake_count("ding03"), 2);
  run(126, 1000);
  EXPECT_EQ(jps_fake_count("ding03"), 3);

  ticket_dings(1, 0);
  run(1000, 1200);
  EXPECT_EQ(jps_fake_count("ding07"), 0);
}

TEST_F(Workers, OnlyALongerRunOfDingsReplacesTheCurrentOne) {
  const auto run = [](std::int64_t from_ms, std::int64_t to_ms) {
    for (std::int64_t ms = from_ms; ms < to_ms; ++ms) ticket_dings_step(ms);
  };
  ticket_dings(5, 10);
  run(0, 600);  // five of ten are heard
  EXPECT_EQ(jps_fake_count("ding03"), 5);
  ticket_dings(2, 5);
  run(600, 3000);
  EXPECT_EQ(jps_fake_count("ding06"), 0);
  EXPECT_EQ(jps_fake_count("ding03"), 10);

  ticket_dings(5, 10);
  run(3000, 3600);
  ticket_dings(0, 6);  // at least as many as are left
  run(3600, 9000);
  EXPECT_EQ(jps_fake_count("ding03"), 15);
  EXPECT_EQ(jps_fake_count("ding08"), 5);  // the interrupted interval counts as the first
  ticket_dings(4, 1);
  run(9000, 9200);
  EXPECT_EQ(jps_fake_count("ding04"), 1);
}

}  // namespace
