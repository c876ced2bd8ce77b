// The virtual I/O board byte by byte: what the host sends, what is answered, and when. What the
// end-to-end scripts see isn't tested here.
#include "cabinet/board.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

class BoardTest : public testing::Test {
 protected:
  void SetUp() override {
    board.settings.watchdog_ask_ms = 0;
    board_restart(board, 0, 0);
    board.to_host.clear();
  }
  // Sends bytes and returns what the board answers.
  std::string ask(const std::string& bytes) {
    for (const char c : bytes) board_receive(board, static_cast<std::uint8_t>(c), now);
    return take();
  }
  std::string take() {
    std::string bytes;
    bytes.swap(board.to_host);
    return bytes;
  }
  std::string pass(std::int64_t ms) {
    for (std::int64_t end = now + ms; now < end;) board_advance(board, ++now);
    return take();
  }
  std::string edge(int input) {
    board_switch(board, input, !board.switches.closed[input], now);
    return take();
  }

  Board board;
  std::int64_t now = 0;
};

TEST_F(BoardTest, AnswersQueriesByteForByte) {
  board.settings.hardware = 0x2A;
  board.settings.firmware = 0x4C;
  board.settings.dips = 0x81;
  board.settings.config_bits = 0x40;
  EXPECT_EQ(ask("\nv\r"), "\nv2A4C\r");
  EXPECT_EQ(ask("\nC3181\r\nc\r"), "\nc3140\r");
  EXPECT_EQ(ask("\ns\r"), "\ns003FFFFF7E\r");
  board_switch(board, INPUT_START_LEFT, true, now);
  board_switch(board, INPUT_VOLUME_DOWN, true, now);
  take();
  EXPECT_EQ(ask("\ns\r"), "\ns003EFDFF7E\r");
}

TEST_F(BoardTest, CountersStepOncePerEdge) {
  // Not valid until the host has configured the board.
  EXPECT_EQ(ask("\nS\r"), "\nS0000000000000000\r");
  ask("\nC0081\r");
  const std::pair<int, const char*> edges[] = {
      {INPUT_COIN_LEFT, "0000010000000"},  {INPUT_COIN_LEFT, "0000020000000"},
      {INPUT_COIN_RIGHT, "0000021000000"}, {INPUT_START_LEFT, "0001021000000"},
      {INPUT_VOLUME_UP, "0001021100000"},  {INPUT_TEST, "0001021101000"},
      {INPUT_SERVICE, "0001021101100"},    {INPUT_BILL, "0001021101101"},
      {INPUT_TILT, "0001021101111"}};
  for (const auto& [input, counters] : edges) {
    EXPECT_EQ(edge(input), std::string("\nS800") + counters + "\r");
  }
  board_switch(board, INPUT_TILT, true, now);  // closed already: no edge
  EXPECT_EQ(take(), "");
  board_turn_ball(board, 0, -2, now);
  EXPECT_EQ(take(), "\nS80FE001021101111\r");
  // Without a trackball the same bytes carry the guns.
  board.settings.firmware = 0x43;
  EXPECT_EQ(edge(INPUT_G2A), "\nS8001001021101111\r");
  EXPECT_EQ(edge(INPUT_G1B), "\nS8001101021101111\r");
}

TEST_F(BoardTest, ReadsSplitJoinedAndNoisyFrames) {
  EXPECT_EQ(ask(std::string("8D\nv\r\0\0xyz\nv", 12)), "\nv0151\r");
  EXPECT_EQ(ask("\r"), "\nv0151\r");
  EXPECT_EQ(ask("\nT80\nv\r"), "\nv0151\r");  // LF begins anew
  EXPECT_EQ(board.counts.malformed, 0);
  // Malformed frames.
  ask("\nv00\r\nT8\r\nT800g\r\nWAB\r\nz\r\n\r");
  EXPECT_EQ(take(), "");
  EXPECT_EQ(board.counts.malformed, 6);
  EXPECT_EQ(ask("\n" + std::string(200, '0') + "\r\nv\r"), "\nv0151\r");
  EXPECT_EQ(board.counts.malformed, 7);
}

TEST_F(BoardTest, ChecksumsAreCheckedAndSent) {
  EXPECT_EQ(ask("\nU01\rCD"), "\nu\r8C");
  now += 1000;
  EXPECT_EQ(ask("\nv\r8D"), "\nv0151\r54");
  EXPECT_EQ(ask("\nv\r8d"), "");  // the digits are capitals
  EXPECT_EQ(ask("\nv\r8E"), "");
  EXPECT_EQ(ask("\nv\r8\nv\r8D"), "\nv0151\r54");  // a digit was lost
  EXPECT_EQ(board.counts.checksum_errors, 3);
  // A host that missed u is told again; its frame is lost.
  EXPECT_EQ(ask(std::string("\nv\r\0", 4)), "\nu\r8C");
  EXPECT_EQ(board.counts.checksum_errors, 4);
  // For a moment after u frames without a checksum are accepted.
  EXPECT_EQ(ask("\nv\r\nv\r8D"), "\nv0151\r54\nv0151\r54");
  EXPECT_EQ(ask("\nU00\rCC"), "");
  EXPECT_EQ(ask("\nv\r"), "\nv0151\r");
}

