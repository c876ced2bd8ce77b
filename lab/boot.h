// One boot of a cabinet without screen, sound or books on a disk: bugs are placed, and both sides
// play all their frogs. A run is made of boots. Each depends only on its seed, so any process may
// play it.
#pragma once

#include <cstdint>

#include "lab/players.h"
#include "lab/sums.h"

struct BootPlan {
  std::uint64_t seed;
  std::int32_t frogs_per_side;
  PlayerSettings player;
  std::int64_t start_ms = 0;  // of the game clock: for how long the machine has been on
};

// Plays one boot under the settings in memory and adds what it counts.
void boot_play(const BootPlan& plan, Sums& sums);

// The parts of `boot_play`: all modules as at process start, up to where the game begins; the
// players too, and the game begun; then a tick at a time while it returns true.
void boot_switch_on(std::uint64_t seed, std::int64_t start_ms = 0);
void boot_begin(const BootPlan& plan);
bool boot_step(AwardsSum& awards);
// Empty books, and the field by the settings in memory. For figures that the rules calculate from
// the settings.
void boot_field();
// The seed of boot `number` of a run.
std::uint64_t boot_seed(std::uint64_t run_seed, std::int64_t number);
