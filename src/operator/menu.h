// The operator's list engine: one menu at a time, moved through with the cabinet's own buttons.
//
// Menus are built once and live as long as the program. Row texts, flags and the selection are
// written by start-up and then by the game thread, and read by the drawing without a lock.
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
  MENU_CANCEL_NOTIFIES = 0x10,  // cancelling into a parent calls the handler first
};
enum ItemFlags : std::uint32_t {
  ITEM_BLANK = 1,     // an empty row, not drawn
  ITEM_DISABLED = 2,  // drawn faint; like a blank row it can't be selected
};

// What a handler returns, and the action it gets, with no item, when the operator cancels.
constexpr std::uintptr_t MENU_CLOSE = 0x1009;  // leave with no menu open
constexpr std::uintptr_t MENU_STAY = 0x100A;   // the handler has opened what comes next

struct MenuItem {
  Menu* menu;  // the owner
  Shared<std::uint32_t> flags;
  Shared<std::uint32_t> colour;  // 0xAARRGGBB
  std::uintptr_t action;         // given to the handler; above 255 the address of a Menu
  SharedText<48> text;           // "%%" in it shows as "%"
  const MenuRow* row;            // of the table that it comes from; null: of none
  Menu* list;                    // the menu that it opens; null: none
};

using MenuHandler = std::uintptr_t (*)(std::uintptr_t action, MenuItem* item);

struct Menu {
  Menu* parent;                // where cancel leads; null for the main menu
  std::int32_t x, y;           // layout position of the text
  Shared<std::int32_t> width;  // of the text; grows to the widest ever given and never shrinks
  std::int32_t height;
  std::uint32_t flags;                                 // MenuFlags
  std::uint32_t back_colour, bar_colour, item_colour;  // 0xAARRGGBB
  SharedText<48> title;                                // empty: no heading
  Shared<std::uint32_t> title_colour;
  std::uint32_t capacity, count;  // rows allocated and added
  Shared<std::uint32_t> selected;
  std::unique_ptr<MenuItem[]> items;
  MenuHandler handler;
  void (*page)();   // writes what the pane shows beside the menu; null: what it shows already
  void (*leave)();  // runs before the menu is left; null: nothing
};

// Building: start-up.
Menu* menu_create(std::uint32_t capacity, MenuHandler handler);
Menu* menu_create(std::uint32_t capacity, MenuHandler handler, Menu* parent, const char* title);
[[gnu::format(printf, 3, 4)]] void menu_set_title(Menu* menu, std::uint32_t colour,
                                                  const char* format, ...);
// Appends a row; a null format makes an empty one, with action 0. Null if all rows are taken.
[[gnu::format(printf, 4, 5)]] MenuItem* menu_add_item(Menu* menu, std::uintptr_t action,
                                                      std::uint32_t flags, const char* format, ...);
inline void menu_add_blank(Menu* menu) {
  menu_add_item(menu, 0, ITEM_BLANK, nullptr);
}
// Rewrites a row in place. Nothing for no row or a blank one. Game thread.
[[gnu::format(printf, 2, 3)]] void menu_set_item_text(MenuItem* item, const char* format, ...);
// Releases all menus. Shutdown.
void menus_release();

// Makes a menu the current one, or closes all with null. A selection that stands on a row which
// can't hold it moves forward to one that can, from the last row to the first. Game thread.
void menu_open(Menu* menu);
// The same with the menu's page, and the selection on its first row.
void menu_open_at_top(Menu* menu);
// Back to the parent of the open menu, with the parent's page. Returns MENU_STAY. Game thread.
std::uintptr_t menu_go_back();
// True while a menu is open; it then takes the cabinet's buttons. Any thread.
bool menu_is_open();
// The menu that is open, or null. Game thread.
Menu* menu_current();

// Ignores all buttons until the held Test switch, by which the operator came in, was let go.
void menu_wait_for_test();
// One tick of the open menu. Game thread.
void menu_input();
// Zeroes the pending presses of all buttons that menus and test screens take. Game thread.
void menu_clear_presses();
// Main thread.
void menu_draw();

// Nothing open, nothing waited for.
void menu_reset();
