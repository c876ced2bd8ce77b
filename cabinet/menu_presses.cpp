#include "cabinet/menu_presses.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "cabinet/switches.h"
#include "operator/menu_tree.h"  // MAIN_ROWS, DIAGNOSTICS_ROWS

namespace {

// The texts of the rows, taken at compile time: no function that a row names is linked. Empty rows
// and rows that the menu doesn't show, which the selection passes over, are left out.
template <std::size_t N>
consteval std::array<std::string_view, N> texts(const MenuRow (&rows)[N]) {
  std::array<std::string_view, N> texts{};
  std::size_t count = 0;
  for (const MenuRow& row : rows) {
    if (row.text != nullptr && row.text[0] != '\0') texts[count++] = row.text;
  }
  return texts;
}
constexpr auto MAIN = texts(MAIN_ROWS);
constexpr auto DIAGNOSTICS = texts(DIAGNOSTICS_ROWS);

consteval std::string_view diagnostics_text() {
  for (const MenuRow& row : MAIN_ROWS) {
    if (row.list == diagnostics_menu_build) return row.text;
  }
  return {};
}
constexpr std::string_view TO_DIAGNOSTICS = diagnostics_text();

// Moves down to the row and chooses it. False if it isn't there.
template <std::size_t N>
bool choose(const std::array<std::string_view, N>& rows, std::string_view row,
            std::vector<int>& presses) {
  for (std::size_t down = 0; down < N && !rows[down].empty(); ++down) {
    if (rows[down] != row) continue;
    presses.insert(presses.end(), down, INPUT_VOLUME_DOWN);
    presses.push_back(INPUT_TEST);
    return true;
  }
  return false;
}

}  // namespace

std::vector<int> menu_presses(const std::string& row) {
  std::vector<int> presses;
  if (choose(MAIN, row, presses)) return presses;
  if (choose(MAIN, TO_DIAGNOSTICS, presses) && choose(DIAGNOSTICS, row, presses)) return presses;
  return {};
}
