// A player with a perfect eye and memory: it knows how each lane goes round and how fast it runs at
// this moment, and works out what a press now or soon would bring. It doesn't know how the river's
// speeds will change until the frog is there, and it doesn't count on butterflies.
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

// Tickets that a press `in_ticks` from now would bring on the average, as the expert sees it.
float expert_worth(int side, std::int64_t in_ticks);
