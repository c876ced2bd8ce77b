#include "cabinet/dispenser.h"

#include <algorithm>
#include <cmath>

namespace {

// How long the motor may run without a ticket before the dispenser gives up.
constexpr std::int64_t STALL_MS = 500;

std::int64_t ticket_ms(const Dispenser& dispenser) {
  return std::max<std::int64_t>(1, std::llround(1000.0 / dispenser.rate));
}

}  // namespace

bool dispenser_command(Dispenser& dispenser, bool absolute, int count, std::int64_t now_ms) {
  const int wanted = absolute ? count : dispenser.count + count;
  dispenser.count = std::min(wanted, DISPENSER_COUNT_MAX);
  dispenser.fault = false;
  if (dispenser.count == 0) {
    dispenser.running = false;
  } else if (!dispenser.running) {
    dispenser.running = true;
    dispenser.stalled = false;
    dispenser.next_ms = now_ms + ticket_ms(dispenser);
  }
  return dispenser.count == wanted;
}

DispenserEvent dispenser_advance(Dispenser& dispenser, std::int64_t now_ms) {
  if (!dispenser.running || now_ms < dispenser.next_ms) return DISPENSER_NOTHING;
  if (dispenser.jammed || dispenser.paper_left == 0) {
    if (!dispenser.stalled) {
      dispenser.stalled = true;
      dispenser.next_ms += STALL_MS;
      return DISPENSER_NOTHING;
    }
    dispenser.stalled = false;
    dispenser.running = false;
    dispenser.fault = true;
    return DISPENSER_FAULT;
  }
  dispenser.stalled = false;
  --dispenser.paper_left;
  ++dispenser.paper_out;
  --dispenser.count;
  dispenser.running = dispenser.count > 0;
  const std::int64_t period_ms = ticket_ms(dispenser);
  dispenser.next_ms = std::max(dispenser.next_ms, now_ms - period_ms) + period_ms;
  return DISPENSER_PAID;
}

void dispenser_power_off(Dispenser& dispenser) {
  dispenser.count = 0;
  dispenser.running = false;
  dispenser.fault = false;
  dispenser.stalled = false;
}
