#include "lab/climb.h"

#include <algorithm>
#include <cmath>

#include "lab/players.h"  // HOP_TICKS
#include "lab/screen.h"
#include "playfield/paytable.h"

namespace {

constexpr int LANE_TICKS = 2 * HOP_TICKS;  // a rest and the hop away from it

constexpr std::int32_t MOST_BUGS = 12;  // that a frog can meet

// How far a lane may be from its predicted place when the frog gets there.
constexpr float DOUBT_PX = 40.0F;

// More than the rounding of 32-bit floats moves a place, and part of a sum of tickets.
constexpr float ROUNDING_PX = 1.0F;
constexpr float ROUNDING_OF_SUM = 1.0001F;

constexpr float LONG_TICKS = 1e6F;

// Ticks from the press to the first test of the frog on a lane.
constexpr int ticks_to(int lane) {
  return HOP_TICKS + LANE_TICKS * (LANE_MEADOW_NEAR - lane) + 1;
}

float place_of(const LaneCourse& lane, std::int64_t in_ticks) {
  return lane.start + (static_cast<float>(in_ticks) + lane.ticks) * lane.speed;
}

bool known(const LaneCourse& lane, std::int64_t in_ticks) {
  return lane.from <= in_ticks && in_ticks < lane.until;
}

// The result stays the same for later presses until the lane has moved so many pixels.
void holds(LaneCourse& lane, std::int64_t in_ticks, float px) {
  const float ticks = (px - ROUNDING_PX) / std::fabs(lane.speed);
  lane.from = in_ticks;
  lane.until = in_ticks + 1;
  if (ticks > 0.0F) lane.until += static_cast<std::int64_t>(std::min(ticks, LONG_TICKS));
}

std::int32_t gold_of(const Climb& climb, LaneCell cell) {
  switch (cell) {
    case CELL_TIER1:
      return climb.tier1;
    case CELL_TIER2:
      return climb.tier2;
    default:
      return 0;
  }
}

// Where the frog comes down on a lane of the river.
const LaneCourse& river_lane(Climb& climb, int number, std::int64_t in_ticks) {
  LaneCourse& lane = climb.lanes[number];
  if (known(lane, in_ticks)) return lane;
  const Footing at = memory_footing(number, place_of(lane, in_ticks), lane.speed > 0.0F);
  lane.stands = std::clamp(0.5F + at.margin_px / (2.0F * DOUBT_PX), 0.0F, 1.0F);
  lane.gold = gold_of(climb, at.cell);
  float steady_px = 0.0F;
  if (lane.stands <= 0.0F) steady_px = at.edge_px - DOUBT_PX;
  if (lane.stands >= 1.0F) steady_px = std::min(at.edge_px - DOUBT_PX, at.cell_px);
  holds(lane, in_ticks, steady_px);
  return lane;
}

// Bugs that pass under the frog from the hop to a lane until the end of the hop away from it.
const LaneCourse& meadow_lane(Climb& climb, int number, std::int64_t in_ticks) {
  LaneCourse& lane = climb.lanes[number];
  if (known(lane, in_ticks)) return lane;
  const float landing = place_of(lane, in_ticks);
  const float before = number == LANE_MEADOW_NEAR ? 0.0F : HOP_TICKS;
  const Passing passing =
      memory_bugs(number, landing - before * lane.speed, landing + LANE_TICKS * lane.speed);
  lane.bugs = passing.bugs;
  holds(lane, in_ticks, passing.steady_px);
  return lane;
}

std::int32_t capped(const Climb& climb, std::int32_t tickets) {
  return std::min(tickets, climb.maximum);
}

// Average tickets of a frog that reaches the river with this purse. It never falls as the purse
// grows, not even by rounding.
float river_worth(const Climb& climb, std::int32_t purse) {
  float worth = 0.0F;
  float alive = 1.0F;
  for (int lane = LANE_RIVER_NEAR; lane >= LANE_RIVER_FAR && alive > 0.0F; --lane) {
    const float ends = alive * (1.0F - climb.lanes[lane].stands);
    worth += ends * static_cast<float>(capped(climb, std::max(purse, climb.minimum)));
    alive -= ends;
    purse = std::max(purse, climb.lanes[lane].gold);
  }
  return worth + alive * static_cast<float>(capped(climb, climb.jackpot));
}

}  // namespace

Climb climb_of(int side) {
  Climb climb{};
  float middle = screen_frog_middle(side);
  for (int lane = LANE_MEADOW_NEAR; lane >= LANE_RIVER_FAR; --lane) {
    if (lane == LANE_MIDDLE_BANK) continue;
    LaneCourse& course = climb.lanes[lane];
    course.start = memory_place(lane, middle);
    course.ticks = static_cast<float>(ticks_to(lane));
    course.speed = screen_speed(lane);
    if (lane < LANE_MIDDLE_BANK) middle -= LANE_TICKS * course.speed;  // it is carried along
  }
  climb.bug = bug_value();
  climb.minimum = minimum_value();
  climb.maximum = maximum_value();
  climb.jackpot = jackpot_value();
  climb.tier1 = tier1_value();
  climb.tier2 = tier2_value();
  std::int32_t most = std::max(MOST_BUGS * climb.bug, climb.minimum);
  for (int lane = LANE_RIVER_NEAR; lane >= LANE_RIVER_FAR; --lane) {
    climb.short_of[lane] = static_cast<float>(capped(climb, most)) * ROUNDING_OF_SUM;
    if (lane == LANE_GOLD_LOG) most = std::max(most, climb.tier1);
    if (lane == LANE_GOLD_TURTLE) most = std::max(most, climb.tier2);
  }
  return climb;
}

ClimbWorth climb_worth(Climb& climb, std::int64_t in_ticks, float best) {
  // The lanes that it must stand on to get more, the far ones first: they are the emptiest.
  for (int lane = LANE_RIVER_FAR; lane <= LANE_RIVER_NEAR; ++lane) {
    if (best < climb.short_of[lane]) continue;
    const LaneCourse& course = river_lane(climb, lane, in_ticks);
    if (course.stands <= 0.0F) return {0.0F, course.until};
  }
  std::int64_t until = INT64_MAX;
  for (int lane = LANE_RIVER_NEAR; lane >= LANE_RIVER_FAR; --lane) {
    const LaneCourse& course = river_lane(climb, lane, in_ticks);
    until = std::min(until, course.until);
    if (course.stands <= 0.0F) break;
  }
  const std::int32_t most = MOST_BUGS * climb.bug;
  // It would get only bugs, and a better moment is known.
  if (climb.lanes[LANE_RIVER_NEAR].stands <= 0.0F && best > static_cast<float>(most)) {
    return {0.0F, until};
  }
  if (river_worth(climb, most) <= best) return {0.0F, until};
  std::int32_t bugs = 0;
  for (int lane = LANE_MEADOW_NEAR; lane >= LANE_MEADOW_FAR; --lane) {
    const LaneCourse& course = meadow_lane(climb, lane, in_ticks);
    until = std::min(until, course.until);
    bugs += course.bugs;
  }
  return {river_worth(climb, bugs * climb.bug), until};
}
