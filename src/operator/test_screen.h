// Full screens of operator mode, in place of the menus: hardware tests and the two volume screens.
// Input on the game thread and drawing on the main thread are both keyed by `test_screen`.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

enum TestScreen : std::int32_t {
  TEST_NONE = 0,
  TEST_SWITCHES = 1,
  TEST_DIPS = 2,
  TEST_COLOR_BARS = 3,
  TEST_WHITE = 4,
  TEST_RED = 5,
  TEST_GREEN = 6,
  TEST_BLUE = 7,
  TEST_CONVERGENCE = 8,
  TEST_COIN_METERS = 9,
  TEST_WATCHDOG = 10,
  TEST_VOLUME = 11,
  TEST_ATTRACT_VOLUME = 12,
};

extern Shared<TestScreen> test_screen;  // game thread

// Hides the pane, closes the menu and puts a screen in its place. Returns MENU_STAY. Game thread.
std::uintptr_t test_screen_start(TestScreen screen);

void test_screen_input();  // game thread, each tick of operator mode without an open menu
void test_screen_draw();   // main thread
