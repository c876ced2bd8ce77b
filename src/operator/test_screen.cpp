#include "operator/test_screen.h"

#include "operator/hardware_tests.h"
#include "operator/info_pane.h"
#include "operator/menu.h"
#include "operator/monitor_test.h"
#include "operator/volume_screen.h"

Shared<TestScreen> test_screen{TEST_NONE};

std::uintptr_t test_screen_start(TestScreen screen) {
  pane_show(false);
  test_screen = screen;
  menu_open(nullptr);
  return MENU_STAY;
}

void test_screen_input() {
  switch (const TestScreen screen = test_screen) {
    case TEST_NONE:
      break;
    case TEST_SWITCHES:
      switch_test_input();
      break;
    case TEST_DIPS:
      dip_test_input();
      break;
    case TEST_COLOR_BARS:
    case TEST_WHITE:
    case TEST_RED:
    case TEST_GREEN:
    case TEST_BLUE:
    case TEST_CONVERGENCE:
      monitor_test_input();
      break;
    case TEST_COIN_METERS:
      meter_test_input();
      break;
    case TEST_WATCHDOG:
      watchdog_test_input();
      break;
    case TEST_VOLUME:
    case TEST_ATTRACT_VOLUME:
      volume_screen_input(screen == TEST_ATTRACT_VOLUME);
      break;
  }
}

void test_screen_draw() {
  switch (const TestScreen screen = test_screen) {
    case TEST_NONE:
      break;
    case TEST_SWITCHES:
      switch_test_draw();
      break;
    case TEST_DIPS:
      dip_test_draw();
      break;
    case TEST_COLOR_BARS:
    case TEST_WHITE:
    case TEST_RED:
    case TEST_GREEN:
    case TEST_BLUE:
    case TEST_CONVERGENCE:
      monitor_test_draw(screen);
      break;
    case TEST_COIN_METERS:
      meter_test_draw();
      break;
    case TEST_WATCHDOG:
      watchdog_test_draw();
      break;
    case TEST_VOLUME:
    case TEST_ATTRACT_VOLUME:
      volume_screen_draw(screen == TEST_ATTRACT_VOLUME);
      break;
  }
}
