// The link with its real threads and the real clock, over pseudo-terminals.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "io/jamma_link.h"
#include "io/log.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "tests/io_wire/board.h"
#include "tests/temp_folder.h"

namespace {

bool soon(const std::function<bool()>& condition, int bound_ms = 30000) {
  for (const std::int64_t end = clock_ms() + bound_ms; clock_ms() < end; clock_sleep_ms(1)) {
    if (condition()) return true;
  }
  return condition();
}

std::vector<std::string> logged;

class Wire : public testing::Test {
 protected:
  void SetUp() override {
    jamma_link_error = 0;
    logged.clear();
    io_log.callback = [](int kind, const char* text) {
      logged.push_back(std::to_string(kind) + " " + text);
    };
  }
  void TearDown() override {
    JammaShutdown();
    for (std::string& port : environment.com) port.clear();
  }
  // On a busy machine a board may answer too late; the game, too, looks for it again.
  static bool board_found() {
    return soon([] {
      JammaShutdown();
      return JammaInit() == 0;
    });
  }
};

std::uint32_t coins() {
  return jamma_presses_pending(PRESS_C1);
}

}  // namespace

TEST_F(Wire, SearchSkipsSilentAndTakenPorts) {
  Pty mute;
  Board taken, board;
  environment.com[0] = mute.path();
  environment.com[1] = taken.path();
  environment.com[2] = board.path();
  int error = 0;
  SerialPort* const other = serial_open("COM2", &error);
  ASSERT_NE(other, nullptr);
  EXPECT_EQ(serial_open("COM2", &error), nullptr) << "held by a handle of this process";
  EXPECT_NE(error, 0);

  EXPECT_EQ(jamma_find_port(), 2);
  std::string expected = "\nC0001\r1B\nU00\rCC";
  for (int i = 0; i < 10; ++i) expected += "\nv\r8D";
  EXPECT_EQ(mute.receive(100), expected);
  EXPECT_EQ(taken.heard(), "");
  EXPECT_TRUE(board.heard().starts_with("\nC0001\r1B\nU00\rCC\nv\r8D"));
  ASSERT_GE(logged.size(), 22u);
  EXPECT_EQ(logged[0], "4 Attempting to open port COM1");
  EXPECT_EQ(logged[1], "4 Attempting to open port COM2");
  EXPECT_TRUE(logged[2].starts_with("3 Open port failed with code 0x"));
  EXPECT_EQ(logged[21], "4 Attempting to open port COM3") << "ten tries at the taken one";
  serial_close(other);
}

TEST_F(Wire, CoinEdgesBecomePendingPresses) {
  Board board;
  environment.com[4] = board.path();
  ASSERT_TRUE(board_found());
  EXPECT_EQ(jamma_link.load()->which_port, 4);
  std::uint32_t flags = 0;
  ASSERT_TRUE(soon([&flags] {
    jamma_command(JAMMA_GET_FLAGS, reinterpret_cast<std::intptr_t>(&flags));
    return flags & COUNTERS_SYNCED;
  }));
  EXPECT_EQ(coins(), 0u);
  for (std::uint32_t coin = 1; coin <= 50; ++coin) {
    board.coin_edge();
    board.coin_edge();
    EXPECT_TRUE(soon([coin] { return coins() == coin; })) << coin;
  }
  EXPECT_EQ(jamma_link_error, 0);
  EXPECT_EQ(jamma_command(JAMMA_ADD_TICKETS, 1, 3), 0);
  EXPECT_TRUE(soon([&board] { return board.heard().find("\nT8803\r") != std::string::npos; }));
}

TEST_F(Wire, SilentBoardIsReportedAndReconnects) {
  Board board;
  environment.com[0] = board.path();
  ASSERT_TRUE(board_found());
  JammaLink& link = *jamma_link;
  ASSERT_TRUE(soon([&link] { return link.last_heard != 0; }));
  board.set_silent(true);
  clock_sleep_ms(50);
  link.last_heard = -21;  // long ago
  EXPECT_TRUE(soon([] { return jamma_link_error == 1; })) << "without a byte";
  EXPECT_FALSE(jamma_link_alive());
  const std::size_t before = board.heard().size();
  EXPECT_TRUE(soon([&] { return std::ranges::count(board.heard().substr(before), 'c') >= 3; }))
      << "it is asked again and again";

  board.set_silent(false);
  EXPECT_TRUE(soon([] { return jamma_link_error == 0; }));
  EXPECT_TRUE(jamma_link_alive());
}

