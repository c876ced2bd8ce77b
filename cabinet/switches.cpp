#include "cabinet/switches.h"

namespace {

struct InputRow {
  int number;
  int counter_byte, counter_shift;  // in an S frame, where byte 0 is the letter
  int line;                         // bit of the 24 lines of an s frame
  const char* name;
  const char* board_name;
};

// Lines 6 and 7 are the only ones that are active high; nothing is wired to them.
constexpr InputRow INPUTS[INPUT_COUNT] = {
    {INPUT_G1A, 2, 4, 12, "gun-left", "g1a"},
    {INPUT_G2A, 2, 0, 13, "gun-right", "g2a"},
    {INPUT_G1B, 3, 4, 14, "gun-left-b", "g1b"},
    {INPUT_G2B, 3, 0, 15, "gun-right-b", "g2b"},
    {INPUT_START_LEFT, 4, 4, 0, "start-left", "p1s"},
    {INPUT_START_RIGHT, 4, 0, 1, "start-right", "p2s"},
    {INPUT_COIN_LEFT, 5, 4, 2, "coin-left", "c1"},
    {INPUT_COIN_RIGHT, 5, 0, 3, "coin-right", "c2"},
    {INPUT_VOLUME_UP, 6, 4, 8, "volume-up", "vlu"},
    {INPUT_VOLUME_DOWN, 6, 0, 9, "volume-down", "vld"},
    {INPUT_TEST, 7, 4, 5, "test", "tst"},
    {INPUT_SERVICE, 7, 0, 4, "service", "srv"},
    {INPUT_BILL, 8, 0, 10, "bill", "bil"},
    {INPUT_TILT, 8, 4, 11, "tilt", "tlt"},
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
