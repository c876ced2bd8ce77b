// Menus as tables of rows: what a row shows and what choosing it does.
#pragma once

#include <span>

struct Menu;

struct MenuRow {
  const char* text = nullptr;  // "" is a blank row; null: a screen that isn't in the menu
  void (*begin)() = nullptr;   // runs first, before the row opens its menu or screen
  Menu* (*list)(Menu* parent) = nullptr;  // builds the menu that the row opens
  void (*input)() = nullptr;              // handles one tick of the full screen that the row opens
  void (*draw)() = nullptr;  // draws that screen, on the main thread; all else: game thread
};

// Builds a menu of these rows, a blank row, and a last row that goes back to the parent. `page`
// writes the pane beside the menu. `leave` runs before the last row or Service goes back; without a
// parent they close all menus. Start-up.
Menu* menu_build(Menu* parent, const char* title, std::span<const MenuRow> rows, void (*page)(),
                 void (*leave)() = nullptr, const char* last = "Exit");
