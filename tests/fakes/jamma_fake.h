// Stands in for the I/O link in tests of the rules and of the tick: add tests/fakes/jamma_fake.cpp
// to the test's sources, and it takes the place of io/jamma.h's functions. It has no threads and
// does nothing by itself: the test sets what the board would say, and reads what it was told.
#pragma once

#include <cstddef>
#include <cstdint>

#include "io/jamma.h"

struct JammaFakeCall {
  std::int32_t command;
  std::intptr_t a, b, c, d;
  bool operator==(const JammaFakeCall&) const = default;
};

struct JammaFake {
  // What the board says.
  bool open = true;        // else every command answers JAMMA_ERR_NOT_OPEN, and so does JammaInit
  bool alive = true;       // jamma_link_alive
  std::int32_t port = 16;  // jamma_port: none
  std::uint32_t flags = 0;
  std::int32_t tickets_owed[2] = {}, tickets_queued[2] = {}, tickets_unanswered[2] = {};
  std::uint32_t pending[PRESS_COUNT] = {};
  bool synced = true, tickets_reported = false;  // jamma_board_counters, jamma_tickets_reported
  std::uint8_t counters[COUNTER_COUNT] = {};
  JammaInputs inputs{};

  // What it was told, in order, as long as there is room; not what only reads, nor reads and clears
  // of presses.
  int tickets_asked[2] = {};  // jamma_tickets_ask
  JammaFakeCall calls[4096] = {};
  std::size_t call_count = 0;
};

extern JammaFake jamma_fake;

// Back to an open board that is quiet, with no calls noted.
void jamma_fake_reset();

// Forgets the calls, and keeps what the board says.
void jamma_fake_forget_calls();

// How often a command was given, and the last time it was; null if never.
std::size_t jamma_fake_count(std::int32_t command);
const JammaFakeCall* jamma_fake_last(std::int32_t command);
