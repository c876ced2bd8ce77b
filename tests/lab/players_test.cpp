// Who presses when, and what they may know.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>

#include "books/audits.h"
#include "frame/game_clock.h"
#include "frame/tick.h"
#include "lab/board.h"
#include "lab/boot.h"
#include "lab/expert.h"
#include "lab/flights.h"
#include "lab/players.h"
#include "lab/run.h"
#include "lab/screen.h"
#include "lab/settings.h"

namespace {

class LabPlayers : public testing::Test {
 protected:
  LabPlayers() { settings_reset(); }

  static Sums& play(PlayerSettings player, std::int64_t frogs = 1000) {
    static const auto sums = std::make_unique<Sums>();
    EXPECT_TRUE(run_play({frogs, 4, player}, 1, *sums, {}));
    return *sums;
  }
  static PlayerSettings settings(const char* kind) {
    PlayerSettings player;
    player.kind = player_find(kind);
    EXPECT_GE(player.kind, 0) << kind;
    return player;
  }
  static double part_past_first_log(const Sums& sums, int side) {
    return 1.0 - static_cast<double>(sums.awards.ended_on[side][5]) /
                     static_cast<double>(sums.awards.frogs[side]);
  }
  // Ticks on which a side's frog was ready and not yet launched, on the average of a frog.
  static double mean_wait_s(PlayerSettings player) {
    boot_begin({11, 200, player});
    AwardsSum awards{};
    std::int64_t ready_ticks = 0;
    while (boot_step(awards)) {
      ready_ticks += station_idle(SIDE_LEFT) && audit_count(AUDIT_CURRENT_CREDITS, SIDE_LEFT) > 0;
    }
    return static_cast<double>(ready_ticks) * TICK_STEP_MS / 1000.0 /
           static_cast<double>(awards.frogs[SIDE_LEFT]);
  }
};

TEST_F(LabPlayers, WaitAsLongAsTheirSettings) {
  EXPECT_LT(mean_wait_s(settings("eager")), 0.1);
  EXPECT_NEAR(mean_wait_s(settings("random")), 1.0, 0.15);
  PlayerSettings slow = settings("random");
  slow.wait_s = 3.0F;
  EXPECT_NEAR(mean_wait_s(slow), 3.0, 0.4);
  PlayerSettings expert = settings("expert");
  expert.patience_s = 2.0F;
  EXPECT_LT(mean_wait_s(expert), 2.1);
}

// The log that the left frog will come down on is in view at the press, the right one's isn't.
TEST_F(LabPlayers, WatcherGainsOnlyOnTheLeft) {
  const Sums random = play(settings("random"));
  const Sums watcher = play(settings("watcher"));
  EXPECT_NEAR(part_past_first_log(random, SIDE_LEFT), 0.65, 0.05);  // 26 of 40 cells
  EXPECT_GT(part_past_first_log(watcher, SIDE_LEFT), 0.85);
  EXPECT_NEAR(part_past_first_log(watcher, SIDE_RIGHT), 0.65, 0.05);
  PlayerSettings clumsy = settings("watcher");
  clumsy.error_ms = 5000.0F;
  EXPECT_LT(part_past_first_log(play(clumsy), SIDE_LEFT), part_past_first_log(watcher, SIDE_LEFT));
}

TEST_F(LabPlayers, ExpertCrossesMoreOften) {
  const std::int64_t eager = sums_jackpots(play(settings("eager")));
  EXPECT_GT(sums_jackpots(play(settings("expert"))), 5 * std::max(eager, std::int64_t{1}));
}

// Lets the lanes come round once before the player's eyes and puts them back.
void show_all_lanes() {
  float scroll[LANE_COUNT];
  for (int lane = 0; lane < LANE_COUNT; ++lane) scroll[lane] = lanes[lane].scroll;
  for (int cell = 0; cell < LANE_CELLS; ++cell) {
    for (Lane& lane : lanes) lane.scroll = static_cast<float>(cell * lane.cell_size);
    screen_look();
  }
  for (int lane = 0; lane < LANE_COUNT; ++lane) lanes[lane].scroll = scroll[lane];
  ASSERT_TRUE(memory_whole());
}

// The first tick from now on of which the expert is sure, -1 for none.
std::int64_t sure_moment(std::int64_t most_ticks) {
  for (std::int64_t in = 0; in <= most_ticks; ++in) {
    if (expert_worth(SIDE_LEFT, in) >= 599.99F) return in;
  }
  return -1;
}

// The river's first speeds hold for 15 seconds. What the expert reckons is what comes, to the tick.
TEST_F(LabPlayers, ExpertCrossesWhenItIsSure) {
  ASSERT_EQ(settings_set("Bonus Value=600"), "");
  int found = 0;
  for (std::uint64_t seed = 1; seed < 1000 && found < 10; ++seed) {
    boot_begin({seed, 1, settings("expert")});
    show_all_lanes();
    board_press(PRESS_C1);
    game_tick(now_ms() + TICK_STEP_MS);
    const std::int64_t in = sure_moment(350);
    if (in < 0) continue;
    ++found;
    for (std::int64_t tick = 0; tick < in; ++tick) game_tick(now_ms() + TICK_STEP_MS);
    board_press(PRESS_P1S);
    for (int tick = 0; tick < 520; ++tick) game_tick(now_ms() + TICK_STEP_MS);
    EXPECT_EQ(audit_count(AUDIT_JACKPOTS, SIDE_LEFT), 1) << "seed " << seed << ", in " << in;
  }
  EXPECT_EQ(found, 10);
}

// What it passes over in its search is never better than what it finds.
TEST_F(LabPlayers, ExpertFindsBestOfAllMoments) {
  constexpr std::int64_t MOST_TICKS = 600;
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    boot_begin({seed, 1, settings("eager")});
    if (seed % 2 == 0) show_all_lanes();
    for (int look = 0; look < 20; ++look) {
      for (int tick = 0; tick < 37; ++tick) game_tick(now_ms() + TICK_STEP_MS);
      screen_look();
      for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
        float best = -1.0F;
        std::int64_t best_in = 0;
        for (std::int64_t in = 0; in <= MOST_TICKS; in += in < 24 ? 1 : 3) {
          const float worth = expert_worth(side, in);
          if (worth <= best) continue;
          best = worth;
          best_in = in;
        }
        Expert expert{};
        expert_reset(expert);
        const bool now = expert_presses(expert, side, MOST_TICKS);
        EXPECT_EQ(now, best_in == 0) << seed << ' ' << look << ' ' << side;
        EXPECT_EQ(expert.planned_in + (now ? 0 : 1), best_in) << seed << ' ' << look << ' ' << side;
      }
    }
  }
}

