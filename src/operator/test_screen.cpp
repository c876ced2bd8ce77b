#include "operator/test_screen.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "operator/info_pane.h"
#include "operator/menu.h"
#include "operator/menu_tree.h"

namespace {

// The row of each screen, by its number. Number 0, and those after the last, have none.
constexpr auto SCREENS = [] {
  std::array<const MenuRow*, 1 + std::size(DIAGNOSTICS_ROWS) + std::size(MAIN_ROWS)> screens{};
  std::size_t last = 0;
  const auto add = [&](const MenuRow& row) {
    if (row.draw != nullptr) screens[++last] = &row;
  };
  std::ranges::for_each(DIAGNOSTICS_ROWS, add);
  std::ranges::for_each(MAIN_ROWS, add);
  return screens;
}();

constinit Menu* came_from = nullptr;  // game thread

const MenuRow* row_of_screen() {
  return SCREENS[static_cast<std::size_t>(test_screen.get())];
}

}  // namespace

Shared<std::int32_t> test_screen{0};

void test_screen_start(const MenuRow& row) {
  came_from = menu_current();
  pane_show(false);
  test_screen = static_cast<std::int32_t>(std::ranges::find(SCREENS, &row) - SCREENS.begin());
  menu_open(nullptr);
}

void test_screen_end() {
  test_screen = 0;
  menu_open(came_from);
  pane_show(true);
}

void test_screen_input() {
  if (const MenuRow* row = row_of_screen()) row->input();
}

void test_screen_draw() {
  if (const MenuRow* row = row_of_screen()) row->draw();
}
