// Faults of one direction of the line: bytes dropped, garbled or doubled at random, the same for
// the same seed and bytes.
#pragma once

#include <cstdint>
#include <random>
#include <string>

enum LineFault { FAULT_DROP, FAULT_GARBLE, FAULT_DUPLICATE, LINE_FAULTS };

struct LineFaults {
  struct Kind {
    double chance = 0;  // of a byte that may be hit
    int apart = 0;      // bytes that pass unharmed after one that was hit
    int rest = 0;       // how many of them are still to pass
    long hits = 0;
  };
  Kind kinds[LINE_FAULTS];
  std::mt19937 random;
};

// The name of a fault in commands, and the fault of a name, -1 if there is none.
const char* line_fault_name(int fault);
int line_fault_find(const std::string& name);

// Sets a rate: `percent` of all bytes, no two of them closer than `apart` bytes. False if that many
// don't fit.
bool line_faults_set(LineFaults& faults, LineFault fault, double percent, int apart);

// Starts the chances anew.
void line_faults_seed(LineFaults& faults, std::uint32_t seed);

// What comes out of the line when `bytes` go in. A garbled byte is another byte, any.
std::string line_faults_apply(LineFaults& faults, const std::string& bytes);
