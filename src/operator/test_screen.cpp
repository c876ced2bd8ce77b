#include "operator/test_screen.h"

#include "operator/hardware_tests.h"
#include "operator/info_pane.h"
#include "operator/menu.h"
#include "operator/monitor_test.h"
#include "operator/volume_screen.h"

namespace {

void no_input() {}
void no_draw() {}

struct ScreenRow {
  TestScreen screen;
  void (*input)();
  void (*draw)();
};

template <TestScreen picture>
void draw_picture() {
  monitor_test_draw(picture);
}
template <bool attract>
void volume_input() {
  volume_screen_input(attract);
}
template <bool attract>
void volume_draw() {
  volume_screen_draw(attract);
}

constexpr ScreenRow SCREENS[] = {
    {TEST_NONE, no_input, no_draw},
    {TEST_SWITCHES, switch_test_input, switch_test_draw},
    {TEST_DIPS, dip_test_input, dip_test_draw},
    {TEST_COLOR_BARS, monitor_test_input, draw_picture<TEST_COLOR_BARS>},
    {TEST_WHITE, monitor_test_input, draw_picture<TEST_WHITE>},
    {TEST_RED, monitor_test_input, draw_picture<TEST_RED>},
    {TEST_GREEN, monitor_test_input, draw_picture<TEST_GREEN>},
    {TEST_BLUE, monitor_test_input, draw_picture<TEST_BLUE>},
    {TEST_CONVERGENCE, monitor_test_input, draw_picture<TEST_CONVERGENCE>},
    {TEST_COIN_METERS, meter_test_input, meter_test_draw},
    {TEST_WATCHDOG, watchdog_test_input, watchdog_test_draw},
    {TEST_VOLUME, volume_input<false>, volume_draw<false>},
    {TEST_ATTRACT_VOLUME, volume_input<true>, volume_draw<true>},
};
constexpr bool rows_are_in_order() {
  int n = 0;
  for (const ScreenRow& row : SCREENS) {
    if (row.screen != n++) return false;
  }
  return n == TEST_ATTRACT_VOLUME + 1;
}
static_assert(rows_are_in_order());

}  // namespace

Shared<TestScreen> test_screen{TEST_NONE};

std::uintptr_t test_screen_start(TestScreen screen) {
  pane_show(false);
  test_screen = screen;
  menu_open(nullptr);
  return MENU_STAY;
}

void test_screen_input() {
  SCREENS[test_screen].input();
}

void test_screen_draw() {
  SCREENS[test_screen].draw();
}
