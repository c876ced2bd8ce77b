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
constexpr int MANY_TICKS = 1000;  // no flight is longer: a wait for its end has failed

class Field : public ::testing::Test {
 protected:
  void SetUp() override;

  // The field's part of a tick, `ms` after the last one.
  static void tick(int ms = TICK_MS);
  // The same for the stations alone: lanes and butterfly stand.
  static void stations_tick(int ms = TICK_MS);
  // Gives the slots their places on the screen.
  static void draw();

  static void fill_lane(int lane, LaneCell cell);
  // A meadow without bugs and a butterfly that stays parked: nothing but what the test puts there.
  static void clear_field();
  // The first record of a side, put onto a lane, with its cell's middle at x 340.
  static Frog& frog_on(int side, int lane, FrogState state = FROG_RESTING);
  // Ends a frog in the water, or on the far bank, by ticks of its station.
  static void drown(Frog& frog);
  static void cross(Frog& frog);
};
