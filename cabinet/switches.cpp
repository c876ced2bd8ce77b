#include "cabinet/switches.h"

namespace {

struct InputRow {
  int number;
  const char* name;
  const char* board_name;
  int counter_byte, counter_shift;  // in an S frame, the letter being byte 0
  int line;                         // bit of the 24 lines of an s frame
};

// Lines 6 and 7 are the only ones that are active high; nothing is wired to them.
constexpr InputRow INPUTS[INPUT_COUNT] = {
    {INPUT_G1A, "gun-left", "g1a", 2, 4, 12},
    {INPUT_G2A, "gun-right", "g2a", 2, 0, 13},
    {INPUT_G1B, "gun-left-b", "g1b", 3, 4, 14},
    {INPUT_G2B, "gun-right-b", "g2b", 3, 0, 15},
    {INPUT_START_LEFT, "start-left", "p1s", 4, 4, 0},
    {INPUT_START_RIGHT, "start-right", "p2s", 4, 0, 1},
    {INPUT_COIN_LEFT, "coin-left", "c1", 5, 4, 2},
    {INPUT_COIN_RIGHT, "coin-right", "c2", 5, 0, 3},
    {INPUT_VOLUME_UP, "volume-up", "vlu", 6, 4, 8},
    {INPUT_VOLUME_DOWN, "volume-down", "vld", 6, 0, 9},
    {INPUT_TEST, "test", "tst", 7, 4, 5},
    {INPUT_SERVICE, "service", "srv", 7, 0, 4},
    {INPUT_BILL, "bill", "bil", 8, 0, 10},
    {INPUT_TILT, "tilt", "tlt", 8, 4, 11},
};

constexpr bool rows_in_order() {
  for (int i = 0; i < INPUT_COUNT; ++i) {
    if (INPUTS[i].number != i) return false;
  }
  return true;
}
static_assert(rows_in_order());

constexpr std::uint32_t ACTIVE_LOW_LINES = 0xFFFF3F;

}  // namespace

const char* input_name(int input) {
  return INPUTS[input].name;
}

int input_find(const std::string& name) {
  for (const InputRow& row : INPUTS) {
    if (name == row.name || name == row.board_name) return row.number;
  }
  return -1;
}

bool switches_move(Switches& switches, int input, bool closed) {
  if (switches.closed[input] == closed) return false;
  switches.closed[input] = closed;
  switches.counter[input] = (switches.counter[input] + 1) & 0x0F;
  ++switches.edges[input];
  return true;
}

void switches_restart(Switches& switches, const std::uint8_t (&counters)[INPUT_COUNT]) {
  for (int i = 0; i < INPUT_COUNT; ++i) switches.counter[i] = counters[i] & 0x0F;
}

void switches_counters(const Switches& switches, bool valid, bool trackball,
                       std::uint8_t (&data)[8]) {
  for (std::uint8_t& byte : data) byte = 0;
  if (valid) data[0] = 0x80;
  for (const InputRow& row : INPUTS) {
    if (trackball && row.counter_byte < 4) continue;
    data[row.counter_byte - 1] |=
        static_cast<std::uint8_t>(switches.counter[row.number] << row.counter_shift);
  }
  if (trackball) {
    data[1] = switches.ball[0];
    data[2] = switches.ball[1];
  }
}

void switches_lines(const Switches& switches, std::uint8_t dips, std::uint8_t (&data)[5]) {
  std::uint32_t lines = ACTIVE_LOW_LINES;
  for (const InputRow& row : INPUTS) {
    if (switches.closed[row.number]) lines ^= 1U << row.line;
  }
  data[0] = 0;
  data[1] = static_cast<std::uint8_t>(lines);
  data[2] = static_cast<std::uint8_t>(lines >> 8);
  data[3] = static_cast<std::uint8_t>(lines >> 16);
  data[4] = static_cast<std::uint8_t>(~dips);
}
