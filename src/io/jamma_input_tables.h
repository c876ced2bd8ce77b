// The places of the input counters in an S frame.
#pragma once

#include <cstdint>
#include <span>

#include "io/jamma.h"

struct InputRow {
  std::uint8_t byte, shift, mask;
  bool wraps;  // counts both ways
  std::uint8_t counter;
  std::uint32_t event;
};

// The table that `JAMMA_SET_INPUT_TABLE` chose: 0 the boards with guns, 1 those with a trackball.
std::span<const InputRow> jamma_input_table(std::uint32_t table);
