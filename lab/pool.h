// Jobs on several processes. The rules keep their state in one instance, so each process plays one
// boot at a time, and all cores are used by being several.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "lab/sums.h"

struct PoolJob {
  std::int64_t number;
  Sums sums;
};

// Plays the jobs `numbers` with `play`, each in one of `processes` forked processes (1: in this
// one), and hands what comes back to `done`, in this process, in the order that it comes. False,
// with a line on standard error, if a process ended early.
bool pool_run(const std::vector<std::int64_t>& numbers, int processes,
              const std::function<void(std::int64_t number, Sums& sums)>& play,
              const std::function<void(const PoolJob& job)>& done);

// Processor cores that this process may use.
int pool_cores();