TEST_F(BoardTest, PaysTicketsAndReportsEach) {
  EXPECT_EQ(ask("\nT8002\r"), "\nt0002\r");
  EXPECT_EQ(pass(249), "");
  EXPECT_EQ(pass(1), "\nt0001\r");
  EXPECT_EQ(ask("\nT0001\r"), "\nt0002\r");  // relative
  EXPECT_EQ(pass(250), "\nt0001\r");
  EXPECT_EQ(pass(250), "\nt0000\r");
  EXPECT_EQ(pass(2000), "");
  EXPECT_EQ(board.dispensers[LEFT].paper_out, 3);
  // Right, 700 tickets, ten bits.
  EXPECT_EQ(ask("\nT8abc\r"), "\nt0ABC\r");
  EXPECT_EQ(pass(250), "\nt0ABB\r");
  EXPECT_EQ(ask("\nT8800\r"), "\nt0800\r");  // stop
  EXPECT_EQ(pass(1000), "");
  EXPECT_EQ(board.dispensers[RIGHT].paper_out, 1);
  // More than fits.
  EXPECT_EQ(ask("\nT83ff\r\nT0001\r"), "\nt03FF\r\nt03FF\r");
  EXPECT_EQ(board.counts.malformed, 1);
}

TEST_F(BoardTest, DispenserThatIsCalledLate_DoesNotCatchUp) {
  ask("\nT8009\r");
  now += 5000;
  EXPECT_EQ(pass(1), "\nt0008\r\nt0007\r");
  EXPECT_EQ(pass(249), "");
  EXPECT_EQ(pass(1), "\nt0006\r");
}

TEST_F(BoardTest, FaultKeepsTheCountUntilTheNextCommand) {
  Dispenser& left = board.dispensers[LEFT];
  ask("\nT8003\r");
  pass(250);
  left.jammed = true;
  EXPECT_EQ(pass(749), "");
  EXPECT_EQ(pass(1), "\nt8002\r");
  left.jammed = false;
  EXPECT_EQ(pass(5000), "");  // until a command
  left.jammed = true;
  EXPECT_EQ(ask("\nT8004\r"), "\nt0004\r");
  EXPECT_EQ(pass(750), "\nt8004\r");
  left.jammed = false;
  left.paper_left = 1;
  left.void_count = true;
  EXPECT_EQ(ask("\nT8004\r"), "\nt0004\r");
  EXPECT_EQ(pass(250), "\nt0003\r");
  EXPECT_EQ(pass(750), "\nt4000\r");  // empty, reported without a count
  EXPECT_EQ(left.count, 3);
  left.paper_left = 100;
  ask("\nT8003\r");
  EXPECT_EQ(pass(750), "\nt0002\r\nt0001\r\nt0000\r");
  EXPECT_EQ(left.paper_out, 5);
}

TEST_F(BoardTest, MetersCountRisingEdges) {
  ask("\nH10\r\nH10\r\nH00\r\nH94\r\nH84\r");
  ask("\nP0fff\r\nP0000\r\nPc800\r\nPcfff\r\nPc000\r\nPbfff\r\nP5123\r\nPafff\r");
  const std::vector<long> meters(board.coils.meter, board.coils.meter + METER_COUNT);
  EXPECT_EQ(meters, (std::vector<long>{2, 1, 1, 1})) << "coins, then tickets";
  EXPECT_EQ(board.coils.lamp[5], 0x123);
  EXPECT_TRUE(coils_lockout(board.coils, LEFT));
  EXPECT_FALSE(coils_lockout(board.coils, RIGHT));
  EXPECT_EQ(board.counts.malformed, 0);
}

TEST_F(BoardTest, RestartClearsEverythingButMechanics) {
  ask("\nC0081\r\nU01\r\nP5fff\r\nT8005\r8A");
  board_switch(board, INPUT_COIN_LEFT, true, now);
  pass(300);
  board_restart(board, 7, now);
  EXPECT_EQ(take(), "\n*R\r");
  EXPECT_EQ(board.dispensers[LEFT].count, 0);
  EXPECT_EQ(board.coils.lamp[5], 0);
  EXPECT_EQ(edge(INPUT_COIN_LEFT), "\nS0000007787777777\r");  // the coin had been held
  EXPECT_EQ(ask("\nC0081\r\nS\r"), "\nS8000007787777777\r");
}

TEST_F(BoardTest, WatchdogAsksAndResetsUnfedBoard) {
  board.settings.watchdog_ask_ms = 1000;
  board.settings.watchdog_bite_ms = 3000;
  board_restart(board, 0, now);
  take();
  EXPECT_EQ(pass(1000), "\n*W\r");
  EXPECT_EQ(pass(9000).find("*R"), std::string::npos);  // not yet fed
  ask("\nW4b\r");
  pass(2000);
  ask("\nW4b\r");
  EXPECT_EQ(pass(2999).find("*R"), std::string::npos);
  EXPECT_EQ(pass(1).substr(0, 4), "\n*R\r");
  EXPECT_EQ(board.counts.watchdog_fed, 2);
  EXPECT_EQ(board.counts.watchdog_bites, 1);
  EXPECT_EQ(pass(9000).find("*R"), std::string::npos);
  board.settings.watchdog_ask_ms = 0;
  board.settings.watchdog_bite_ms = WATCHDOG_BY_FRAME;
  ask("\nW03\r");
  EXPECT_EQ(pass(2999), "");
  EXPECT_EQ(pass(1), "\n*R\r");
}

}  // namespace
