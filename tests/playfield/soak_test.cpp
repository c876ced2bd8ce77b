// Simulated hours of both sides in play, with launches at random moments: the books must agree with
// each other and with what the dispensers were told.
#include <atomic>
#include <cstdint>
#include <initializer_list>
#include <thread>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "platform/random.h"
#include "playfield/frog_queue.h"
#include "playfield/paytable.h"
#include "playfield/ticket_dings.h"
#include "playfield/workers.h"
#include "tests/fakes/jps_fake.h"
#include "tests/playfield/field.h"

namespace {

struct Paid {  // what the dispenser of a side was told
  std::int64_t paper, pulses, times;
};

class Soak : public Field {
 protected:
  static void play_hours(double hours) {
    playfield_reset();
    outcomes.clear();
    paid[0] = paid[1] = {};
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) frog_enqueue(side);
    const auto end = now_ms() + static_cast<std::int64_t>(hours * 3600e3);
    while (now_ms() < end) {
      tick();
      draw();
      workers_step();
      for (const int side : {SIDE_LEFT, SIDE_RIGHT}) press_at_random(side);
      take_outcomes();
      if (HasFatalFailure()) return;
    }
    finish_flights();
  }

  // On the average after half a second of readiness; now and then it is a demo frog.
  static void press_at_random(int side) {
    if (!frog_ready(side) || random_unit() > 0.03) return;
    frog_launch(side, random_unit() < 0.05);
    frog_enqueue(side);
  }

  static void finish_flights() {
    for (int i = 0; i < 2000; ++i) tick();
    take_outcomes();
    ASSERT_TRUE(station_idle(SIDE_LEFT) && station_idle(SIDE_RIGHT));
  }

  static void take_outcomes() {
    for (const Outcome& each : outcomes) {
      ASSERT_GE(each.count, 0);
      if (each.what == "add") {
        paid[each.side].paper += each.count;
        ++paid[each.side].times;
      } else if (each.what == "meter") {
        paid[each.side].pulses += each.count;
      }
    }
    outcomes.clear();
    jps_fake_reset();
  }

  static int kinds(int side) {
    return audit_count(AUDIT_BUG_TICKETS, side) + audit_count(AUDIT_BUTTERFLY_TICKETS, side) +
           audit_count(AUDIT_BONUS_TICKETS, side) + audit_count(AUDIT_DOUBLE_BONUS_TICKETS, side) +
           audit_count(AUDIT_JACKPOT_TICKETS, side) + audit_count(AUDIT_FREE_TICKETS, side);
  }

  static void expect_sides_agree(int points_per_ticket) {
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
      SCOPED_TRACE(side);
      std::int64_t frogs = 0;
      std::int64_t tickets = 0;
      for (int n = 0; n < HISTOGRAM_CELLS; ++n) {
        frogs += histogram[side][n];
        tickets += static_cast<std::int64_t>(histogram[side][n]) * n;
      }
      const int games = audit_count(AUDIT_GAMES_PLAYED, side);
      EXPECT_GT(games, 500);
      EXPECT_EQ(frogs, games) << "each frog is paid once";
      EXPECT_EQ(paid[side].times, games);
      EXPECT_EQ(tickets, audit_count(AUDIT_TICKETS, side));
      EXPECT_EQ(paid[side].paper * points_per_ticket, audit_count(AUDIT_TICKETS, side));
      EXPECT_EQ(paid[side].pulses, paid[side].paper);
      EXPECT_GT(audit_count(AUDIT_JACKPOTS, side), 0);
      EXPECT_GT(audit_count(AUDIT_BUTTERFLIES, side), 0);
      EXPECT_GT(audit_count(AUDIT_BONUSES, side) + audit_count(AUDIT_DOUBLE_BONUSES, side), 0);
    }
  }

  static inline Paid paid[SIDE_COUNT];
};

TEST_F(Soak, KindsAddUpToTickets) {
  play_hours(2.0);
  expect_sides_agree(1);
  for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
    EXPECT_EQ(kinds(side), audit_count(AUDIT_TICKETS, side));
    EXPECT_EQ(audit_count(AUDIT_CAPPED_TICKETS, side), 0);
  }
}

TEST_F(Soak, PointsComeOutAsWholeTickets) {
  prefs[PREF_TWO_POINT_TICKETS].int_value = 1;
  prefs[PREF_BONUS_VALUE].int_value = 125;
  play_hours(1.0);
  expect_sides_agree(2);
  for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
    EXPECT_EQ(kinds(side), audit_count(AUDIT_TICKETS, side));
  }
}

TEST_F(Soak, ALowCapCutsTheTotalAndNotTheKinds) {
  prefs[PREF_MAXIMUM_TICKETS].int_value = 10;
  play_hours(1.0);
  expect_sides_agree(1);
  for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
    const int cut = kinds(side) - audit_count(AUDIT_TICKETS, side);
    EXPECT_GT(cut, 0);
    EXPECT_GE(audit_count(AUDIT_CAPPED_TICKETS, side), cut);
    EXPECT_LE(audit_count(AUDIT_TICKETS, side), 10 * audit_count(AUDIT_GAMES_PLAYED, side));
  }
}

TEST_F(Soak, FixedTicketsAreTheSameForAll) {
  prefs[PREF_FIXED_TICKET].int_value = 1;
  prefs[PREF_FIXED_TICKETS_PER_GAME].int_value = 4;
  play_hours(1.0);
  expect_sides_agree(1);
  for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
    EXPECT_EQ(kinds(side), 0);
    EXPECT_EQ(audit_count(AUDIT_TICKETS, side), 4 * audit_count(AUDIT_GAMES_PLAYED, side));
    EXPECT_EQ(audit_count(AUDIT_FIXED_TICKETS, side), audit_count(AUDIT_TICKETS, side));
  }
}

// Worth running under ThreadSanitizer: the tick, the small workers and a reader that also gives the
// slots and riders their places, as the drawing does.
TEST_F(Soak, ThreeThreadsShareTheField) {
  std::atomic<bool> done = false;
  std::thread workers([&done] {
    while (!done) {
      workers_step();
      ticket_dings_step(now_ms());
      std::this_thread::yield();
    }
  });
  std::thread drawing([&done] {
    float sum = 0.0F;
    while (!done) {
      draw();
      int next = 0;
      for (int cell = 0; cell < LANE_CELLS; ++cell) {
        if (lane_cells[3][cell] != CELL_TIER1) continue;
        GoldRider& rider = gold_riders[next++];
        rider.x = lanes[3].slots[cell].x + 16;
        rider.lane = 3;
        rider.slot = cell;
        sum += rider.scale + static_cast<float>(rider.frame);
      }
      for (const Frog& frog : stations[SIDE_LEFT].frogs) sum += frog.x + frog.scale;
      for (const HeartFx& heart : heart_fx) sum += static_cast<float>(heart.frame + heart.x);
      sum += butterfly.x + static_cast<float>(butterfly.frame) + far_bank[2].scale;
      std::this_thread::yield();
    }
    EXPECT_NE(sum, 0.0F);
  });
  for (const int side : {SIDE_LEFT, SIDE_RIGHT}) frog_enqueue(side);
  for (int i = 0; i < 60000; ++i) {
    tick();
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) press_at_random(side);
  }
  done = true;
  workers.join();
  drawing.join();
  EXPECT_GT(audit_count(AUDIT_GAMES_PLAYED, SIDE_LEFT), 50);
}

}  // namespace
