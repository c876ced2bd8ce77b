#include "tests/fakes/jamma_fake.h"

#include <algorithm>
#include <iterator>
#include <memory>

JammaFake jamma_fake;
Shared<std::int32_t> jamma_link_error{0};
Shared<std::uint32_t> jamma_checksum_failures{0};

namespace {

bool only_reads(std::int32_t command) {
  switch (command & 0xFF) {
    case JAMMA_GET_DIPS:
    case JAMMA_GET_INPUTS:
    case JAMMA_GET_TICKETS_OWED:
    case JAMMA_GET_TICKETS_QUEUED:
    case JAMMA_GET_FLAGS:
      return true;
    default:
      return false;
  }
}

void note(const JammaFakeCall& call) {
  if (only_reads(call.command) || jamma_fake.call_count == std::size(jamma_fake.calls)) return;
  jamma_fake.calls[jamma_fake.call_count++] = call;
}

}  // namespace

void jamma_fake_reset() {
  std::destroy_at(&jamma_fake);
  std::construct_at(&jamma_fake);
  jamma_link_error = 0;
  jamma_checksum_failures = 0;
}

void jamma_fake_forget_calls() {
  jamma_fake.call_count = 0;
}

std::size_t jamma_fake_count(std::int32_t command) {
  return static_cast<std::size_t>(std::ranges::count(jamma_fake.calls,
                                                     jamma_fake.calls + jamma_fake.call_count,
                                                     command, &JammaFakeCall::command));
}

const JammaFakeCall* jamma_fake_last(std::int32_t command) {
  for (std::size_t i = jamma_fake.call_count; i > 0; --i) {
    if (jamma_fake.calls[i - 1].command == command) return &jamma_fake.calls[i - 1];
  }
  return nullptr;
}

std::int32_t JammaInit() {
  return jamma_fake.open ? 0 : JAMMA_ERR_PORT_OPEN;
}

void jamma_search_start() {}

void JammaShutdown() {
  jamma_fake.open = false;
}

bool jamma_link_alive() {
  return jamma_fake.open && jamma_fake.alive;
}

std::int32_t jamma_port() {
  return jamma_fake.port;
}

std::int32_t jamma_command(std::int32_t command, std::intptr_t a, std::intptr_t b, std::intptr_t c,
                           std::intptr_t d) {
  note({command, a, b, c, d});
  if (!jamma_fake.open) return JAMMA_ERR_NOT_OPEN;
  const bool side = a == 0 || a == 1;
  switch (command & 0xFF) {
    case JAMMA_GET_DIPS:
      return static_cast<std::int32_t>(jamma_fake.inputs.dips);
    case JAMMA_GET_INPUTS:
      if (a == 0) return JAMMA_ERR_BAD_ARGUMENT;
      *reinterpret_cast<const JammaInputs**>(a) = &jamma_fake.inputs;
      return 0;
    case JAMMA_GET_FLAGS:
      if (a == 0) return JAMMA_ERR_BAD_ARGUMENT;
      *reinterpret_cast<std::uint32_t*>(a) = jamma_fake.flags;
      return 0;
    case JAMMA_GET_TICKETS_OWED:
      return side ? jamma_fake.tickets_owed[a] : JAMMA_ERR_BAD_ARGUMENT;
    case JAMMA_GET_TICKETS_QUEUED:
      return side ? jamma_fake.tickets_queued[a] : JAMMA_ERR_BAD_ARGUMENT;
    default:
      return 0;
  }
}

bool jamma_board_counters(std::uint8_t (&counters)[COUNTER_COUNT]) {
  if (!jamma_fake.open || !jamma_fake.synced) return false;
  std::copy(std::begin(jamma_fake.counters), std::end(jamma_fake.counters), counters);
  return true;
}

bool jamma_tickets_reported() {
  return jamma_fake.open && jamma_fake.tickets_reported;
}

std::int32_t jamma_tickets_unanswered(int side) {
  return jamma_fake.tickets_unanswered[side];
}

void jamma_tickets_ask(int side) {
  ++jamma_fake.tickets_asked[side];
}

std::uint32_t jamma_presses_pending(JammaPress press) {
  return jamma_fake.pending[press];
}

void jamma_presses_clear(JammaPress press) {
  jamma_fake.pending[press] = 0;
}
