// The cost of the game thread: one tick with both sides in flight, the worst of many, and a store
// of the books.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <vector>

#include "books/audits.h"
#include "books/journal.h"
#include "frame/game_clock.h"
#include "frame/tick.h"
#include "platform/files.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "tests/plain_sheets.h"
#include "tests/reset_game.h"
#include "tests/temp_folder.h"

namespace {

void set_up() {
  plain_sheets();
  reset_game(0, 7);
  game_begin();
}

// A frog in flight on each side. Demo frogs, which fly alike, since a payout stores the books and
// the store is measured apart.
void keep_both_flying() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    bool flying = false;
    for (const Frog& frog : stations[side].frogs) {
      flying = flying || frog.state == FROG_LAUNCHING || frog.state == FROG_HOPPING ||
               frog.state == FROG_RESTING;
    }
    if (!flying && frog_ready(side)) {
      frog_launch(side, true);
      frog_enqueue(side);
    }
  }
}

// Manual time, without keep_both_flying.
void tick_both_sides(benchmark::State& state) {
  TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  set_up();
  std::vector<double> took_us;
  took_us.reserve(static_cast<std::size_t>(state.max_iterations));
  for (auto _ : state) {
    keep_both_flying();
    const auto begun = std::chrono::steady_clock::now();
    game_tick(now_ms() + 17);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
    state.SetIterationTime(took.count());
    // Without the ticks that store the books, as one does every ten minutes: see books_store.
    if (!std::filesystem::remove(drive.file("audits"))) took_us.push_back(took.count() * 1e6);
  }
  std::ranges::sort(took_us);
  state.counters["median_us"] = took_us[took_us.size() / 2];
  state.counters["worst_us"] = took_us.back();
}
BENCHMARK(tick_both_sides)->Iterations(100000)->UseManualTime()->Unit(benchmark::kMicrosecond);

// With 1 there is a journal, and each store brings an event to the disk first.
void books_store(benchmark::State& state) {
  TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  set_up();
  if (state.range(0) != 0) journal_open("1.0.0", 1);
  for (auto _ : state) {
    journal_put(JOURNAL_COIN, {SIDE_LEFT, 1, 0, 1});
    audits_save();
  }
  journal_close();
}
BENCHMARK(books_store)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// What an event costs the tick. The ring is emptied apart.
void journal_event(benchmark::State& state) {
  TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  journal_open("1.0.0", 1);
  for (auto _ : state) {
    for (int i = 0; i < 1000; ++i) journal_put(JOURNAL_COIN, {SIDE_LEFT, i, 0, 1});
    state.PauseTiming();
    journal_flush();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * 1000);
  journal_close();
}
BENCHMARK(journal_event)->Iterations(100)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
