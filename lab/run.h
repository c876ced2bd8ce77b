// A run: so many frogs on each side of one cabinet, under one set of settings and one player.
#pragma once

#include <cstdint>
#include <functional>

#include "lab/players.h"
#include "lab/sums.h"

struct RunPlan {
  std::int64_t frogs_per_side = 100000;
  std::uint64_t seed = 1;
  PlayerSettings player;
};

// A run is cut into boots, each with bugs of its own: the bugs of a boot stay where they are, and
// an average over many frogs of one boot would be of that pattern only.
std::int64_t run_boots(const RunPlan& plan);
std::int32_t run_frogs_of_boot(const RunPlan& plan);

// Plays the run under the settings in memory, on `processes` processes; what it counts doesn't
// depend on how many. `progress` gets the part that is done, 0 to 1. False if it failed.
bool run_play(const RunPlan& plan, int processes, Sums& sums,
              const std::function<void(double done)>& progress);
