#include "lab/run.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include "lab/boot.h"
#include "lab/pool.h"

namespace {

// About twenty minutes of play on both sides, and enough boots to estimate their spread.
constexpr std::int64_t FROGS_OF_BOOT_MOST = 250;
constexpr std::int64_t BOOTS_LEAST = 20;

}  // namespace

std::int32_t run_frogs_of_boot(const RunPlan& plan) {
  return static_cast<std::int32_t>(
      std::clamp(plan.frogs_per_side / BOOTS_LEAST, std::int64_t{1}, FROGS_OF_BOOT_MOST));
}

std::int64_t run_boots(const RunPlan& plan) {
  const std::int64_t each = run_frogs_of_boot(plan);
  return std::max((plan.frogs_per_side + each - 1) / each, std::int64_t{1});
}

bool run_play(const RunPlan& plan, int processes, Sums& sums,
              const std::function<void(double)>& progress) {
  std::vector<std::int64_t> numbers(static_cast<std::size_t>(run_boots(plan)));
  std::iota(numbers.begin(), numbers.end(), 0);
  sums = {};
  const auto play = [&](std::int64_t number, Sums& boot) {
    boot_play({boot_seed(plan.seed, number), run_frogs_of_boot(plan), plan.player}, boot);
  };
  const auto done = [&](const PoolJob& job) {
    sums_add(sums, job.sums);
    if (progress) progress(static_cast<double>(sums.boots) / static_cast<double>(numbers.size()));
  };
  return pool_run(numbers, processes, play, done);
}
