#include <cstdint>
#include <initializer_list>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "playfield/frog_flight.h"
#include "playfield/frog_queue.h"
#include "tests/fakes/jps_fake.h"
#include "tests/playfield/field.h"

namespace {

class Flight : public Field {
 protected:
  static void solid_river() {
    for (int lane = 1; lane < LANE_MIDDLE_BANK; ++lane) fill_lane(lane, CELL_PLAIN);
  }
  static Frog& launch(int side, bool demo = false) {
    frog_enqueue(side);
    Frog* frog = frog_queues[side].places[0];
    frog_launch(side, demo);
    return *frog;
  }
};

TEST_F(Flight, CrossingTakesTwelveHopsAndElevenRests) {
  clear_field();
  solid_river();
  const Frog& frog = launch(SIDE_LEFT);
  const std::int64_t start = now_ms();
  std::int32_t lane = LANE_NEAR_BANK;
  while (frog.state != FROG_WINNING && now_ms() < start + 20000) {
    tick();
    ASSERT_LE(frog.lane, lane);
    ASSERT_GE(frog.lane, lane - 1);
    if (frog.state == FROG_RESTING) {
      ASSERT_EQ(frog.y, lane_y[frog.lane]);
    }
    ASSERT_LT(frog.frame, 15);
    lane = frog.lane;
  }
  // Each takes 0.35 s, which is 21 ticks of 17 ms.
  EXPECT_EQ(now_ms() - start, 23 * 21 * TICK_MS);
  EXPECT_EQ(frog.lane, LANE_FAR_BANK);
  EXPECT_EQ(frog.x, 212.0F);
  EXPECT_EQ(frog.y, -202);
  EXPECT_EQ(jps_fake_count("jump"), 12);
  for (const char* note : {"log03", "log04", "log05", "log06", "log07"}) {
    EXPECT_EQ(jps_fake_count(note), 1) << note;
  }

  const std::int64_t landed = now_ms();
  while (frog.state == FROG_WINNING && now_ms() < landed + 20000) tick();
  EXPECT_EQ(frog.state, FROG_FREE);
  EXPECT_NEAR(static_cast<double>(now_ms() - landed), 4000.0, 3 * TICK_MS);
  EXPECT_EQ(frog.flags, 0U);
}

TEST_F(Flight, HopMovesLinearlyAndEndsAfter350ms) {
  clear_field();
  Frog& frog = frog_on(SIDE_LEFT, 9, FROG_HOPPING);
  stations_tick(175);
  EXPECT_EQ(frog.y, 296 - 28);
  EXPECT_EQ(frog.frame, 7);
  stations_tick(175);  // exactly 0.35 s isn't over yet
  EXPECT_EQ(frog.state, FROG_HOPPING);
  stations_tick(1);
  EXPECT_EQ(frog.state, FROG_RESTING);
  EXPECT_EQ(frog.lane, 8);
  EXPECT_EQ(frog.frame, 0);
}

TEST_F(Flight, BugsAreEatenWhileHoppingButNotWhileLaunching) {
  clear_field();
  fill_lane(11, CELL_BUG);
  fill_lane(10, CELL_BUG);
  for (const int lane : {10, 11}) lanes[lane].scroll = 40.0F;  // the frog's middle at 380
  const Frog& frog = launch(SIDE_LEFT);
  for (int i = 0; frog.state == FROG_LAUNCHING; ++i) {
    ASSERT_LT(i, MANY_TICKS);
    EXPECT_EQ(frog.base_tickets, 0);
    stations_tick();
  }
  EXPECT_EQ(frog.base_tickets, 0);
  stations_tick();
  EXPECT_EQ(frog.base_tickets, 1);
  EXPECT_TRUE(bug_is_eaten(lanes[11], 380 / 140));
  for (int i = 0; i < MANY_TICKS && frog.state == FROG_RESTING; ++i) stations_tick();
  ASSERT_EQ(frog.state, FROG_HOPPING);
  EXPECT_EQ(frog.base_tickets, 1);
  stations_tick();
  EXPECT_EQ(frog.lane, 11);
  EXPECT_EQ(frog.base_tickets, 2) << "also from the lane it hops to";
  EXPECT_TRUE(bug_is_eaten(lanes[10], 380 / 148));
  EXPECT_EQ(audit_count(AUDIT_BUGS, SIDE_LEFT), 2);
}

TEST_F(Flight, FrogOnBorderOfTwoCellsEatsBothBugs) {
  clear_field();
  fill_lane(11, CELL_BUG);
  lanes[11].scroll = 420.0F - 340.0F;
  const Frog& frog = frog_on(SIDE_LEFT, 11);
  stations_tick();
  EXPECT_EQ(frog.base_tickets, 2);
  stations_tick();
  EXPECT_EQ(frog.base_tickets, 2);
}

TEST_F(Flight, FrogDriftsWithItsLaneWhileRestingAndHopping) {
  clear_field();
  solid_river();
  Frog& frog = frog_on(SIDE_RIGHT, 3);
  frog.x = 892.0F;
  tick();
  const float place = lanes[3].scroll + frog.x;
  for (int i = 0; frog.state == FROG_RESTING; ++i) {
    ASSERT_LT(i, MANY_TICKS);
    tick();
    ASSERT_NEAR(lanes[3].scroll + frog.x, place, 0.01F);
  }
  fill_lane(3, CELL_EMPTY);
  for (int i = 0; frog.state == FROG_HOPPING; ++i) {
    ASSERT_LT(i, MANY_TICKS);
    ASSERT_NEAR(lanes[3].scroll + frog.x, place, 0.01F);
    tick();
  }
  EXPECT_EQ(frog.lane, 2);
  frog.state = FROG_RESTING;
  frog.lane = LANE_MIDDLE_BANK;
  const float x = frog.x;
  tick();
  EXPECT_EQ(frog.x, x);
}

TEST_F(Flight, LandingInWaterSinksFrog) {
  clear_field();
  fill_lane(5, CELL_EMPTY);
  Frog& frog = frog_on(SIDE_LEFT, 6, FROG_HOPPING);
  frog.base_tickets = 6;
  frog.total_tickets = 6;
  frog.award_kind = AWARD_BUG;
  stations_tick(351);
  EXPECT_EQ(frog.state, FROG_RESTING);
  EXPECT_TRUE(frog.flags & FROG_LEAD_CUE);
  const std::int64_t landed = frog.state_time;
  stations_tick();
  EXPECT_EQ(frog.state, FROG_SINKING);
  EXPECT_EQ(frog.flags.get(), FROG_HIDDEN) << "no note follows";
  EXPECT_EQ(jps_fake_count("log03"), 0);
  EXPECT_EQ(frog.state_time, landed);
  EXPECT_EQ(frog.sink_ms, 3000);
  EXPECT_EQ(splash_fx[0].x, 212 - 128);
  EXPECT_EQ(splash_fx[0].y, lane_y[5]);
  EXPECT_EQ(splash_fx[0].lane, 5);
  EXPECT_EQ(splash_fx[0].frame, 0);
  EXPECT_EQ(jps_fake_count("splash"), 1);
  EXPECT_TRUE(station_idle(SIDE_LEFT)) << "a sinking frog does not block the next one";

  while (now_ms() + TICK_MS <= landed + 3000) {
    stations_tick();
    ASSERT_EQ(frog.state, FROG_SINKING);
  }
  EXPECT_LT(frog.alpha, 20);
  stations_tick();
  EXPECT_EQ(frog.state, FROG_FREE);
  EXPECT_EQ(frog.sink_ms, 0);
}

TEST_F(Flight, SinkingFadesOutFrogsInNeighbouringLanesOfItsSide) {
  clear_field();
  for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
    for (const int lane : {1, 3, 4, 5}) {
      Frog& sinking = stations[side].frogs[10 + lane];
      sinking.state = FROG_SINKING;
      sinking.lane = lane;
      sinking.sink_ms = 9000;
      sinking.state_time = now_ms();
    }
  }
  fill_lane(4, CELL_EMPTY);
  const Frog& frog = frog_on(SIDE_LEFT, 4);
  stations_tick();
  EXPECT_EQ(frog.state, FROG_SINKING);
  const Frog* left = stations[SIDE_LEFT].frogs;
  EXPECT_EQ(left[11].state, FROG_SINKING);
  for (const int lane : {3, 4, 5}) {
    EXPECT_EQ(left[10 + lane].state, FROG_FADING) << lane;
    EXPECT_EQ(stations[SIDE_RIGHT].frogs[10 + lane].state, FROG_SINKING) << lane;
  }
  EXPECT_FALSE(station_idle(SIDE_LEFT)) << "a fading frog still blocks the next one";
  EXPECT_EQ(station_live_frogs(SIDE_LEFT), 3);
  stations_tick(601);
  EXPECT_TRUE(station_idle(SIDE_LEFT));
}

