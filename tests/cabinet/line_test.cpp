// Faults of the line and the hands at the switches.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "cabinet/cabinet.h"
#include "cabinet/line_faults.h"

namespace {

std::string pattern(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * 7);
  return bytes;
}

TEST(LineFaults, SameSeedGivesSameFaultsAtTheSetRate) {
  const std::string bytes = pattern(100000);
  std::string outs[3];
  for (int run = 0; run < 3; ++run) {
    LineFaults faults;
    line_faults_seed(faults, run < 2 ? 5 : 6);
    ASSERT_TRUE(line_faults_set(faults, FAULT_GARBLE, 1, 0));
    // In pieces or whole, the line is the same.
    outs[run] = line_faults_apply(faults, bytes.substr(0, 333));
    outs[run] += line_faults_apply(faults, bytes.substr(333));
    EXPECT_NEAR(static_cast<double>(faults.kinds[FAULT_GARBLE].hits), 1000, 130);
    long changed = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) changed += outs[run][i] != bytes[i];
    EXPECT_EQ(changed, faults.kinds[FAULT_GARBLE].hits);
  }
  EXPECT_EQ(outs[0], outs[1]);
  EXPECT_NE(outs[0], outs[2]);
}

TEST(LineFaults, DropAndDuplicateChangeTheLength) {
  LineFaults faults;
  ASSERT_TRUE(line_faults_set(faults, FAULT_DROP, 100, 0));
  EXPECT_EQ(line_faults_apply(faults, "abc"), "");
  ASSERT_TRUE(line_faults_set(faults, FAULT_DROP, 0, 0));
  ASSERT_TRUE(line_faults_set(faults, FAULT_DUPLICATE, 100, 0));
  EXPECT_EQ(line_faults_apply(faults, "abc"), "aabbcc");
}

TEST(LineFaults, FaultsKeepMinimumDistanceAndRate) {
  LineFaults faults;
  ASSERT_TRUE(line_faults_set(faults, FAULT_GARBLE, 1, 24));
  EXPECT_FALSE(line_faults_set(faults, FAULT_GARBLE, 10, 24));
  const std::string bytes = pattern(200000);
  const std::string out = line_faults_apply(faults, bytes);
  std::size_t last = 0, closest = bytes.size(), hits = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (out[i] == bytes[i]) continue;
    if (hits++ > 0) closest = std::min(closest, i - last);
    last = i;
  }
  EXPECT_GT(closest, 24U);
  EXPECT_NEAR(static_cast<double>(hits), 2000, 150);
}

TEST(Hands, BurstsRunSideBySideAndQueueOnOneSwitch) {
  Board board;
  Hands hands;
  hands_press(hands, INPUT_COIN_LEFT, 20, 20);
  hands_press(hands, INPUT_COIN_RIGHT, 10, 20);
  hands_press(hands, INPUT_COIN_LEFT, 1, 20);
  for (std::int64_t now = 1; now <= 500; ++now) hands_advance(hands, board, now);
  EXPECT_EQ(board.switches.edges[INPUT_COIN_LEFT], 20);
  EXPECT_EQ(board.switches.edges[INPUT_COIN_RIGHT], 20);
  for (std::int64_t now = 501; now <= 1200; ++now) hands_advance(hands, board, now);
  EXPECT_EQ(board.switches.edges[INPUT_COIN_LEFT], 42);
  EXPECT_EQ(board.switches.edges[INPUT_COIN_RIGHT], 20);
  EXPECT_TRUE(hands.bursts.empty());
}

TEST(Hands, DropReleasesHeldSwitches) {
  Board board;
  Hands hands;
  hands_hold(hands, INPUT_TEST, 3000);
  hands_advance(hands, board, 1);
  hands_advance(hands, board, 2999);
  EXPECT_TRUE(board.switches.closed[INPUT_TEST]);
  hands_drop(hands, board, 3000);
  EXPECT_FALSE(board.switches.closed[INPUT_TEST]);
  EXPECT_TRUE(hands.bursts.empty());
}

}  // namespace
