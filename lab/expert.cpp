#include "lab/expert.h"

#include <algorithm>
#include <cmath>

#include "lab/lab_clock.h"
#include "lab/screen.h"
#include "playfield/paytable.h"

namespace {

constexpr int FIRST_MEADOW_LANE = LANE_MIDDLE_BANK + 1;
constexpr int LAST_MEADOW_LANE = LANE_NEAR_BANK - 1;
constexpr int LANE_TICKS = 2 * HOP_TICKS;  // a rest and the hop away from it
constexpr std::int64_t NEAR_TICKS = 24;    // each tick of these is looked at, then every third
constexpr std::int64_t FAR_STEP = 3;
constexpr std::int64_t LOOK_EVERY = 12;

// How far a lane may be off its present course by the time that the frog gets there.
constexpr float DOUBT_PX = 40.0F;

// Ticks from the press to the first test of the frog on a lane.
constexpr int ticks_to(int lane) {
  return HOP_TICKS + LANE_TICKS * (LAST_MEADOW_LANE - lane) + 1;
}

float chance_to_stand(int lane, float place_px) {
  return std::clamp(0.5F + memory_margin(lane, place_px) / (2.0F * DOUBT_PX), 0.0F, 1.0F);
}

int cell_of(int lane, float place_px) {
  const int number =
      static_cast<int>(std::floor(place_px / static_cast<float>(lanes[lane].cell_size)));
  return ((number % LANE_CELLS) + LANE_CELLS) % LANE_CELLS;
}

// Bugs that pass under the frog from the hop to a lane until the end of the hop away from it.
int bugs_of(int lane, float middle_px, float in_ticks) {
  const float speed = screen_speed(lane);
  const float landing = memory_place(lane, middle_px) + (in_ticks + ticks_to(lane)) * speed;
  const float before = lane == LAST_MEADOW_LANE ? 0.0F : HOP_TICKS;
  const float from = landing - before * speed;
  const float to = landing + LANE_TICKS * speed;
  const auto size = static_cast<float>(lanes[lane].cell_size);
  const int steps = static_cast<int>(std::fabs(std::floor(to / size) - std::floor(from / size)));
  const int step = speed > 0.0F ? 1 : -1;
  int bugs = 0;
  int number = cell_of(lane, from);
  for (int n = 0; n <= steps; ++n) {
    if (memory_cell(lane, number) == CELL_BUG) ++bugs;
    number = (number + step + LANE_CELLS) % LANE_CELLS;
  }
  return bugs;
}

std::int32_t gold_of(int lane, float place_px) {
  switch (memory_cell(lane, cell_of(lane, place_px))) {
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

float expert_worth(int side, std::int64_t in_ticks) {
  const auto in = static_cast<float>(in_ticks);
  float middle = screen_frog_middle(side);
  std::int32_t purse = 0;
  for (int lane = LAST_MEADOW_LANE; lane >= FIRST_MEADOW_LANE; --lane) {
    purse += bugs_of(lane, middle, in) * bug_value();
  }
  float worth = 0.0F;
  float alive = 1.0F;
  for (int lane = LANE_MIDDLE_BANK - 1; lane > LANE_FAR_BANK; --lane) {
    const float speed = screen_speed(lane);
    const float place =
        memory_place(lane, middle) + (in + static_cast<float>(ticks_to(lane))) * speed;
    const float stands = chance_to_stand(lane, place);
    worth += alive * (1.0F - stands) * static_cast<float>(capped(std::max(purse, minimum_value())));
    alive *= stands;
    if (alive <= 0.0F) return worth;
    purse = std::max(purse, gold_of(lane, place));
    middle -= LANE_TICKS * speed;
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
    const float worth = expert_worth(side, in);
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