TEST_F(Flight, GoldPaysOncePerLanding) {
  clear_field();
  fill_lane(3, CELL_TIER1);
  Frog& frog = frog_on(SIDE_LEFT, 3);
  for (int i = 0; i < MANY_TICKS && frog.state == FROG_RESTING; ++i) stations_tick();
  ASSERT_EQ(frog.state, FROG_HOPPING);
  EXPECT_EQ(audit_count(AUDIT_BONUSES, SIDE_LEFT), 1);
  EXPECT_EQ(jps_fake_count("voxsmooch"), 1);
  EXPECT_FALSE(frog.flags & FROG_LANDED);
  EXPECT_EQ(frog.base_tickets, 25);
}

TEST_F(Flight, ButterflyIsCaughtWithinItsBox) {
  struct {
    int dx, dy;
    bool caught;
  } const cases[] = {{0, 0, true},     {96, 40, true}, {97, 40, false}, {-96, 40, true},
                     {-97, 40, false}, {0, -1, false}, {0, 80, true},   {0, 81, false}};
  clear_field();
  for (const auto& at : cases) {
    SCOPED_TRACE(testing::Message() << at.dx << ' ' << at.dy);
    Frog& frog = frog_on(SIDE_LEFT, 7, FROG_HOPPING);
    frog.butterfly_tickets = 0;
    butterfly.state = BUTTERFLY_FLYING;
    butterfly.x = frog.x - static_cast<float>(at.dx);
    butterfly.y = frog.y - at.dy;
    stations_tick(0);
    EXPECT_EQ(butterfly.state == BUTTERFLY_CAUGHT, at.caught);
    EXPECT_EQ(frog.butterfly_tickets > 0, at.caught);
  }
}

