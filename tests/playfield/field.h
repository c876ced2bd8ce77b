// The whole field without pictures, sound or board, on a clock set by hand.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "playfield/playfield.h"

// What the rules told the board, the shows and the disk, in order.
struct Outcome {
  std::string what;  // "add", "meter", "show", or "store" without side and count
  int side, count;
  bool operator==(const Outcome&) const = default;
};
void PrintTo(const Outcome& outcome, std::ostream* stream);

extern std::vector<Outcome> outcomes;
extern bool show_active[SIDE_COUNT];

constexpr int TICK_MS = 17;
constexpr int MANY_TICKS = 1000;  // bound of a loop: longer than any flight

class Field : public ::testing::Test {
 protected:
  void SetUp() override;

  // The field's part of a tick, `ms` after the last one.
  static void tick(int ms = TICK_MS);
  // The same without lanes and butterfly, which stand still.
  static void stations_tick(int ms = TICK_MS);
  // Gives the slots their places on the screen.
  static void draw();

  static void fill_lane(int lane, LaneCell cell);
  // No bugs, no logs, and a butterfly that stays parked.
  static void clear_field();
  // The first record of a side, put onto a lane, with its cell's middle at x 340.
  static Frog& frog_on(int side, int lane, FrogState state = FROG_RESTING);
  // Ends the frog's flight in the water or on the far bank.
  static void drown(Frog& frog);
  static void cross(Frog& frog);
};
