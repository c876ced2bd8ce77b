#include "lab/expert.h"

#include <algorithm>

#include "lab/lab_clock.h"
#include "lab/screen.h"
#include "playfield/paytable.h"

namespace {

constexpr int FIRST_MEADOW_LANE = LANE_MIDDLE_BANK + 1;
constexpr int LAST_MEADOW_LANE = LANE_NEAR_BANK - 1;
constexpr int LANE_TICKS = 2 * HOP_TICKS;  // a rest and the hop away from it
constexpr std::int64_t NEAR_TICKS = 24;    // each tick of these is looked at, then every third
constexpr std::int64_t FAR_STEP = 3;
constexpr std::int64_t LOOK_EVERY = 30;

// How far a lane may be off its present course by the time that the frog gets there.
constexpr float DOUBT_PX = 40.0F;

constexpr std::int32_t MOST_BUGS = 12;  // that a frog can meet

// Ticks from the press to the first test of the frog on a lane.
constexpr int ticks_to(int lane) {
  return HOP_TICKS + LANE_TICKS * (LAST_MEADOW_LANE - lane) + 1;
}

float chance_to_stand(int lane, float place_px) {
  return std::clamp(0.5F + memory_margin(lane, place_px) / (2.0F * DOUBT_PX), 0.0F, 1.0F);
}

// Bugs that pass under the frog from the hop to a lane until the end of the hop away from it.
int bugs_of(int lane, float middle_px, float in_ticks) {
  const float speed = screen_speed(lane);
  const float landing = memory_place(lane, middle_px) + (in_ticks + ticks_to(lane)) * speed;
  const float before = lane == LAST_MEADOW_LANE ? 0.0F : HOP_TICKS;
  const float from = landing - before * speed;
  const float to = landing + LANE_TICKS * speed;
  const int step = speed > 0.0F ? 1 : -1;
  const int last = memory_ring(lane, to).number;
  int number = memory_ring(lane, from).number;
  int bugs = memory_cell(lane, number) == CELL_BUG ? 1 : 0;
  while (number != last) {
    number += step;
    if (number < 0) number = LANE_CELLS - 1;
    if (number == LANE_CELLS) number = 0;
    if (memory_cell(lane, number) == CELL_BUG) ++bugs;
  }
  return bugs;
}

std::int32_t gold_of(int lane, float place_px) {
  switch (memory_cell(lane, memory_ring(lane, place_px).number)) {
    case CELL_TIER1:
      return tier1_value();
    case CELL_TIER2:
      return tier2_value();
    default:
      return 0;
  }
}

std::int32_t capped(std::int32_t tickets) {
  return std::min(tickets, maximum_value());
}

}  // namespace

namespace {

struct Course {  // of a frog on the river
  float stands[LANE_MIDDLE_BANK];
  std::int32_t gold[LANE_MIDDLE_BANK];
};

// Where the frog comes down on each lane. False if it can't stand on the first.
bool course_of(float middle, float in, Course& course) {
  for (int lane = LANE_MIDDLE_BANK - 1; lane > LANE_FAR_BANK; --lane) {
    const float speed = screen_speed(lane);
    const float place =
        memory_place(lane, middle) + (in + static_cast<float>(ticks_to(lane))) * speed;
    course.stands[lane] = chance_to_stand(lane, place);
    if (course.stands[lane] <= 0.0F) return lane != LANE_MIDDLE_BANK - 1;
    course.gold[lane] = gold_of(lane, place);
    middle -= LANE_TICKS * speed;
  }
  return true;
}

}  // namespace

float expert_worth(int side, std::int64_t in_ticks, float best) {
  const auto in = static_cast<float>(in_ticks);
  const float middle = screen_frog_middle(side);
  Course course{};
  const bool stands = course_of(middle, in, course);
  // Nothing but bugs, and a better moment is known.
  if (!stands && best > static_cast<float>(MOST_BUGS * bug_value())) return 0.0F;

  std::int32_t purse = 0;
  for (int lane = LAST_MEADOW_LANE; lane >= FIRST_MEADOW_LANE; --lane) {
    purse += bugs_of(lane, middle, in) * bug_value();
  }
  float worth = 0.0F;
  float alive = 1.0F;
  for (int lane = LANE_MIDDLE_BANK - 1; lane > LANE_FAR_BANK && alive > 0.0F; --lane) {
    const float ends = alive * (1.0F - course.stands[lane]);
    worth += ends * static_cast<float>(capped(std::max(purse, minimum_value())));
    alive -= ends;
    purse = std::max(purse, course.gold[lane]);
  }
  return worth + alive * static_cast<float>(capped(jackpot_value()));
}

void expert_reset(Expert& expert) {
  expert = {0, 0};
}

bool expert_presses(Expert& expert, int side, std::int64_t most_ticks) {
  if (expert.look_again_in > 0 && expert.planned_in > 0) {
    --expert.look_again_in;
    --expert.planned_in;
    return false;
  }
  float best = -1.0F;
  for (std::int64_t in = 0; in <= most_ticks; in += in < NEAR_TICKS ? 1 : FAR_STEP) {
    const float worth = expert_worth(side, in, best);
    if (worth > best) {
      best = worth;
      expert.planned_in = in;
    }
  }
  expert.look_again_in = LOOK_EVERY;
  if (expert.planned_in == 0) return true;
  --expert.look_again_in;
  --expert.planned_in;
  return false;
}
