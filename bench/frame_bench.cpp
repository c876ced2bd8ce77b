// The cost of a frame of play in the real window: its calls alone and the whole frame, drawn
// without invisible pixels and with them.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "gfx/blit.h"
#include "gfx/frame.h"
#include "platform/display.h"
#include "presentation/scene.h"
#include "tests/gl/play.h"
#include "tests/gl/screen.h"
#include "tests/temp_folder.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int WARM_UP_TICKS = 300;

double milliseconds(Clock::duration d) {
  return std::chrono::duration<double, std::milli>(d).count();
}

struct Took {
  std::vector<double> all_ms, calls_ms;
};

double at(std::vector<double>& values, double part) {
  std::ranges::sort(values);
  return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

void frame_timed(Took& took) {
  const Clock::time_point start = Clock::now();
  display_begin_frame(0xFF004020);
  scene_draw();
  const Clock::time_point called = Clock::now();
  display_end_frame();
  display_wait_drawn();
  took.calls_ms.push_back(milliseconds(called - start));
  took.all_ms.push_back(milliseconds(Clock::now() - start));
}

// Both ways draw the same play.
void frame_in_play(benchmark::State& state, bool whole) {
  play_begin();
  gfx_blit_whole = whole;
  Took took;
  for (int i = 0; i < WARM_UP_TICKS; ++i) {
    display_begin_frame(0xFF004020);
    scene_draw();
    display_end_frame();
    play_tick();
  }
  for (auto _ : state) {
    play_tick();
    frame_timed(took);
    state.SetIterationTime(took.all_ms.back() / 1000.0);
  }
  gfx_blit_whole = false;
  state.counters["calls_ms"] = at(took.calls_ms, 0.5);
  state.counters["median_ms"] = at(took.all_ms, 0.5);
  state.counters["p99_ms"] = at(took.all_ms, 0.99);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const TempFolder drive;
  if (!screen_start() || !screen_open() || !play_open(drive.path(), INSTALLATION)) {
    std::fprintf(stderr, "needs Xvfb or a display, and the pictures in " INSTALLATION "\n");
    screen_stop();
    return 1;
  }
  for (const bool whole : {false, true}) {
    benchmark::RegisterBenchmark(whole ? "frame_filled_whole" : "frame", frame_in_play, whole)
        ->Iterations(600)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::RunSpecifiedBenchmarks();
  screen_stop();
  return 0;
}
