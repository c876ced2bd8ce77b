// The whole field without pictures, sound or board, on a clock set by hand.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "playfield/playfield.h"

// What the rules told the board, the shows, the LED board and the disk, in order: "add 0 7" for 7
// tickets on the left, "meter 1 7", "show 0 250"; "store" and "led".
extern std::vector<std::string> outcomes;
std::string outcome(const std::string& what, int side, std::intptr_t count);
extern bool show_active[SIDE_COUNT];

constexpr int TICK_MS = 17;

class Field : public ::testing::Test {
 protected:
  void SetUp() override;

  // The field's part of a tick, `ms` after the last one.
  static void tick(int ms = TICK_MS);
  // Gives the slots their places on the screen.
  static void draw();
};
