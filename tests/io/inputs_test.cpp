#include <cstdint>
#include <cstdio>
#include <string>

#include "tests/io/link_fixture.h"

class Inputs : public LinkTest {
 protected:
  static std::uint32_t pending(JammaPress press) { return jamma_presses_pending(press); }
};

TEST_F(Inputs, CountsPressOnceWhenItEnds) {
  say({counters({{COUNTER_C1, 6}})});
  EXPECT_EQ(counter(COUNTER_C1), 0u) << "the first frame only sets the offsets";
  say({counters({{COUNTER_C1, 7}})});
  EXPECT_EQ(counter(COUNTER_C1), 1u);
  EXPECT_EQ(pending(PRESS_C1), 0u);
  run(2000);
  say({counters({{COUNTER_C1, 8}})});
  EXPECT_EQ(pending(PRESS_C1), 1u);
  say({counters({{COUNTER_C1, 14}})});
  EXPECT_EQ(pending(PRESS_C1), 4u) << "three presses between two frames";
  EXPECT_EQ(pending(PRESS_C2), 0u);
  jamma_presses_clear(PRESS_C1);
  round();
  EXPECT_EQ(pending(PRESS_C1), 0u);
}

TEST_F(Inputs, CountsEachInputSeparately) {
  const JammaCounter order[PRESS_COUNT] = {COUNTER_P1S, COUNTER_P2S, COUNTER_C1,
                                           COUNTER_C2,  COUNTER_BIL, COUNTER_SRV,
                                           COUNTER_TST, COUNTER_VLU, COUNTER_VLD};
  say({"S8000000000000000"});
  // The bytes of the frame, by hand: p1s p2s, c1 c2, vlu vld, tst srv, tlt bil.
  const char* const frames[PRESS_COUNT] = {
      "S8000002000000000", "S8000002200000000", "S8000002220000000",
      "S8000002222000000", "S8000002222000002", "S8000002222000202",
      "S8000002222002202", "S8000002222202202", "S8000002222222202"};
  for (int press = 0; press < PRESS_COUNT; ++press) {
    say({frames[press]});
    EXPECT_EQ(counter(order[press]), 2u) << press;
    for (int other = 0; other < PRESS_COUNT; ++other) {
      EXPECT_EQ(pending(static_cast<JammaPress>(other)), other <= press ? 1u : 0u) << press;
    }
  }
}

TEST_F(Inputs, KeepsPressThatComesBetweenLookAndClear) {
  say({counters({})});
  say({counters({{COUNTER_C1, 2}})});
  EXPECT_EQ(pending(PRESS_C1), 1u);
  say({counters({{COUNTER_C1, 6}})});
  jamma_presses_clear(PRESS_C1);
  EXPECT_EQ(pending(PRESS_C1), 2u);
  jamma_presses_clear(PRESS_C1);
  say({counters({{COUNTER_C1, 10}})});
  jamma_presses_clear(PRESS_C1);  // nobody looked
  EXPECT_EQ(pending(PRESS_C1), 0u);
}

TEST_F(Inputs, CountsNoPressForSwitchHeldAtStart) {
  say({counters({{COUNTER_TST, 5}})});
  say({counters({{COUNTER_TST, 6}})});
  EXPECT_EQ(pending(PRESS_TST), 0u);
}

TEST_F(Inputs, KeepsCountersWhenBoardRestarts) {
  say({counters({{COUNTER_C1, 3}})});
  say({counters({{COUNTER_C1, 4}})});
  EXPECT_EQ(sent(), Frames{});
  say({"*R"});
  EXPECT_FALSE(flag(COUNTERS_SYNCED));
  EXPECT_EQ(sent(), (Frames{"C0081", "S"}));
  say({counters({{COUNTER_C1, 0}, {COUNTER_P2S, 9}})});
  EXPECT_EQ(counter(COUNTER_C1), 1u);
  EXPECT_EQ(counter(COUNTER_P2S), 0u);
  say({counters({{COUNTER_C1, 1}, {COUNTER_P2S, 9}})});
  EXPECT_EQ(pending(PRESS_C1), 1u) << "held through the restart: one press, not two";

  say({counters({{COUNTER_C1, 7}}, 0x00)});  // not valid
  EXPECT_EQ(sent(), (Frames{"C0081", "S"}));
  EXPECT_FALSE(flag(COUNTERS_SYNCED));
  EXPECT_EQ(counter(COUNTER_C1), 2u);
}

