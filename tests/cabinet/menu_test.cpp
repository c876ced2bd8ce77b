// The `menu` command: which switches it presses, in which order and at which rate.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cabinet/cabinet.h"
#include "cabinet/commands.h"
#include "cabinet/menu_presses.h"

namespace {

TEST(MenuPresses, RowOfMainMenu_IsReachedPastEmptyRows) {
  const std::vector<int> presses = menu_presses("Attract Volume");
  ASSERT_EQ(presses.size(), 7U);  // six rows lie above it, and an empty one
  for (int i = 0; i < 6; ++i) EXPECT_EQ(presses[i], INPUT_VOLUME_DOWN);
  EXPECT_EQ(presses[6], INPUT_TEST);
}

TEST(MenuPresses, RowOfDiagnostics_IsReachedThroughTheMainMenu) {
  EXPECT_EQ(menu_presses("Switch Test"), (std::vector<int>{INPUT_TEST, INPUT_TEST}));
  EXPECT_EQ(menu_presses("Monitor Test"),
            (std::vector<int>{INPUT_TEST, INPUT_VOLUME_DOWN, INPUT_VOLUME_DOWN, INPUT_TEST}));
  // The pictures after the first are screens without a row.
  EXPECT_EQ(menu_presses("Lamp Test").size(), menu_presses("Monitor Test").size() + 1);
}

// When each switch moved, with the hands advanced at each millisecond that `when` lets pass.
struct Edges {
  std::vector<std::int64_t> test_ms, down_ms;
};
Edges press_menu(bool (*when)(std::int64_t now_ms)) {
  static Cabinet cabinet;
  EXPECT_EQ(commands_do(cabinet, "menu \"Dip Switch Test\"", 1000), "");
  const long* edges = cabinet.board.switches.edges;
  Edges seen;
  for (std::int64_t now = 1000; now < 7000; ++now) {
    if (!when(now)) continue;
    const long test = edges[INPUT_TEST], down = edges[INPUT_VOLUME_DOWN];
    hands_advance(cabinet.hands, cabinet.board, now);
    if (edges[INPUT_TEST] > test) seen.test_ms.push_back(now);
    if (edges[INPUT_VOLUME_DOWN] > down) seen.down_ms.push_back(now);
  }
  EXPECT_TRUE(hands_idle(cabinet.hands));
  return seen;
}

TEST(MenuCommand, PressesComeASecondApart_AlsoOfACabinetHeldUp) {
  const Edges seen = press_menu([](std::int64_t) { return true; });
  EXPECT_EQ(seen.test_ms, (std::vector<std::int64_t>{1000, 1060, 3000, 3060}));
  EXPECT_EQ(seen.down_ms, (std::vector<std::int64_t>{2000, 2060}));
  const Edges late = press_menu([](std::int64_t now_ms) { return now_ms < 1500 || now_ms > 3200; });
  EXPECT_EQ(late.test_ms, (std::vector<std::int64_t>{1000, 1060, 4201, 4261}));
  EXPECT_EQ(late.down_ms, (std::vector<std::int64_t>{3201, 3261}));
}

TEST(MenuCommand, GameThatIsSlowToAnswer_GetsNoSecondPressBeforeItDoes) {
  static Cabinet cabinet;
  UsbWatchdog& watchdog = cabinet.usb.device;
  usb_watchdog_configure(watchdog);
  EXPECT_EQ(commands_do(cabinet, "menu \"Switch Test\"", 0), "");
  const long& edges = cabinet.board.switches.edges[INPUT_TEST];
  const auto advance_to = [](std::int64_t ms) { hands_advance(cabinet.hands, cabinet.board, ms); };
  advance_to(0);
  EXPECT_EQ(watchdog.to_host, "\x1D\x20\x30\x40") << "it is asked";
  advance_to(500);
  EXPECT_EQ(edges, 0);
  usb_watchdog_receive(watchdog, "\x1C\x20\x38\x40", 500);
  advance_to(501);
  advance_to(561);
  EXPECT_EQ(edges, 2);
  for (const int ms : {1500, 1502, 9000}) advance_to(ms);
  EXPECT_EQ(edges, 2) << "asked again";
  EXPECT_EQ(watchdog.to_host.size(), 8U);
  usb_watchdog_receive(watchdog, "\x1C\x20\x38\x40", 9000);
  advance_to(9001);
  EXPECT_EQ(edges, 3);
}

// Answers to the board's earlier requests say nothing of a press.
TEST(MenuCommand, LinkThatIsSlowToAnswer_IsAwaitedAlsoBehindTheLastPress) {
  static Cabinet cabinet;
  Board& board = cabinet.board;
  const long& edges = board.switches.edges[INPUT_TEST];
  const auto advance_to = [](std::int64_t ms) { hands_advance(cabinet.hands, cabinet.board, ms); };
  const auto answer_at = [&](std::int64_t ms) {
    for (const char c : std::string("\nW4b\r")) board_receive(board, c, ms);
    advance_to(ms);
  };
  board_restart(board, 0, 0);
  answer_at(0);
  ASSERT_TRUE(board.watchdog_armed);
  for (int i = 0; i < 2; ++i) board_ask_for_watchdog(board, 0);
  board.to_host.clear();
  EXPECT_EQ(commands_do(cabinet, "menu Diagnostics", 0), "");
  advance_to(0);
  EXPECT_EQ(board.to_host, "\n*W\r");
  answer_at(1);
  answer_at(2);
  EXPECT_EQ(edges, 0);
  answer_at(3);
  advance_to(63);
  EXPECT_EQ(edges, 2);
  advance_to(9000);
  EXPECT_FALSE(hands_idle(cabinet.hands)) << "the game may not have seen it";
  answer_at(9001);
  EXPECT_TRUE(hands_idle(cabinet.hands));
}

TEST(MenuCommand, UnknownRowOrBusyHands_IsAnError) {
  static Cabinet cabinet;
  EXPECT_EQ(commands_do(cabinet, "menu \"Lunch\"", 0), "no menu has the row \"Lunch\"");
  EXPECT_EQ(commands_do(cabinet, "menu \"\"", 0), "no menu has the row \"\"");
  EXPECT_EQ(commands_do(cabinet, "start left", 0), "");
  EXPECT_EQ(commands_do(cabinet, "menu Audits", 0), "the hands are still pressing something else");
}

}  // namespace
