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

TEST(MenuCommand, PressesOneAfterTheOtherOnceASecond) {
  static Cabinet cabinet;
  EXPECT_EQ(commands_do(cabinet, "menu \"Dip Switch Test\"", 1000), "");
  const long* edges = cabinet.board.switches.edges;
  std::vector<std::int64_t> test_ms, down_ms;
  for (std::int64_t now = 1000; now < 5000; ++now) {
    const long test = edges[INPUT_TEST], down = edges[INPUT_VOLUME_DOWN];
    hands_advance(cabinet.hands, cabinet.board, now);
    if (edges[INPUT_TEST] > test) test_ms.push_back(now);
    if (edges[INPUT_VOLUME_DOWN] > down) down_ms.push_back(now);
  }
  EXPECT_EQ(test_ms, (std::vector<std::int64_t>{1000, 1060, 3000, 3060}));
  EXPECT_EQ(down_ms, (std::vector<std::int64_t>{2000, 2060}));
  EXPECT_TRUE(cabinet.hands.bursts.empty());
}

TEST(MenuCommand, UnknownRowOrBusyHands_IsAnError) {
  static Cabinet cabinet;
  EXPECT_EQ(commands_do(cabinet, "menu \"Lunch\"", 0), "no menu has the row \"Lunch\"");
  EXPECT_EQ(commands_do(cabinet, "menu \"\"", 0), "no menu has the row \"\"");
  EXPECT_EQ(commands_do(cabinet, "start left", 0), "");
  EXPECT_EQ(commands_do(cabinet, "menu Audits", 0), "the hands are still pressing something else");
}

}  // namespace
