#include "playfield/frog_queue.h"

#include <cstdint>
#include <initializer_list>

#include "books/audits.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "tests/fakes/jps_fake.h"
#include "tests/playfield/field.h"

namespace {

class Queue : public Field {};

TEST_F(Queue, HoldsFiveFrogsAndMovesUpWhenTheFirstLands) {
  clear_field();
  for (int i = 0; i < 7; ++i) frog_enqueue(SIDE_RIGHT);
  FrogQueue& queue = frog_queues[SIDE_RIGHT];
  ASSERT_EQ(queue.count, 5);
  Frog* const head = queue.places[0];
  Frog* const last = queue.places[4];
  EXPECT_EQ(last->x, 1404.0F);
  EXPECT_EQ(last->queue_pos, 4);

  frog_launch(SIDE_RIGHT, false);
  EXPECT_EQ(queue.count, 4);
  EXPECT_EQ(queue.places[3], last);
  EXPECT_EQ(queue.places[4], nullptr);
  EXPECT_EQ(last->queue_pos, 3);
  EXPECT_EQ(head->state, FROG_LAUNCHING);
  EXPECT_EQ(head->x, 892.0F);
  for (int i = 0; head->state == FROG_LAUNCHING; ++i) {
    ASSERT_LT(i, MANY_TICKS);
    EXPECT_EQ(last->x, 1404.0F);
    stations_tick();
  }
  EXPECT_EQ(last->x, 1276.0F);
  EXPECT_EQ(queue.places[0].get()->x, 892.0F);
}

TEST_F(Queue, LaunchCountsGamesAndRepeatPlays) {
  const auto launch = [](std::int64_t since_award_ms, bool demo) {
    tick_timers.since_award_ms[SIDE_LEFT] = since_award_ms;
    tick_timers.award_done[SIDE_LEFT] = 1;
    frog_enqueue(SIDE_LEFT);
    frog_launch(SIDE_LEFT, demo);
    EXPECT_EQ(tick_timers.award_done[SIDE_LEFT], 0);
  };
  launch(0, false);  // the first play after boot
  EXPECT_EQ(audit_count(AUDIT_REPEAT_PLAYS, SIDE_LEFT), 1);
  launch(14999, false);
  EXPECT_EQ(audit_count(AUDIT_REPEAT_PLAYS, SIDE_LEFT), 2);
  launch(15000, false);
  EXPECT_EQ(audit_count(AUDIT_REPEAT_PLAYS, SIDE_LEFT), 2);
  launch(0, true);
  EXPECT_EQ(audit_count(AUDIT_REPEAT_PLAYS, SIDE_LEFT), 2);
  EXPECT_EQ(audit_count(AUDIT_GAMES_PLAYED, SIDE_LEFT), 3);
  EXPECT_EQ(audit_count(AUDIT_GAMES_SINCE_BOOT, SIDE_LEFT), 3);
  EXPECT_EQ(audit_count(AUDIT_GAMES_PLAYED, SIDE_RIGHT), 0);
  EXPECT_EQ(jps_fake_count("jump"), 3);
}

TEST_F(Queue, ReadinessDependsOnModeShowFreeRecordsAndFlight) {
  EXPECT_TRUE(frog_ready(SIDE_LEFT));
  game_mode = MODE_OPERATOR;
  EXPECT_FALSE(frog_ready(SIDE_LEFT));
  game_mode = MODE_PLAY;
  show_active[SIDE_LEFT] = true;
  EXPECT_FALSE(frog_ready(SIDE_LEFT));
  EXPECT_TRUE(frog_ready(SIDE_RIGHT));
  show_active[SIDE_LEFT] = false;

  Frog& frog = stations[SIDE_LEFT].frogs[0];
  for (const FrogState state : {FROG_LAUNCHING, FROG_HOPPING, FROG_RESTING, FROG_FADING}) {
    frog.state = state;
    frog.flags = 0;
    EXPECT_FALSE(frog_ready(SIDE_LEFT)) << state;
    frog.flags = FROG_DEMO;
    EXPECT_TRUE(frog_ready(SIDE_LEFT)) << state;
  }
  frog.flags = 0;
  for (const FrogState state : {FROG_WAITING, FROG_SINKING, FROG_WINNING}) {
    frog.state = state;
    EXPECT_TRUE(frog_ready(SIDE_LEFT)) << state;
  }
  for (Frog& each : stations[SIDE_LEFT].frogs) each.state = FROG_SINKING;
  EXPECT_FALSE(frog_ready(SIDE_LEFT));
  frog_enqueue(SIDE_LEFT);
  EXPECT_EQ(frog_queues[SIDE_LEFT].count, 0);
  frog_launch(SIDE_LEFT, false);  // no frog, so nothing is counted
  EXPECT_EQ(audit_count(AUDIT_GAMES_PLAYED, SIDE_LEFT), 0);
  frog.state = FROG_FREE;
  frog_launch(SIDE_LEFT, false);  // an empty queue is filled
  EXPECT_EQ(frog.state, FROG_LAUNCHING);
}

TEST_F(Queue, FrogInLastRecordIsUpdatedAfterOthersEnd) {
  clear_field();
  Frog& played = frog_on(SIDE_LEFT, 5);
  drown(played);
  for (int i = 0; played.state != FROG_FREE && i < MANY_TICKS; ++i) stations_tick();
  ASSERT_EQ(played.state, FROG_FREE);

  Frog& last = stations[SIDE_LEFT].frogs[FROGS_PER_STATION - 1];
  last.lane = 4;
  last.y = lane_y[4];
  last.state = FROG_HOPPING;
  last.state_time = now_ms();
  EXPECT_FALSE(station_idle(SIDE_LEFT));
  EXPECT_FALSE(station_river_clear(SIDE_LEFT));
  EXPECT_EQ(station_live_frogs(SIDE_LEFT), 1);
  stations_tick(175);
  EXPECT_EQ(lead_lane, 4);
  EXPECT_EQ(last.y, (lane_y[4] + lane_y[3]) / 2) << "it flies on";
}

TEST_F(Queue, LeadLaneIsThatOfFarthestHoppingOrRestingFrog) {
  lead_lane_update();
  EXPECT_EQ(lead_lane, 12);
  frog_on(SIDE_LEFT, 12, FROG_LAUNCHING);
  lead_lane_update();
  EXPECT_EQ(lead_lane, 12);
  frog_on(SIDE_LEFT, 9, FROG_RESTING);
  frog_on(SIDE_RIGHT, 4, FROG_HOPPING);
  lead_lane_update();
  EXPECT_EQ(lead_lane, 4);
  frog_on(SIDE_RIGHT, 2, FROG_SINKING);
  lead_lane_update();
  EXPECT_EQ(lead_lane, 9);
}

}  // namespace
