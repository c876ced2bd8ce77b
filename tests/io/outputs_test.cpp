// What the link sends and answers that its model doesn't see: faults of the line, full rings,
// orders that nothing in the game gives.
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "tests/io/link_fixture.h"

class Outputs : public LinkTest {};

TEST_F(Outputs, BoardThatLostChecksumsIsToldOnce) {
  const std::uint32_t failures = jamma_checksum_failures;
  say({"u"});
  feed("\nt0003\rFF");
  EXPECT_EQ(jamma_checksum_failures - failures, 1u);
  feed("\nt0001\r\nt0000\r\nt0000\r");
  EXPECT_EQ(sent(), Frames{"U01CD"});
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

// Those that an order sends are in the model.
TEST_F(Outputs, SendsThePacketOfEachNumber) {
  const std::map<std::uint32_t, Frames> packets = {
      {0, {}}, {PACKET_H_UNUSED | PACKET_BIT_ON, {"H01"}}, {PACKET_LAMP, {"Pe000"}}, {21, {}}};
  for (const auto& [packet, frames] : packets) {
    EXPECT_EQ(jamma_send_packet(*link, packet), frames.empty() ? JAMMA_ERR_BAD_ARGUMENT : 0);
    EXPECT_EQ(sent(), frames) << packet;
  }
}

TEST_F(Outputs, CapturesBytesAndKeepsRawOnes) {
  std::uint8_t heard[8] = {};
  const auto capture = [&](int on, const std::string& bytes) {
    jamma_command(JAMMA_SET_CAPTURE, on, reinterpret_cast<std::intptr_t>(heard), sizeof heard);
    feed(bytes);
    return std::string(heard, heard + sizeof heard);
  };
  EXPECT_EQ(capture(1, "\nx12\r\ny34\r"), "\nx12\r\ny3") << "until it is full";
  EXPECT_EQ(capture(0, "\nz\r"), "\nx12\r\ny3");
  EXPECT_EQ(capture(2, "\nz\r"), "\nz\r2\r\ny3") << "toggled on";
  EXPECT_EQ(capture(2, "\nw\r"), "\nz\r2\r\ny3") << "and off";
  for (const auto& [word, on] : {std::pair{1, true}, {0, false}, {2, true}, {2, false}}) {
    jamma_command(JAMMA_SET_TRACE, word);
    EXPECT_EQ(link->trace, on);
  }
  jamma_command(JAMMA_SET_STATUS_EVENTS, 1);
  EXPECT_TRUE(link->status_events);

  jamma_command(JAMMA_RESET);
  jamma_command(JAMMA_SET_RAW_MODE, 1);
  feed("t0007\r");
  EXPECT_EQ(link->frames_ready, 0);
  const MutexLock lock(link->rx_mutex);
  EXPECT_EQ(std::string(link->rx_data, link->rx_data + link->rx_used), "t0007\r");
}

TEST_F(Outputs, ClearedErrorsKeepWhatWaitsAndResetDropsIt) {
  for (const int order : {JAMMA_CLEAR_ERRORS, JAMMA_RESET}) {
    feed("\nt0007\r");
    jamma_command(JAMMA_QUERY_CONFIG);
    link->comm_errors = COMM_RX_OVERFLOW;
    EXPECT_EQ(jamma_command(order), 0);
    EXPECT_EQ(jamma_command(JAMMA_GET_COMM_ERRORS), 0);
    EXPECT_EQ(sent(), order == JAMMA_RESET ? Frames{"C0081"} : (Frames{"c", "C0081"}));
    round();
    EXPECT_EQ(link->tickets_owed[0], order == JAMMA_RESET ? 0 : 7);
    link->tickets_owed[0] = 0;
  }
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
  jamma_pump();
  std::string bytes;
  for (std::string more = "-"; !more.empty(); bytes += more) more = pty.receive(50);
  EXPECT_EQ(bytes.size(), 1024u) << "a full burst gets no NUL behind it";
}

TEST(Commands, RefusesCommandsWhileLinkIsDown) {
  JammaShutdown();
  headless_clock_reset();
  EXPECT_EQ(JammaInit(), JAMMA_ERR_PORT_OPEN);
  EXPECT_LT(clock_ms(), 2000);
  EXPECT_FALSE(jamma_link_alive());
  char text[32] = "";
  const std::map<int, int> answers = {{0, JAMMA_ERR_BAD_COMMAND},
                                      {JAMMA_RESET, JAMMA_ERR_LINK_STILL_CLOSED},
                                      {JAMMA_NOP, 0},
                                      {JAMMA_CLEAR_ERRORS, JAMMA_ERR_LINK_STILL_CLOSED},
                                      {JAMMA_GET_VERSION_TEXT, 0},
                                      {JAMMA_GET_TICKS, 0},
                                      {40, JAMMA_ERR_BAD_COMMAND},
                                      {JAMMA_GET_HARDWARE_VERSION, 0},
                                      {JAMMA_GET_FIRMWARE_VERSION, 0},
                                      {JAMMA_GET_COMM_ERRORS, 0}};
  for (int command = -300; command <= 300; ++command) {
    const int number = command & 0xFF;
    const auto row = answers.find(number);
    EXPECT_EQ(jamma_command(command, reinterpret_cast<std::intptr_t>(text), sizeof text),
              row != answers.end() ? row->second
              : number > 53        ? JAMMA_ERR_BAD_COMMAND
                                   : JAMMA_ERR_NOT_OPEN)
        << command;
  }
}
