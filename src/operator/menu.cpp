#include "operator/menu.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <utility>
#include <vector>

#include "gfx/panel.h"  // gfx_rect_draw
#include "gfx/text.h"
#include "io/jamma.h"  // jamma_pressed
#include "operator/row_text.h"
#include "sound/jps.h"

namespace {

constexpr int LINE_HEIGHT_PX = 16;
constexpr int TITLE_HEIGHT_PX = 32;
constexpr std::uintptr_t LAST_ACTION = 255;
constexpr std::uint32_t FAINT = 0x40000000;
constexpr JammaPress MENU_PRESSES[] = {PRESS_P1S, PRESS_P2S, PRESS_C1,  PRESS_C2,
                                       PRESS_SRV, PRESS_TST, PRESS_VLU, PRESS_VLD};

struct MenuState {
  std::atomic<Menu*> current;  // written by the game thread, drawn by the main thread
  bool menu_wait_test;         // the operator hasn't released Test yet
};
constinit MenuState state{};

std::vector<std::unique_ptr<Menu>>& all_menus() {
  static std::vector<std::unique_ptr<Menu>> menus;
  return menus;
}

template <std::size_t SIZE>
void widen(Menu& menu, const SharedText<SIZE>& text) {
  menu.width = std::max<std::int32_t>(menu.width, text_width(FONT_8X12, text.copy().text));
}

bool can_be_selected(const Menu& menu, std::uint32_t row) {
  return (menu.items[row].flags & (ITEM_BLANK | ITEM_DISABLED)) == 0;
}

// The next selectable row in a direction. Without one, the row itself.
std::uint32_t next_row(const Menu& menu, std::uint32_t row, bool down, bool wrap) {
  if (menu.count == 0) return row;
  const std::uint32_t begun = row;
  const std::uint32_t last = menu.count - 1;
  do {
    const bool at_end = row == (down ? last : 0);
    if (at_end && !wrap) return begun;
    row = at_end ? (down ? 0 : last) : down ? row + 1 : row - 1;
  } while (!can_be_selected(menu, row) && row != begun);
  return row;
}

void move(Menu& menu, bool down) {
  menu.selected = next_row(menu, menu.selected, down, (menu.flags & MENU_WRAP) != 0);
  jps_bank_play_name("menu_over");
}

void choose(Menu& menu) {
  if (menu.selected >= menu.count) return;  // an empty menu
  MenuItem& item = menu.items[menu.selected];
  if (item.action > LAST_ACTION) {
    auto* next = reinterpret_cast<Menu*>(item.action);  // NOLINT: a row may open a menu
    next->parent = &menu;
    menu_open(next);
  } else if (menu.handler(item.action, &item) == MENU_CLOSE) {
    menu_open(nullptr);
  }
}

void accept(Menu& menu) {
  choose(menu);
  jps_bank_play_name("menu_select");
}

void cancel(Menu& menu) {
  if ((menu.flags & MENU_NO_CANCEL) == 0) {
    if (menu.parent == nullptr) {
      menu.handler(MENU_CLOSE, nullptr);
      menu_open(nullptr);
    } else {
      if ((menu.flags & MENU_CANCEL_NOTIFIES) != 0) menu.handler(MENU_CLOSE, nullptr);
      menu_open(menu.parent);
    }
  }
  jps_bank_play_name("menu_cancel");
}

}  // namespace

Menu* menu_create(std::uint32_t capacity, MenuHandler handler) {
  auto menu = std::make_unique<Menu>();
  menu->x = menu->y = 32;
  menu->width = 128;
  menu->height = 24 + LINE_HEIGHT_PX * static_cast<std::int32_t>(capacity);
  menu->flags = 0x15;
  menu->back_colour = 0x80000000;
  menu->bar_colour = 0xFF00C000;
  menu->item_colour = COLOUR_WHITE;
  menu->title_colour = 0xFF00C000;
  menu->capacity = capacity;
  menu->items = std::make_unique<MenuItem[]>(capacity);
  menu->handler = handler;
  all_menus().push_back(std::move(menu));
  return all_menus().back().get();
}

Menu* menu_create(std::uint32_t capacity, MenuHandler handler, Menu* parent, const char* title) {
  Menu* menu = menu_create(capacity, handler);
  menu->parent = parent;
  menu_set_title(menu, menu->title_colour, "%s", title);
  return menu;
}

