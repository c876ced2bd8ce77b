// Faults of one direction of the line: it drops, garbles or doubles random bytes, the same ones for
// the same seed and bytes.
#pragma once

#include <cstdint>
#include <random>
#include <string>

enum LineFault { FAULT_DROP, FAULT_GARBLE, FAULT_DUPLICATE, LINE_FAULTS };

struct LineFaults {
  struct Kind {
    double chance = 0;  // for a byte that may be hit
    int apart = 0;      // bytes that pass unharmed after a hit
    int rest = 0;       // how many of these are still to pass
    long hits = 0;
  };
  Kind kinds[LINE_FAULTS];
  std::mt19937 random;
};

// The name of a fault in commands; and the fault with a name, -1 if there is none.
const char* line_fault_name(int fault);
int line_fault_find(const std::string& name);

// Sets a rate: `percent` of all bytes, with at least `apart` bytes between hits. False if that is
// impossible.
bool line_faults_set(LineFaults& faults, LineFault fault, double percent, int apart);

// Restarts the random numbers.
void line_faults_seed(LineFaults& faults, std::uint32_t seed);

// What comes out of the line when `bytes` go in. A garbled byte can become any other byte.
std::string line_faults_apply(LineFaults& faults, const std::string& bytes);
