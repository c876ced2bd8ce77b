#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "tests/io/link_fixture.h"

class Outputs : public LinkTest {};

TEST_F(Outputs, SendsQueriesAndLampsAtBringUp) {
  EXPECT_EQ(start_frames, (Frames{"c", "C0081", "v", "S", "P0000", "P2000", "P3000", "P5000",
                                  "P7000", "Pf000", "Pd000", "Pe000"}));
  EXPECT_EQ(first_round, Frames{"s"});
  Frames later;
  for (int at = 1; at <= 10000; ++at) {
    run(1);
    for (const std::string& frame : sent()) later.push_back(frame + std::to_string(at));
  }
  EXPECT_EQ(later, (Frames{"s5000", "s10000"}));
  jamma_command(JAMMA_QUERY_CONFIG);
  jamma_pump();
  EXPECT_EQ(tx_used(), 0u) << "a round sends what waits";
}

TEST_F(Outputs, UsesChecksumsBothWays) {
  const std::uint32_t failures = jamma_checksum_failures;
  say({"u"});
  jamma_command(JAMMA_QUERY_VERSION);
  EXPECT_EQ(sent(), Frames{"v8D"});
  feed("\nt0005\r50\nt0004\r4F\nt0003\rFF");
  round();
  EXPECT_EQ(jamma_command(JAMMA_GET_TICKETS_OWED, 0), 4);
  EXPECT_EQ(jamma_checksum_failures - failures, 1u);
  feed("\nt0001\r\nt0000\r\nt0000\r");
  EXPECT_EQ(sent(), Frames{"U01CD"}) << "once";
}

TEST_F(Outputs, KeepsTicketsClearedDuringBoardRestart) {
  jamma_command(JAMMA_ADD_TICKETS, 0, 300);
  round();
  sent();
  std::unique_lock lock(link->ticket_mutex);  // as JAMMA_CLEAR_TICKETS holds it
  std::thread pump([this] { say({"*R"}); });
  clock_sleep_ms(50);  // a pump that doesn't wait for the lock has sent T812c by then
  link->tickets_owed[0] = 0;
  lock.unlock();
  pump.join();
  EXPECT_EQ(sent(), (Frames{"C0081", "S"}));
}

// Some have no order of the game.
TEST_F(Outputs, SendsThePacketOfEachNumber) {
  const char* const packets[] = {
      "C0081",         "W4b", "H00", "H00",   "c",     "S",     "s",     "v",     "H00",   "H00",
      "F000000000000", "H00", "H00", "T8000", "T8000", "T8800", "T8800", "Pe000", nullptr, "U01"};
  const std::map<int, const char*> on = {{3, "H10"},  {4, "H11"},  {9, "H31"},
                                         {10, "Hb1"}, {12, "Hb5"}, {13, "Hbd"}};
  for (int number = 1; number <= 20; ++number) {
    if (number == 19) continue;  // a NUL
    EXPECT_EQ(jamma_send_packet(*link, static_cast<std::uint32_t>(number)), 0);
    EXPECT_EQ(sent(), Frames{packets[number - 1]}) << number;
  }
  for (const auto& [number, frame] : on) {
    jamma_send_packet(*link, static_cast<std::uint32_t>(number) | PACKET_BIT_ON);
    EXPECT_EQ(sent(), Frames{frame}) << number;
  }
  EXPECT_EQ(jamma_send_packet(*link, 0), JAMMA_ERR_BAD_ARGUMENT);
  EXPECT_EQ(jamma_send_packet(*link, 21), JAMMA_ERR_BAD_ARGUMENT);
}

