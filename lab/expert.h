// A player with a perfect eye and memory: it knows the whole of each lane and its present speed,
// and calculates what a press now or soon would pay. It doesn't know future speeds of the river,
// and it ignores butterflies.
#pragma once

#include <cstdint>

struct Expert {
  std::int64_t planned_in;  // ticks until the press that looked best
  std::int64_t look_again_in;
};

void expert_reset(Expert& expert);

// Each tick while the side's frog is ready. True to press now. `most_ticks`: how long it would wait
// at most.
bool expert_presses(Expert& expert, int side, std::int64_t most_ticks);

// Tickets that a press `in_ticks` from now would pay on the average, by what the expert knows.
float expert_worth(int side, std::int64_t in_ticks);
