// The cost of one change of an input in the link's two threads, without their waits.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "io/jamma_link.h"
#include "platform/environment.h"
#include "tests/fakes/pty.h"

namespace {

JammaLink& bring_up(const Pty& pty) {
  environment.com[0] = pty.path();
  JammaLink& link = jamma_reset();
  int error = 0;
  link.port = serial_open("COM1", &error);
  if (!link.port || !serial_configure(link.port, 115200)) std::abort();
  jamma_bring_up(link);
  jamma_pump();
  jamma_pump();  // the status query of the first round has been sent
  return link;
}

void feed(JammaLink& link, const std::string& bytes) {
  jamma_receive_bytes(link, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

// The S frames of a coin switch with all 16 values of its counter.
std::vector<std::string> coin_frames(bool checksums) {
  std::vector<std::string> frames;
  for (unsigned coin = 1; coin <= 16; ++coin) {
    const std::uint8_t data[8] = {0x80, 0, 0, 0, static_cast<std::uint8_t>(coin << 4)};
    std::uint8_t frame[WIRE_FRAME_MAX];
    const std::size_t size = wire_build(frame, 'S', data, sizeof data, checksums);
    frames.emplace_back(frame, frame + size);
  }
  return frames;
}

// One S frame, a press or a release, from its bytes to `pending`, in a round of its own.
void frame_to_pending(benchmark::State& state) {
  const Pty pty;
  JammaLink& link = bring_up(pty);
  const bool checksums = state.range(0) != 0;
  const std::vector<std::string> frames = coin_frames(checksums);
  if (checksums) {
    feed(link, "\nu\r");
    jamma_pump();
  }
  feed(link, frames[15]);
  jamma_pump();
  std::size_t next = 0;
  std::int64_t presses = 0;
  while (state.KeepRunning()) {
    feed(link, frames[next]);
    jamma_pump();
    jamma_presses_count();
    next = (next + 1) % 16;
    presses += jamma_presses_pending(PRESS_C1);
    jamma_presses_clear(PRESS_C1);
  }
  // Every second frame ends a press.
  if (presses != state.iterations() / 2) state.SkipWithError("presses were lost");
  JammaShutdown();
}
BENCHMARK(frame_to_pending)->ArgName("checksums")->Arg(0)->Arg(1);

// A round of the pump thread with nothing to do: a thousand a second.
void idle_round(benchmark::State& state) {
  const Pty pty;
  bring_up(pty);
  while (state.KeepRunning()) {
    jamma_pump();
    jamma_presses_count();
  }
  JammaShutdown();
}
BENCHMARK(idle_round);

}  // namespace

BENCHMARK_MAIN();
