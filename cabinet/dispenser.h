// One ticket dispenser, with the board's count of tickets still to pay.
#pragma once

#include <cstdint>

constexpr int DISPENSER_COUNT_MAX = 1023;     // the wire has 10 bits for it
constexpr long DISPENSER_PAPER_STACK = 4000;  // tickets of a new stack

struct Dispenser {
  int count = 0;         // still to pay
  bool running = false;  // the motor runs
  bool fault = false;    // it stopped without paying; the count stays until the next command
  bool jammed = false;
  bool void_count = false;  // its fault reports mark their count as invalid
  bool stalled = false;     // a ticket is due but hasn't come out
  double rate = 4;          // tickets per second
  std::int64_t next_ms = 0;
  long paper_out = 0;
  long paper_left = DISPENSER_PAPER_STACK;
};

enum DispenserEvent { DISPENSER_NOTHING, DISPENSER_PAID, DISPENSER_FAULT };

// A ticket command: sets the count to `count`, or adds it. Clears a fault, and tries again if there
// is something to pay. False if the sum was too large and was limited.
bool dispenser_command(Dispenser& dispenser, bool absolute, int count, std::int64_t now_ms);

// Pays at most one ticket, or notices that none comes. Call until DISPENSER_NOTHING. A dispenser
// that is called late doesn't catch up: a busy machine makes it slow, and a script still sees it
// paying.
DispenserEvent dispenser_advance(Dispenser& dispenser, std::int64_t now_ms);

// Power off: the board forgets the count; the paper stays.
void dispenser_power_off(Dispenser& dispenser);