TEST_F(Flight, LeftFrogTakesButterflyThatBothReach) {
  clear_field();
  const Frog& left = frog_on(SIDE_LEFT, 7, FROG_HOPPING);
  const Frog& right = frog_on(SIDE_RIGHT, 7, FROG_HOPPING);
  butterfly.state = BUTTERFLY_FLYING;
  butterfly.x = left.x.get();
  butterfly.y = left.y.get();
  stations_tick(0);
  EXPECT_GT(left.butterfly_tickets, 0);
  EXPECT_EQ(right.butterfly_tickets, 0);
}

TEST_F(Flight, FrogBehindTheLeaderPlaysNoNote) {
  clear_field();
  solid_river();
  const Frog& leader = frog_on(SIDE_RIGHT, 4);
  const Frog& frog = frog_on(SIDE_LEFT, 6, FROG_HOPPING);
  stations_tick(340);
  EXPECT_EQ(leader.lane, 4);
  stations_tick(11);
  EXPECT_EQ(frog.lane, 5);
  stations_tick();
  EXPECT_EQ(jps_fake_count("log03"), 0);
}

TEST_F(Flight, WaitingFrogIsShownOnlyWithCredit) {
  clear_field();
  frog_enqueue(SIDE_LEFT);
  const Frog& frog = *frog_queues[SIDE_LEFT].places[0].get();
  stations_tick();
  EXPECT_TRUE(frog.flags & FROG_HIDDEN);
  EXPECT_TRUE(frog.flags & FROG_IDLE_ANIM);

  stations[SIDE_LEFT].frogs[5].state = FROG_RESTING;  // one in flight stops the update
  audit_add(AUDIT_CURRENT_CREDITS, SIDE_LEFT, 1);
  stations_tick();
  EXPECT_TRUE(frog.flags & FROG_HIDDEN);
  stations[SIDE_LEFT].frogs[5].state = FROG_FREE;
  stations_tick();
  EXPECT_FALSE(frog.flags & FROG_HIDDEN);
  EXPECT_EQ(frog.ring_time, now_ms());
}

TEST_F(Flight, DemoLabelPulsesUntilFirstTroughAfterSinking) {
  clear_field();
  solid_river();
  Frog& frog = frog_on(SIDE_LEFT, 12, FROG_LAUNCHING);
  frog.flags = FROG_DEMO;
  const std::int64_t launched = now_ms();
  stations_tick(1000);
  EXPECT_EQ(frog.pulse, 255);
  stations_tick(1000);
  EXPECT_EQ(frog.pulse, 0);
  stations_tick(1000);
  EXPECT_EQ(frog.pulse, 255);
  frog.state = FROG_SINKING;
  frog.state_time = now_ms();
  frog.sink_ms = 5000;
  while (now_ms() < launched + 3800) stations_tick();
  EXPECT_GT(frog.pulse, 4);
  while (now_ms() < launched + 4100) stations_tick();
  while (now_ms() < launched + 5000) {
    stations_tick();
    ASSERT_EQ(frog.pulse, 0);
  }
}

}  // namespace
