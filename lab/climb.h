// What a press at some moment would pay, by the lanes that the player has seen and their present
// speeds.
#pragma once

#include <cstdint>

#include "playfield/playfield.h"

// What a lane does to the frog, and for how long it does the same.
struct LaneCourse {
  float start;  // place of the ring below the frog, were it on this lane now
  float ticks;  // from the press to the landing
  float speed;

  std::int64_t from,
      until;          // presses from one moment to before the other have these results
  float stands;       // the river: chance to stand
  std::int32_t gold;  // and what that pays
  std::int32_t bugs;  // the meadow: bugs that pass under the frog
};

struct Climb {
  LaneCourse lanes[LANE_NEAR_BANK];
  std::int32_t bug, minimum, maximum, jackpot, tier1, tier2;
  float short_of[LANE_MIDDLE_BANK];  // more than any frog can get that comes no farther than a lane
};

// By the present state. Valid until the next tick.
Climb climb_of(int side);

struct ClimbWorth {
  float tickets;       // on the average; 0 if it can't be more than `best`
  std::int64_t until;  // no press before this moment pays more
};

// Of a press `in_ticks` from now. The search stops early if it can't pay more than `best`.
ClimbWorth climb_worth(Climb& climb, std::int64_t in_ticks, float best);
