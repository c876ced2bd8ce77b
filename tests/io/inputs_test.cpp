#include <cstdint>
#include <cstdio>
#include <string>

#include "tests/io/link_fixture.h"

class Inputs : public LinkTest {};

TEST_F(Inputs, DropsOnlyWholeFramesWhenReceiveRingIsFull) {
  std::uint32_t kept = 0;
  for (; kept + 18 <= RX_RING_SIZE; kept += 18) feed("\nS8000000000000000\r");
  feed("\n");
  feed(std::string(RX_RING_SIZE - kept - 1, 't') + "\r");
  EXPECT_EQ(jamma_command(JAMMA_GET_COMM_ERRORS), 0) << "it holds exactly its size";
  feed("\nt\r");
  EXPECT_EQ(jamma_command(JAMMA_GET_COMM_ERRORS), 0x1000);
  EXPECT_EQ(jamma_command(JAMMA_RESET), 0);
  std::string flood = "xxx";
  while (flood.size() < RX_RING_SIZE + 1000) flood += "\nt0000\r";
  feed(flood);
  EXPECT_EQ(jamma_command(JAMMA_GET_COMM_ERRORS), 0x1000);
  feed("9\r");  // the cut frame's end belongs to nothing
  round();
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 0);
  say({"t0007"});
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 7);
}

// Every edge gives a frame, and one byte in a hundred is replaced, or lost, or doubled on the way.
// (Not mixed: a lost and a doubled "0" in one frame shift its digits and leave its sum alone.)
TEST_F(Inputs, CountsEveryCoinOnBadLine) {
  say({"u"});
  std::uint32_t seed = 12345;
  const auto chance = [&seed](std::uint32_t below) {
    seed = seed * 1664525u + 1013904223u;
    return (seed >> 8) % below;
  };
  int left = 5, right = 12;
  const auto frame = [&] {
    const std::string body = counters({{COUNTER_C1, left}, {COUNTER_C2, right}}) + "\r";
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X",
                  wire_checksum(reinterpret_cast<const std::uint8_t*>(body.data()), body.size()));
    return "\n" + body + digits;
  };
  const std::uint32_t failures = jamma_checksum_failures;
  feed(frame());
  round();
  for (int edge = 0; edge < 60000; ++edge) {
    ++(chance(2) ? left : right);
    const int fault = edge / 20000;
    std::string line;
    for (const char byte : frame()) {
      if (chance(100) != 0) {
        line += byte;
      } else if (fault == 0) {
        line += static_cast<char>(chance(256));
      } else if (fault == 1) {
        line += {byte, byte};
      }
    }
    feed(line);
    round();
  }
  for (int i = 0; i < 3; ++i) feed(frame());
  round();
  EXPECT_EQ(jamma_presses_pending(PRESS_C1), static_cast<std::uint32_t>(left - 5) / 2);
  EXPECT_EQ(jamma_presses_pending(PRESS_C2), static_cast<std::uint32_t>(right - 12) / 2);
  EXPECT_GT(jamma_checksum_failures - failures, 5000u) << "the line was bad";
}