// Orders that nothing in the game gives.
TEST_F(Outputs, CapturesBytesAndKeepsRawOnes) {
  std::uint8_t heard[8] = {};
  const auto capture = [&](int on) {
    jamma_command(JAMMA_SET_CAPTURE, on, reinterpret_cast<std::intptr_t>(heard), sizeof heard);
  };
  capture(1);
  feed("\nx12\r\ny34\r");
  EXPECT_EQ(std::string(heard, heard + sizeof heard), "\nx12\r\ny3") << "until it is full";
  capture(0);
  feed("\nz\r");
  EXPECT_EQ(heard[1], 'x');
  capture(2);
  feed("\nz\r");
  EXPECT_EQ(heard[1], 'z') << "toggled on";
  capture(2);
  feed("\nw\r");
  EXPECT_EQ(heard[1], 'z') << "and off";
  for (const auto& [word, on] : {std::pair{1, true}, {0, false}, {2, true}, {2, false}}) {
    jamma_command(JAMMA_SET_TRACE, word);
    EXPECT_EQ(link->trace, on);
  }
  jamma_command(JAMMA_SET_STATUS_EVENTS, 1);
  EXPECT_TRUE(link->status_events);

  EXPECT_EQ(jamma_command(JAMMA_RESET), 0);
  jamma_command(JAMMA_SET_RAW_MODE, 1);
  EXPECT_TRUE(flag(RAW_MODE));
  feed("t0007\r");
  EXPECT_EQ(link->frames_ready, 0);
  const MutexLock lock(link->rx_mutex);
  EXPECT_EQ(std::string(link->rx_data, link->rx_data + link->rx_used), "t0007\r");
}

TEST_F(Outputs, ClearsErrorsAndKeepsWhatItHeard) {
  feed("\nt0007\r");
  jamma_command(JAMMA_QUERY_CONFIG);
  link->comm_errors = COMM_RX_OVERFLOW;
  EXPECT_EQ(jamma_command(JAMMA_CLEAR_ERRORS), 0);
  EXPECT_EQ(link->comm_errors, 0u);
  EXPECT_EQ(sent(), (Frames{"c", "C0081"}));
  round();
  EXPECT_EQ(link->tickets_owed[0], 7);
  feed("\nt0008\r");
  jamma_command(JAMMA_QUERY_CONFIG);
  EXPECT_EQ(jamma_command(JAMMA_RESET), 0);
  EXPECT_EQ(sent(), Frames{"C0081"});
  round();
  EXPECT_EQ(link->tickets_owed[0], 7);
}

TEST_F(Outputs, SetsErrorAndKeepsBytesWhenTransmitRingIsFull) {
  for (int i = 0; i < 64; ++i) {
    EXPECT_EQ(jamma_command(JAMMA_SEND_RAW, reinterpret_cast<std::intptr_t>("0123456789abcdef"),
                            i == 63 ? 15 : 16),
              0);
  }
  EXPECT_EQ(jamma_link_error, 0);
  EXPECT_EQ(jamma_command(JAMMA_QUERY_CONFIG), JAMMA_ERR_TX_FULL);
  EXPECT_EQ(jamma_link_error, 1);
  EXPECT_EQ(tx_used(), 1023u);
  EXPECT_EQ(jamma_command(JAMMA_SEND_NUL), 0);
  jamma_tx_flush(*link);
  std::string bytes;
  for (std::string more = "-"; !more.empty(); bytes += more) more = pty.receive(50);
  EXPECT_EQ(bytes.size(), 1024u) << "a full burst gets no NUL behind it";
}

TEST(Commands, RefusesCommandsWhileLinkIsDown) {
  JammaShutdown();
  char text[32] = "";
  std::uint32_t ticks = 0;
  for (int command = -300; command <= 300; ++command) {
    const int number = command & 0xFF;
    std::int32_t expected = JAMMA_ERR_NOT_OPEN;
    std::intptr_t argument = 0;
    switch (number) {
      case 6:
      case 41:
      case 42:
      case 52:
        expected = 0;
        break;
      case 3:
      case 7:
        continue;  // search all ports
      case 9:
        expected = 0;
        argument = reinterpret_cast<std::intptr_t>(text);
        break;
      case 10:
        expected = 0;
        argument = reinterpret_cast<std::intptr_t>(&ticks);
        break;
      default:
        if (number == 0 || number == 40 || number > 53) expected = JAMMA_ERR_BAD_COMMAND;
    }
    EXPECT_EQ(jamma_command(command, argument, sizeof text), expected) << command;
  }
  jamma_presses_count();
  EXPECT_EQ(jamma_presses_pending(PRESS_C1), 0u);
}

TEST(Commands, FailsInTimeWithoutBoard) {
  headless_clock_reset();
  EXPECT_EQ(JammaInit(), JAMMA_ERR_PORT_OPEN);
  EXPECT_LT(clock_ms(), 2000);
  EXPECT_EQ(jamma_command(JAMMA_RESET), JAMMA_ERR_LINK_STILL_CLOSED);
  EXPECT_FALSE(jamma_link_alive());
}
