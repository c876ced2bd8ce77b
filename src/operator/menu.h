// The operator's menu engine: one menu at a time, operated with the cabinet's own buttons.
//
// Menus are built once, at start-up, and live as long as the program. The game thread writes row
// texts, flags and the selection; the main thread reads them for drawing, without a lock.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/shared.h"       // Shared
#include "platform/shared_text.h"  // SharedText

struct Menu;
struct MenuRow;

enum MenuFlags : std::uint32_t {
  MENU_WRAP = 0x04,             // the selection wraps at both ends
  MENU_NO_CANCEL = 0x08,        // Service does nothing but its sound
  MENU_CANCEL_NOTIFIES = 0x10,  // a cancel that opens the parent calls the handler first
};
enum ItemFlags : std::uint32_t {
  ITEM_BLANK = 1,     // an empty row, not drawn
  ITEM_DISABLED = 2,  // drawn faint; can't be selected, like a blank row
};

// What a handler returns. MENU_CLOSE is also the action it gets, with no item, on a cancel.
constexpr std::uintptr_t MENU_CLOSE = 0x1009;  // leave with no menu open
constexpr std::uintptr_t MENU_STAY = 0x100A;   // the handler has opened what comes next

struct MenuItem {
  Menu* menu;  // the owner
  Shared<std::uint32_t> flags;
  Shared<std::uint32_t> colour;  // 0xAARRGGBB
  std::uintptr_t action;         // given to the handler; above 255 the address of a Menu
  SharedText<48> text;           // "%%" in it shows as "%"
  const MenuRow* row;            // in the table that the item comes from, or null
  Menu* list;                    // the menu that it opens, or null
};

using MenuHandler = std::uintptr_t (*)(std::uintptr_t action, MenuItem* item);

struct Menu {
  Menu* parent;                // where cancel leads; null for the main menu
  std::int32_t x, y;           // layout position of the text
  Shared<std::int32_t> width;  // of the text; grows to the widest text so far and never shrinks
  std::int32_t height;
  std::uint32_t flags;                                 // MenuFlags
  std::uint32_t back_colour, bar_colour, item_colour;  // 0xAARRGGBB
  SharedText<48> title;                                // empty: no heading
  Shared<std::uint32_t> title_colour;
  std::uint32_t capacity, count;  // rows allocated and added
  Shared<std::uint32_t> selected;
  std::unique_ptr<MenuItem[]> items;
  MenuHandler handler;
  void (*page)();   // writes the pane beside the menu; null: the pane stays as it is
  void (*leave)();  // runs before the menu closes; null: nothing to do
};

// These build a menu, at start-up.
Menu* menu_create(std::uint32_t capacity, MenuHandler handler);
Menu* menu_create(std::uint32_t capacity, MenuHandler handler, Menu* parent, const char* title);
[[gnu::format(printf, 3, 4)]] void menu_set_title(Menu* menu, std::uint32_t colour,
                                                  const char* format, ...);
// Appends a row. A null format makes a blank row with action 0. Returns null if the menu is full.
[[gnu::format(printf, 4, 5)]] MenuItem* menu_add_item(Menu* menu, std::uintptr_t action,
                                                      std::uint32_t flags, const char* format, ...);
inline void menu_add_blank(Menu* menu) {
  menu_add_item(menu, 0, ITEM_BLANK, nullptr);
}
// Changes a row's text. Does nothing for null or a blank row. Game thread.
[[gnu::format(printf, 2, 3)]] void menu_set_item_text(MenuItem* item, const char* format, ...);
// Releases all menus. Shutdown.
void menus_release();

// Opens a menu, or closes all with null. If the selected row can't be selected any more, the
// selection moves down to the next row that can, and from the last row to the first. Game thread.
void menu_open(Menu* menu);
// Writes the menu's page, and opens the menu with the selection on its first row.
void menu_open_at_top(Menu* menu);
// Writes the page of the open menu's parent and opens the parent. Returns MENU_STAY. Game thread.
std::uintptr_t menu_go_back();
// Whether a menu is open. The open menu gets the cabinet's buttons. Any thread.
bool menu_is_open();
// The open menu, or null. Game thread.
Menu* menu_current();

// Ignores all buttons until the operator releases the Test switch that opened the menu.
void menu_wait_for_test();
// Handles the buttons for the open menu, once per tick. Game thread.
void menu_input();
// Drops the pending presses of all buttons that menus and test screens use. Game thread.
void menu_clear_presses();
// Main thread.
void menu_draw();

// Closes the open menu and stops waiting for Test.
void menu_reset();