TEST_F(LabPlayers, SeeOnlyWhatIsOnTheScreen) {
  boot_begin({3, 1, settings("eager")});
  LaneCell cell = CELL_BUG;
  EXPECT_FALSE(screen_shows(5, -1.0F, cell));
  EXPECT_FALSE(screen_shows(5, 1360.0F, cell));
  ASSERT_TRUE(screen_shows(5, 700.0F, cell));
  const int number = static_cast<int>((lanes[5].scroll + 700.0F) / 386.0F) % LANE_CELLS;
  EXPECT_EQ(cell, lane_cells[5][number]);

  EXPECT_FALSE(memory_whole());
  int known = 0;
  for (int n = 0; n < LANE_CELLS; ++n) known += memory_cell(4, n) != CELL_EMPTY;
  EXPECT_LE(known, 4) << "no more than fits on a screen";

  ASSERT_TRUE(screen_shows(11, 340.0F, cell));
  const RingCell at = memory_ring(11, memory_place(11, 340.0F));
  lane_cells[11][at.number] = CELL_BUG;
  EXPECT_TRUE(screen_shows(11, 340.0F, cell) && cell == CELL_BUG);
  lanes[11].eaten |= cell_bit(at.number);
  EXPECT_TRUE(screen_shows(11, 340.0F, cell) && cell == CELL_EMPTY);
}

TEST_F(LabPlayers, SeeMarginsToTheEdgeOfTheWater) {
  boot_begin({3, 1, settings("eager")});
  for (Lane& lane : lanes) lane.scroll = 0.0F;
  screen_reset();  // cells 1 to 3 of lane 4, "030", have been seen whole, and no others
  const float size = 382.0F;
  EXPECT_FLOAT_EQ(memory_footing(4, 2.25F * size, true).margin_px, 0.25F * size);
  EXPECT_FLOAT_EQ(memory_footing(4, 2.75F * size, true).margin_px, 0.25F * size);
  EXPECT_FLOAT_EQ(memory_footing(4, 1.25F * size, true).margin_px, -0.75F * size);
  EXPECT_FLOAT_EQ(memory_footing(4, (40.0F + 2.5F) * size, true).margin_px, 0.5F * size)
      << "the ring comes round";
  EXPECT_FLOAT_EQ(memory_footing(4, (2.5F - 80.0F) * size, true).margin_px, 0.5F * size);
}

}  // namespace