TEST_F(Inputs, WidensCountersThatRollOverFourBits) {
  say({counters({{COUNTER_C1, 14}})});
  for (const int raw : {15, 0, 1, 2}) say({counters({{COUNTER_C1, raw}})});
  EXPECT_EQ(counter(COUNTER_C1), 4u);
  EXPECT_TRUE(flag(COUNTERS_MOVED));
  EXPECT_EQ(link->changed, 0x40u);
  say({counters({{COUNTER_C1, 2}})});
  EXPECT_EQ(counter(COUNTER_C1), 4u) << "16 transitions between two frames are not seen";
  for (int i = 0; i < 100; ++i) say({counters({{COUNTER_C1, 2 + 15 * i}})});
  EXPECT_EQ(counter(COUNTER_C1), 4u + 99 * 15);
}

TEST_F(Inputs, IgnoresFramesOfWrongLength) {
  for (const char* frame : {"S80000011000000", "S80000011000000001122", "S", "s00000000", "t03",
                            "v5", "c00", "K01", "*", "", "Zffff"}) {
    say({frame});
  }
  round();
  EXPECT_FALSE(flag(COUNTERS_SYNCED | CONFIG_KNOWN));
  EXPECT_EQ(link->tickets_owed[0], 0);
  EXPECT_EQ(link->inputs.dips, 0u);
  EXPECT_EQ(link->frames_ready, 0);
  EXPECT_EQ(sent(), Frames{});
  say({counters({})});
  EXPECT_TRUE(flag(COUNTERS_SYNCED));
}

TEST_F(Inputs, CountsTrackballTheShorterWayRound) {
  say({counters({{COUNTER_TBX, 250}, {COUNTER_TBY, 3}})});
  struct {
    int x, y, dx, dy;
  } const moves[] = {
      {4, 250, 10, -9},   {250, 4, -10, 10},    {250, 132, 0, -128},
      {122, 4, 128, 128}, {249, 131, 127, 127},
  };
  std::int32_t x = 0, y = 0;
  for (const auto& move : moves) {
    say({counters({{COUNTER_TBX, move.x}, {COUNTER_TBY, move.y}})});
    x += move.dx;
    y += move.dy;
    EXPECT_EQ(static_cast<std::int32_t>(counter(COUNTER_TBX)), x) << move.x;
    EXPECT_EQ(static_cast<std::int32_t>(counter(COUNTER_TBY)), y) << move.y;
  }
  EXPECT_EQ(link->changed, 0xC000u);
}

TEST_F(Inputs, ChoosesInputTableByFirmware) {
  say({"v2a4f", "S8000000000000000", "S8012340000000000"});
  EXPECT_EQ(counter(COUNTER_G1A), 1u);
  EXPECT_EQ(counter(COUNTER_G2A), 2u);
  EXPECT_EQ(counter(COUNTER_G1B), 3u);
  EXPECT_EQ(counter(COUNTER_G2B), 4u);
  EXPECT_EQ(counter(COUNTER_TBX), 0u);
  EXPECT_EQ(jamma_command(JAMMA_GET_HARDWARE_VERSION), 0x2A);
  EXPECT_EQ(jamma_command(JAMMA_GET_FIRMWARE_VERSION), 0x4F);
  char text[32];
  EXPECT_EQ(jamma_command(JAMMA_GET_VERSION_TEXT, reinterpret_cast<std::intptr_t>(text), 32), 0);
  EXPECT_STREQ(text, "19l.H2A.F4F R");
  say({"v0050"});
  EXPECT_EQ(link->input_table, 1u);
}

