// One ticket dispenser with the board's count of what it has yet to pay.
#pragma once

#include <cstdint>

constexpr int DISPENSER_COUNT_MAX = 1023;     // the count travels in 10 bits
constexpr long DISPENSER_PAPER_STACK = 4000;  // tickets of a new stack

struct Dispenser {
  int count = 0;         // still to pay
  bool running = false;  // the motor turns
  bool fault = false;    // it stopped without paying; the count stays until the next command
  bool jammed = false;
  bool void_count = false;  // its fault reports say that the count in them means nothing
  bool stalled = false;     // a ticket is due and hasn't come
  double rate = 4;          // tickets per second
  std::int64_t next_ms = 0;
  long paper_out = 0;
  long paper_left = DISPENSER_PAPER_STACK;
};

enum DispenserEvent { DISPENSER_NOTHING, DISPENSER_PAID, DISPENSER_FAULT };

// A ticket command: the count becomes `count`, or grows by it. It clears a fault and, if there is
// something to pay, tries again. False if the sum doesn't fit and was cut to the most that does.
bool dispenser_command(Dispenser& dispenser, bool absolute, int count, std::int64_t now_ms);

// Lets at most one ticket come out, or notices that none does. Call until DISPENSER_NOTHING.
DispenserEvent dispenser_advance(Dispenser& dispenser, std::int64_t now_ms);

// The power goes: the board forgets the count, the paper stays as it is.
void dispenser_power_off(Dispenser& dispenser);
