// The whole field without pictures, sound or board, on a clock set by hand.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "playfield/playfield.h"

// What the rules told the board, the shows, the LED board and the disk, in order.
struct Outcome {
  std::string what;  // "add", "meter", "show"; "store" and "led", without side and count
  int side, count;
  bool operator==(const Outcome&) const = default;
};
void PrintTo(const Outcome& outcome, std::ostream* stream);

extern std::vector<Outcome> outcomes;
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
