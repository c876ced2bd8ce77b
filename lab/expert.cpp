#include "lab/expert.h"

#include <initializer_list>

#include "lab/climb.h"

namespace {

constexpr std::int64_t NEAR_TICKS = 24;  // the search looks at each of these, then at every third
constexpr std::int64_t FAR_STEP = 3;
constexpr std::int64_t LOOK_EVERY = 30;

constexpr std::int64_t NEVER = -1;

// The first moment, not before this one, that the search looks at.
std::int64_t moment_from(std::int64_t in_ticks) {
  if (in_ticks <= NEAR_TICKS) return in_ticks;
  return NEAR_TICKS + (in_ticks - NEAR_TICKS + FAR_STEP - 1) / FAR_STEP * FAR_STEP;
}

// The best moment for a press, the first of equals; NEVER if none pays more than `floor`.
std::int64_t best_moment(Climb& climb, std::int64_t most_ticks, float floor) {
  std::int64_t best_in = NEVER;
  float best = floor;
  std::int64_t in = 0;
  while (in <= most_ticks) {
    const ClimbWorth worth = climb_worth(climb, in, best);
    if (worth.tickets > best) {
      best = worth.tickets;
      best_in = in;
    }
    in = moment_from(worth.until);
  }
  return best_in;
}

// A search with a high floor is short, and nearly always finds a moment.
std::int64_t press_in(int side, std::int64_t most_ticks) {
  Climb climb = climb_of(side);
  for (const float floor : {climb.short_of[1], climb.short_of[2], climb.short_of[3], -1.0F}) {
    const std::int64_t in = best_moment(climb, most_ticks, floor);
    if (in != NEVER) return in;
  }
  return 0;
}

}  // namespace

float expert_worth(int side, std::int64_t in_ticks) {
  Climb climb = climb_of(side);
  return climb_worth(climb, in_ticks, -1.0F).tickets;
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
  expert.planned_in = press_in(side, most_ticks);
  expert.look_again_in = LOOK_EVERY;
  if (expert.planned_in == 0) return true;
  --expert.look_again_in;
  --expert.planned_in;
  return false;
}