TEST_F(Wire, UnpluggedAdapterIsFoundAgain) {
  const TempFolder folder;
  const std::string device = folder.file("adapter");
  auto board = std::make_unique<Board>();
  ASSERT_EQ(symlink(board->path().c_str(), device.c_str()), 0);
  environment.com[0] = device;
  ASSERT_TRUE(board_found());
  JammaLink& link = *jamma_link;
  ASSERT_TRUE(soon([&link] { return link.last_heard != 0; }));

  board.reset();
  unlink(device.c_str());
  clock_t processor = clock();
  clock_sleep_ms(1000);
  processor = clock() - processor;
  EXPECT_LT(processor, CLOCKS_PER_SEC / 4) << "a lost port must not spin";

  link.last_heard = -21;  // long ago
  EXPECT_TRUE(soon([] { return jamma_link_error == 1; }));
  board = std::make_unique<Board>();
  ASSERT_EQ(symlink(board->path().c_str(), device.c_str()), 0);
  EXPECT_TRUE(soon([] { return jamma_link_error == 0; }));
  board->send("\n*R\r");
  ASSERT_TRUE(soon([&board] { return board->heard().find("\nS\r") != std::string::npos; }));
  EXPECT_TRUE(soon([&link] { return jamma_flag(link, COUNTERS_SYNCED); }));
  board->coin_edge();
  board->coin_edge();
  EXPECT_TRUE(soon([] { return coins() == 1; }));
  JammaShutdown();
  board.reset();
  unlink(device.c_str());
}

TEST_F(Wire, ShutdownWakesReaderAndLinkCanBeReopened) {
  Board board;
  environment.com[0] = board.path();
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(board_found());
    clock_sleep_ms(20);
    JammaShutdown();
    EXPECT_EQ(jamma_command(JAMMA_SEND_WATCHDOG), JAMMA_ERR_NOT_OPEN);
    int error = 0;
    SerialPort* const port = serial_open("COM1", &error);
    ASSERT_NE(port, nullptr) << "the port is free";
    serial_close(port);
  }
}

TEST_F(Wire, CommandsFromTwoThreadsLoseNoTicket) {
  Board board;
  environment.com[0] = board.path();
  ASSERT_TRUE(board_found());
  const auto work = [](int side) {
    for (int i = 0; i < 300; ++i) {
      jamma_command(JAMMA_ADD_TICKETS, side, 1);
      jamma_command(JAMMA_PULSE_COIN_METER, side, 1);
      jamma_command(JAMMA_SET_LAMP, 3 + 2 * side, i);
      jamma_command(JAMMA_SET_GUN_AUX, side, i & 1);
      std::uint32_t flags = 0;
      jamma_command(JAMMA_GET_FLAGS, reinterpret_cast<std::intptr_t>(&flags));
      JammaInputs* inputs = nullptr;
      jamma_command(JAMMA_GET_INPUTS, reinterpret_cast<std::intptr_t>(&inputs));
      if (side == 0 && jamma_presses_pending(PRESS_C1)) jamma_presses_clear(PRESS_C1);
      if (i % 10 == 0) clock_sleep_ms(1);
    }
  };
  std::thread left(work, 0), right(work, 1);
  for (int i = 0; i < 50; ++i) board.coin_edge();
  left.join();
  right.join();
  for (int side = 0; side < 2; ++side) {
    // This board answers no order, so the second one waits.
    EXPECT_TRUE(soon([side] { return jamma_command(JAMMA_GET_TICKETS_OWED, side) > 0; }));
    EXPECT_EQ(
        jamma_command(JAMMA_GET_TICKETS_OWED, side) + jamma_command(JAMMA_GET_TICKETS_QUEUED, side),
        300)
        << "no ticket lost between the threads";
  }
  EXPECT_LE(jamma_link.load()->coin_meter_steps[0], 600);
  EXPECT_GE(jamma_link.load()->coin_meter_steps[0], 300) << "a step is half a period of the meter";
}
