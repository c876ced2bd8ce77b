// Rows of a menu as a table: what a row shows and what choosing it does.
#pragma once

#include <span>

struct Menu;

struct MenuRow {
  const char* text = nullptr;  // "" is an empty row; null: no row of the menu, only a screen
  void (*begin)() = nullptr;   // runs first; all that a row without a list or a screen does
  Menu* (*list)(Menu* parent) = nullptr;  // builds the menu that the row opens
  void (*input)() = nullptr;              // one tick of the full screen that the row opens
  void (*draw)() = nullptr;               // its drawing, on the main thread; all else: game thread
};

// Builds a menu of these rows, and below them an empty row and a last one that leads back to the
// parent. `page` writes what the pane shows beside the menu. `leave` runs before the last row or
// Service leads back; in a menu without a parent it ends operator mode. Start-up.
Menu* menu_build(Menu* parent, const char* title, std::span<const MenuRow> rows, void (*page)(),
                 void (*leave)() = nullptr, const char* last = "Exit");
