// How many times real time the payout lab reaches on one core, with each player.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <ctime>
#include <memory>

#include "books/prefs.h"
#include "lab/boot.h"
#include "lab/players.h"
#include "lab/sums.h"

namespace {

double processor_s() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Both sides play 250 frogs each, again and again. Counters: game time for processor time, and
// frogs a second.
void boots(benchmark::State& state) {
  prefs_reset();
  PlayerSettings player;
  player.kind = static_cast<int>(state.range(0));
  state.SetLabel(player_kinds[player.kind].name);
  const auto sums = std::make_unique<Sums>();
  const double begun_s = processor_s();
  std::int64_t number = 0;
  for (auto _ : state) boot_play({boot_seed(1, number++), 250, player}, *sums);
  const double took_s = processor_s() - begun_s;
  state.counters["times_real_time"] = static_cast<double>(sums->game_ms) / 1000.0 / took_s;
  state.counters["frogs_a_second"] = static_cast<double>(sums_frogs(*sums)) / took_s;
}
BENCHMARK(boots)
    ->DenseRange(0, static_cast<int>(player_kinds.size()) - 1)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(3.0);

}  // namespace

BENCHMARK_MAIN();