TEST_F(Inputs, ReadsSwitchesAndDipsFromStatusFrame) {
  say({"s003fffff5a"});  // all switches released, every other DIP on
  EXPECT_EQ(link->inputs.switches, 0x10000000u);
  EXPECT_EQ(link->inputs.dips, 0x100A5u);
  say({"s007ffefd00"});
  EXPECT_EQ(link->inputs.previous_switches, 0x10000000u);
  EXPECT_EQ(link->inputs.switches, 0x10020140u);
  EXPECT_EQ(jamma_command(JAMMA_GET_DIPS), 0x100FF);

  say({"c0081"});
  EXPECT_EQ(jamma_command(JAMMA_GET_DIPS), 0xB00FF) << "known, and bit B";
  EXPECT_EQ(sent(), Frames{});
  JammaInputs* inputs = nullptr;
  EXPECT_EQ(jamma_command(JAMMA_GET_INPUTS, reinterpret_cast<std::intptr_t>(&inputs)), 0);
  EXPECT_EQ(inputs, &link->inputs);
  EXPECT_EQ(inputs->dips, 0xB00FFu);
}

TEST_F(Inputs, SendsConfigAgainWhenAnswerDiffers) {
  say({"c0040"});
  EXPECT_TRUE(flag(CONFIG_BIT_A) && flag(CONFIG_PENDING));
  EXPECT_FALSE(flag(CONFIG_BIT_B));
  EXPECT_EQ(jamma_command(JAMMA_SET_GUN, 1, 1), 0);
  EXPECT_EQ(sent(), Frames{"C20c1"});
  say({"c0000"});
  EXPECT_TRUE(flag(CONFIG_PENDING)) << "only an answer with the bit ends it";
  EXPECT_EQ(sent(), Frames{"C20c1"}) << "the board has another first byte";
  say({"c2ec0"});
  EXPECT_FALSE(flag(CONFIG_PENDING) || flag(CONFIG_BIT_B));
  EXPECT_EQ(sent(), Frames{}) << "bits that are not the host's don't count";
}

TEST_F(Inputs, ReturnsChangedCounters) {
  std::uint32_t changed = 0;
  const Shared<std::uint32_t>* wide = nullptr;
  const auto get = [&](int modifiers) {
    return jamma_command(JAMMA_GET_COUNTERS | modifiers, reinterpret_cast<std::intptr_t>(&changed),
                         reinterpret_cast<std::intptr_t>(&wide));
  };
  EXPECT_EQ(get(0), JAMMA_ERR_NOTHING_NEW);
  EXPECT_EQ(get(0x200), JAMMA_ERR_NOT_SYNCED);
  say({counters({}), counters({{COUNTER_SRV, 2}})});
  EXPECT_EQ(get(0x300), 0);
  EXPECT_EQ(changed, 0x200u);
  EXPECT_EQ(wide[COUNTER_SRV], 2u);
  EXPECT_EQ(get(0), 0);
  EXPECT_EQ(changed, 0u);
}

TEST_F(Inputs, DropsOnlyWholeFramesWhenReceiveRingIsFull) {
  std::string flood;
  while (flood.size() < RX_RING_SIZE + 1000) flood += "\nS8000000000000000\r";
  feed(flood);
  EXPECT_EQ(jamma_command(JAMMA_GET_COMM_ERRORS), 0x1000);
  const std::string tail = "34\r\nt0007\r";  // the cut frame's end belongs to nothing
  feed(tail);
  round();
  EXPECT_EQ(link->frames_ready, 0);
  {
    const MutexLock lock(link->rx_mutex);
    EXPECT_EQ(link->rx_used, 0u);
  }
  say({"t0009"});
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 9);
  EXPECT_EQ(jamma_command(JAMMA_RESET), 0);
  EXPECT_EQ(jamma_command(JAMMA_GET_COMM_ERRORS), 0);
  EXPECT_EQ(sent(), Frames{"C0081"});
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
  EXPECT_EQ(pending(PRESS_C1), static_cast<std::uint32_t>(left - 5) / 2);
  EXPECT_EQ(pending(PRESS_C2), static_cast<std::uint32_t>(right - 12) / 2);
  EXPECT_GT(jamma_checksum_failures - failures, 5000u) << "the line was bad";
}
