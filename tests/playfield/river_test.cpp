#include "playfield/river.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "frame/game_clock.h"
#include "tests/playfield/field.h"

namespace {

class River : public Field {
 protected:
  static void speed_steps(std::int64_t ms) {
    for (std::int64_t end = now_ms() + ms; now_ms() < end;) {
      game_clock.now_ms += TICK_MS;
      river_speed_step();
    }
  }
  // Scrolls the lane until the cell's x is in that range.
  static void scroll_to(int lane, int cell, int x_from, int x_to) {
    LaneSlot& slot = lanes[lane].slots[cell];
    for (int i = 0; i < 20000; ++i) {
      lane_update(lane);
      slot.x = -5000;
      gfx_strip_draw(&lanes[lane]);
      if (slot.x >= x_from && slot.x <= x_to) return;
    }
    ADD_FAILURE() << "never there";
  }
};

TEST_F(River, SpeedsVaryGraduallyWithinTheirRanges) {
  struct {
    float least, most;
  } const range[] = {
      {2.82F, 3.82F}, {-7.55F, -5.55F}, {4.73F, 6.23F}, {-5.04F, -4.04F}, {2.05F, 2.55F}};
  float before[5] = {3.32F, -6.55F, 5.48F, -4.54F, 2.3F};
  float seen_least[5] = {99, 99, 99, 99, 99};
  float seen_most[5] = {-99, -99, -99, -99, -99};
  for (int i = 0; i < 6 * 3600 * 1000 / TICK_MS; ++i) {
    game_clock.now_ms += TICK_MS;
    river_speed_step();
    for (int lane = 0; lane < 5; ++lane) {
      const float speed = lanes[1 + lane].speed;
      ASSERT_GE(speed, range[lane].least - 1e-5F) << lane;
      ASSERT_LE(speed, range[lane].most + 1e-5F) << lane;
      ASSERT_NEAR(speed, before[lane], 0.005F) << "speeds never jump";
      before[lane] = speed;
      seen_least[lane] = std::min(seen_least[lane], speed);
      seen_most[lane] = std::max(seen_most[lane], speed);
    }
  }
  for (int lane = 0; lane < 5; ++lane) {
    const float width = range[lane].most - range[lane].least;
    EXPECT_GT(seen_most[lane] - seen_least[lane], 0.9F * width);
  }
}

TEST_F(River, SpeedsHoldWhileAFrogIsInTheRiver) {
  speed_steps(100000);
  Frog& frog = frog_on(SIDE_RIGHT, 3);
  speed_steps(31000);  // until the current change has ended
  const float held = lanes[2].speed;
  for (int i = 0; i < 60; ++i) {
    speed_steps(1000);
    ASSERT_EQ(lanes[2].speed, held);
  }
  frog.lane = LANE_MIDDLE_BANK;  // out of the river: a new goal within a second
  speed_steps(3000);
  const float moving = lanes[2].speed;
  EXPECT_NE(moving, held);
  frog.lane = 3;
  frog.flags = FROG_DEMO;  // holds nothing
  speed_steps(31000);
  const float first = lanes[2].speed;
  speed_steps(31000);
  EXPECT_NE(lanes[2].speed, first);
}

TEST_F(River, LateTickStartsNextSpeedChangeAtOnce) {
  speed_steps(20000);
  game_clock.now_ms += 3600000;
  river_speed_step();
  const float at_goal = lanes[1].speed;
  speed_steps(200);
  EXPECT_NE(lanes[1].speed, at_goal);
}

TEST_F(River, EatenBugsReturnLeftOfScreenMiddle) {
  for (const int lane : {7, 9}) {  // one runs right, one left
    SCOPED_TRACE(lane);
    const float width = static_cast<float>(lanes[lane].sprite_w);
    fill_lane(lane, CELL_BUG);
    lane_cells[lane][5] = CELL_BUG;
    const bool runs_left = lanes[lane].speed > 0.0F;
    scroll_to(lane, 5, runs_left ? 900 : 300, runs_left ? 1000 : 400);
    lanes[lane].eaten |= cell_bit(5);
    LaneSlot& slot = lanes[lane].slots[5];
    lane_update(lane);
    EXPECT_EQ(slot.active, 0);
    int ticks = 0;
    while (bug_is_eaten(lanes[lane], 5) && ++ticks < 2000) {
      gfx_strip_draw(&lanes[lane]);
      lane_update(lane);
    }
    EXPECT_EQ(slot.active, 1);
    EXPECT_GT(static_cast<float>(slot.x), 680.0F - 1.5F * width);
    EXPECT_LE(static_cast<float>(slot.x), 680.0F - 0.5F * width);
  }
}

TEST_F(River, EatenBugsReturnOffScreen) {
  for (const int x : {-96, 1360}) {
    lanes[7].slots[0].x = x;
    lanes[7].eaten |= cell_bit(0);
    lane_update(7);
    EXPECT_FALSE(bug_is_eaten(lanes[7], 0)) << x;
  }
  for (const int x : {-95, 1359, 536, 633}) {
    lanes[7].slots[0].x = x;
    lanes[7].eaten |= cell_bit(0);
    lane_update(7);
    EXPECT_TRUE(bug_is_eaten(lanes[7], 0)) << x;
  }
}

TEST_F(River, ScrollWrapsAndFramesStayWithinTheirSheets) {
  std::set<int> wrapped;
  for (int i = 0; i < 30000; ++i) {
    game_clock.now_ms += TICK_MS;
    for (int lane = 0; lane < LANE_COUNT; ++lane) {
      const float before = lanes[lane].scroll;
      lane_update(lane);
      const float after = lanes[lane].scroll;
      if (lanes[lane].speed == 0.0F) continue;
      ASSERT_GE(after, 0.0F);
      ASSERT_LE(after, 40.0F * static_cast<float>(lanes[lane].cell_size));
      if (std::abs(after - before) > 1000.0F) wrapped.insert(lane);
      for (int cell = 0; cell < LANE_CELLS; ++cell) {
        const LaneSlot& slot = lanes[lane].slots[cell];
        if (slot.kind != SLOT_EMPTY) {
          ASSERT_LT(slot.frame, slot.sheet.get()->frames);
        }
      }
    }
  }
  EXPECT_EQ(wrapped, (std::set<int>{1, 2, 3, 4, 5, 7, 8, 9, 10, 11}));
}

// Where the objects lie decides how hard a jump is. Runs: cells that carry a frog, then water, and
// so on from cell 0.
TEST_F(River, RiverCellsHaveTheirFixedLayout) {
  const struct {
    int lane;
    std::vector<int> runs;
    std::set<int> gold;
  } rows[] = {
      {1, {1, 10, 1, 5, 1, 4, 1, 7, 1, 6, 1, 2}, {}},
      {2,
       {1, 3, 2, 3, 1, 2, 1, 4, 1, 4, 1, 3, 1, 1, 1, 3, 1, 1, 1, 1, 1, 3},
       {0, 4, 12, 17, 26, 32}},
      {3,
       {1, 1, 1, 1, 1, 4, 1, 1, 2, 3, 1, 1, 1, 2, 1, 1, 2, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 1, 1, 2},
       {0, 9, 16, 21, 26, 32}},
      {4, {1, 1, 1, 1, 2, 2, 1, 2, 4, 1, 2, 1, 3, 1, 4, 1, 1, 1, 2, 1, 1, 2, 1, 1, 1, 1}, {}},
      {5, {2, 1, 2, 1, 1, 2, 3, 1, 1, 1, 3, 1, 3, 3, 4, 1, 1, 1, 5, 2, 1}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.lane);
    std::vector<int> runs;
    std::set<int> gold;
    bool solid = false;
    for (int cell = 0; cell < LANE_CELLS; ++cell) {
      const std::int32_t kind = lane_cells[row.lane][cell];
      if ((kind != CELL_EMPTY) != solid) runs.push_back(0);
      solid = kind != CELL_EMPTY;
      ++runs.back();
      if (kind == CELL_TIER1 || kind == CELL_TIER2) gold.insert(cell);
    }
    EXPECT_EQ(runs, row.runs);
    EXPECT_EQ(gold, row.gold);
  }
}

// The points where a path turns, and its ends left and right of the screen.
TEST_F(River, ButterflyPathsPassTheirTurningPoints) {
  const struct {
    int path, dx;
    float x;
    int y;
  } rows[] = {
      {0, 4, -128.0F, 160}, {0, 4, 1232.0F, -52}, {0, -4, -128.0F, -52}, {0, -4, 1232.0F, 160},
      {1, 5, -128.0F, -52}, {1, 5, 552.0F, 172},  {1, -5, 552.0F, 172},  {1, -4, 1232.0F, -52},
      {2, 4, -128.0F, 52},  {2, 4, 212.0F, -52},  {2, -4, 552.0F, 52},   {2, 6, 892.0F, -52},
      {3, 4, -128.0F, -52}, {3, 4, 212.0F, 52},   {3, -4, 552.0F, -52},  {3, 6, 892.0F, 52},
  };
  for (const auto& row : rows) {
    butterfly.state = BUTTERFLY_FLYING;
    butterfly.path = row.path;
    butterfly.dx = row.dx;
    butterfly.x = row.x - static_cast<float>(row.dx);
    butterfly_update();
    EXPECT_EQ(butterfly.x, row.x);
    EXPECT_EQ(butterfly.y, row.y) << row.path << ' ' << row.dx << ' ' << row.x;
  }
}

TEST_F(River, ButterflyFliesAllPathsAndRestsBetween) {
  std::set<std::pair<int, bool>> seen;
  std::int64_t parked_at = now_ms();
  bool parked = true;
  bool first = true;
  for (int i = 0; i < 4 * 3600 * 1000 / TICK_MS; ++i) {
    game_clock.now_ms += TICK_MS;
    butterfly_update();
    if (butterfly.state == BUTTERFLY_FLYING) {
      ASSERT_GE(butterfly.x, -256.0F);
      ASSERT_LE(butterfly.x, 1360.0F);
      ASSERT_GE(butterfly.y, -52);
      ASSERT_LE(butterfly.y, 172);
      ASSERT_LT(butterfly.frame, 32);
      ASSERT_LT(butterfly.ticket_frame, 18);
      if (parked) {
        const auto rested = now_ms() - parked_at;
        if (first) {
          ASSERT_LE(rested, 2 * TICK_MS) << "the first flight starts at once";
        } else {
          ASSERT_GE(rested, 10000);
          ASSERT_LE(rested, 20000 + 2 * TICK_MS);
        }
        first = false;
        seen.emplace(butterfly.path, butterfly.dx > 0);
      }
      parked = false;
    } else if (!parked) {
      parked = true;
      parked_at = now_ms();
    }
  }
  EXPECT_EQ(seen.size(), 8U) << "four curves, both ways";
}

TEST_F(River, CaughtButterflyFadesForTwoSecondsThenRests) {
  game_clock.now_ms += TICK_MS;
  butterfly_update();
  ASSERT_EQ(butterfly.state, BUTTERFLY_FLYING);
  butterfly.state = BUTTERFLY_CAUGHT;
  butterfly.state_time = now_ms();
  const std::int64_t caught = now_ms();
  while (butterfly.state == BUTTERFLY_CAUGHT && now_ms() < caught + 5000) {
    game_clock.now_ms += TICK_MS;
    butterfly_update();
  }
  EXPECT_NEAR(static_cast<double>(now_ms() - caught), 2000.0, TICK_MS);
  EXPECT_EQ(butterfly.alpha, 0);
  EXPECT_EQ(butterfly.state, BUTTERFLY_PARKED);
  EXPECT_EQ(butterfly.x, -256.0F);
  EXPECT_GE(butterfly.wait_s, 10.0F);
  EXPECT_LE(butterfly.wait_s, 20.0F);
}

}  // namespace