void menu_set_title(Menu* menu, std::uint32_t colour, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  menu->title.format(format, arguments);
  va_end(arguments);
  menu->title_colour = colour;
  widen(*menu, menu->title);
}

MenuItem* menu_add_item(Menu* menu, std::uintptr_t action, std::uint32_t flags, const char* format,
                        ...) {
  if (menu->count == menu->capacity) return nullptr;
  MenuItem& item = menu->items[menu->count++];
  item.menu = menu;
  item.flags = format == nullptr ? flags | ITEM_BLANK : flags;
  item.colour = menu->item_colour;
  item.action = format == nullptr ? 0 : action;
  if ((item.flags & ITEM_BLANK) != 0) return &item;
  std::va_list arguments;
  va_start(arguments, format);
  item.text.format(format, arguments);
  va_end(arguments);
  widen(*menu, item.text);
  return &item;
}

void menu_set_item_text(MenuItem* item, const char* format, ...) {
  if (item == nullptr || format == nullptr || (item->flags & ITEM_BLANK) != 0) return;
  std::va_list arguments;
  va_start(arguments, format);
  item->text.format(format, arguments);
  va_end(arguments);
  widen(*item->menu, item->text);
}

void menus_release() {
  menu_reset();
  all_menus().clear();
}

void menu_open(Menu* menu) {
  if (menu != nullptr && menu->count > 0 && !can_be_selected(*menu, menu->selected)) {
    menu->selected = next_row(*menu, menu->selected, true, true);
  }
  state.current = menu;
}

void menu_open_at_top(Menu* menu) {
  if (menu->page != nullptr) menu->page();
  menu->selected = 0;
  menu_open(menu);
}

std::uintptr_t menu_go_back() {
  Menu* parent = menu_current()->parent;
  if (parent->page != nullptr) parent->page();
  menu_open(parent);
  return MENU_STAY;
}

bool menu_is_open() {
  return state.current != nullptr;
}

Menu* menu_current() {
  return state.current;
}

void menu_wait_for_test() {
  state.menu_wait_test = true;
}

void menu_input() {
  Menu* menu = state.current;
  if (menu == nullptr) return;
  if (state.menu_wait_test) {
    if (!jamma_pressed(PRESS_TST)) return;
    state.menu_wait_test = false;
    jamma_presses_clear(PRESS_TST);
  }
  if (jamma_pressed(PRESS_TST) || jamma_pressed(PRESS_P2S)) return accept(*menu);
  if (jamma_pressed(PRESS_SRV)) return cancel(*menu);
  if (jamma_pressed(PRESS_VLU)) return move(*menu, false);
  if (jamma_pressed(PRESS_VLD) || jamma_pressed(PRESS_P1S)) return move(*menu, true);
}

void menu_clear_presses() {
  for (const JammaPress press : MENU_PRESSES) {
    jamma_presses_pending(
        press);  // counts all presses so far, so that the next line drops them all
    jamma_presses_clear(press);
  }
}

void menu_draw() {
  const Menu* menu = state.current;
  if (menu == nullptr) return;
  const int left = menu->x - 2;
  const int top = menu->y - 8;
  const int width = menu->width + 16;
  gfx_rect_draw(left, top, width, menu->height + 16, menu->back_colour, menu->back_colour);
  int pen = menu->y;
  const auto title = menu->title.copy();
  if (title.text[0] != '\0') {
    text_draw(FONT_8X12, menu->title_colour, menu->x, pen, "%s", title.text);
    pen += TITLE_HEIGHT_PX;
  }
  for (std::uint32_t row = 0; row < menu->count; ++row, pen += LINE_HEIGHT_PX) {
    const MenuItem& item = menu->items[row];
    const std::uint32_t flags = item.flags;
    if ((flags & ITEM_BLANK) != 0) continue;
    if (row == menu->selected) {
      gfx_rect_draw(left, pen - 3, width, LINE_HEIGHT_PX, menu->bar_colour, menu->bar_colour);
    }
    const std::uint32_t colour =
        (flags & ITEM_DISABLED) != 0 ? (item.colour & 0x00FFFFFFU) | FAINT : item.colour.get();
    row_text_draw(colour, menu->x, pen, item.text.copy().text);
  }
}

void menu_reset() {
  state.current = nullptr;
  state.menu_wait_test = false;
}
