#include "lab/board.h"

#include <iterator>
#include <memory>

#include "io/jamma_link.h"    // jamma_presses_count, jamma_presses_reset
#include "io/lamp_effects.h"  // lamp_set

Shared<std::int32_t> jamma_link_error{0};
Shared<std::uint32_t> jamma_checksum_failures{0};

BoardBooks board_books{};
void (*board_after_inputs)() = nullptr;

namespace {

constinit JammaInputs inputs{};

constexpr JammaCounter counter_of(JammaPress press) {
  switch (press) {
    case PRESS_P1S:
      return COUNTER_P1S;
    case PRESS_P2S:
      return COUNTER_P2S;
    case PRESS_C1:
      return COUNTER_C1;
    case PRESS_C2:
      return COUNTER_C2;
    default:  // the lab uses no others
      return COUNTER_SRV;
  }
}

}  // namespace

void board_reset() {
  board_books = {};
  std::construct_at(&inputs);
  jamma_presses_reset();
}

void board_press(JammaPress press) {
  inputs.counters[counter_of(press)] += 2;
  jamma_presses_count();
}

std::int32_t jamma_command(std::int32_t command, std::intptr_t a, std::intptr_t b, std::intptr_t,
                           std::intptr_t) {
  switch (command) {
    case JAMMA_GET_INPUTS:
      *reinterpret_cast<const JammaInputs**>(a) = &inputs;
      return 0;
    case JAMMA_GET_FLAGS:
      *reinterpret_cast<std::uint32_t*>(a) = 0;
      return 0;
    case JAMMA_ADD_TICKETS:
      board_books.tickets[a] += b;
      return 0;
    case JAMMA_PULSE_TICKET_METER:
      board_books.ticket_pulses[a] += b;
      return 0;
    case JAMMA_PULSE_COIN_METER:
      board_books.coin_pulses[a] += b;
      return 0;
    default:  // nothing owed, nothing queued, and the rest has no bearing here
      return 0;
  }
}

std::int32_t JammaInit() {
  return 0;
}
void JammaShutdown() {}
void jamma_search_start() {}
bool jamma_link_alive() {
  return false;
}
bool jamma_board_counters(std::uint8_t (&)[COUNTER_COUNT]) {
  return false;  // a board without a memory
}
bool jamma_tickets_reported() {
  return false;
}
std::int32_t jamma_tickets_unanswered(int) {
  return 0;
}
void jamma_tickets_ask(int) {}
std::int32_t jamma_port() {
  return NO_PORT;
}

// It has no lamps.
void lamp_set(Lamp, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t) {}
std::int32_t lamp_value(Lamp) {
  return 0;
}
void jamma_lamps_init() {}
void jamma_lamps_tick() {
  if (board_after_inputs != nullptr) board_after_inputs();
}
