// The button presses that lead to a row of the game's menus.
#pragma once

#include <string>
#include <vector>

// The switches to press, one after the other, to choose the row with this text in the main menu or
// in its diagnostics menu. They start from the main menu as the game opens it, on its first row.
// Empty if neither menu has such a row.
std::vector<int> menu_presses(const std::string& row);
