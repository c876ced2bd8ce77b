// Presses of the inputs, counted by the pump and consumed by the tick.
#include <atomic>
#include <cstdint>
#include <memory>

#include "io/jamma_link.h"

namespace {

struct JammaPresses {
  struct Input {
    std::uint32_t last = 0;                 // half of the counter; pump
    std::atomic<std::uint32_t> pending{0};  // the pump adds, the game thread subtracts
    std::uint32_t shown = 0;                // game thread
    bool looked = false;                    // game thread
  } inputs[PRESS_COUNT];
};

constinit JammaPresses presses;

constexpr std::uint8_t COUNTERS[PRESS_COUNT] = {
    COUNTER_P1S, COUNTER_P2S, COUNTER_C1,  COUNTER_C2,  COUNTER_BIL,
    COUNTER_SRV, COUNTER_TST, COUNTER_VLU, COUNTER_VLD,
};

}  // namespace

void jamma_presses_reset() {
  std::destroy_at(&presses);
  std::construct_at(&presses);
}

void jamma_presses_count() {
  const JammaInputs* inputs = nullptr;
  if (jamma_command(JAMMA_GET_INPUTS, reinterpret_cast<std::intptr_t>(&inputs)) != 0) return;
  for (int press = 0; press < PRESS_COUNT; ++press) {
    JammaPresses::Input& row = presses.inputs[press];
    const std::uint32_t half = inputs->counters[COUNTERS[press]] >> 1;
    if (row.last >= half) continue;
    row.pending += half - row.last;
    row.last = half;
  }
}

std::uint32_t jamma_presses_pending(JammaPress press) {
  JammaPresses::Input& row = presses.inputs[press];
  row.looked = true;
  return row.shown = row.pending;
}

void jamma_presses_clear(JammaPress press) {
  JammaPresses::Input& row = presses.inputs[press];
  // Most ticks find no press and then need no atomic write.
  if (!row.looked) {
    if (row.pending != 0) row.pending = 0;
  } else if (row.shown != 0) {
    row.pending -= row.shown;
  }
  row.looked = false;
}
