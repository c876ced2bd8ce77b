#include "operator/menu_row.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "operator/menu.h"
#include "operator/test_screen.h"

namespace {

std::uintptr_t row_chosen(std::uintptr_t /*action*/, MenuItem* item) {
  const Menu& menu = *menu_current();
  const MenuRow* row = item != nullptr ? item->row : nullptr;
  if (row != nullptr) {
    if (row->begin != nullptr) row->begin();
    if (row->draw != nullptr) test_screen_start(*row);
    if (item->list != nullptr) menu_open_at_top(item->list);
    return MENU_STAY;
  }
  if (menu.leave != nullptr) menu.leave();
  return menu.parent == nullptr ? MENU_CLOSE : menu_go_back();
}

}  // namespace

Menu* menu_build(Menu* parent, const char* title, std::span<const MenuRow> rows, void (*page)(),
                 void (*leave)(), const char* last) {
  const auto hidden = std::ranges::count(rows, nullptr, &MenuRow::text);
  const auto capacity = static_cast<std::uint32_t>(std::ssize(rows) - hidden + 2);
  Menu* menu = menu_create(capacity, row_chosen, parent, title);
  menu->page = page;
  menu->leave = leave;
  std::uintptr_t action = 0;  // counts the rows with a text
  for (const MenuRow& row : rows) {
    if (row.text == nullptr) continue;
    if (row.text[0] == '\0') {
      menu_add_blank(menu);
      continue;
    }
    MenuItem* item = menu_add_item(menu, action++, 0, "%s", row.text);
    item->row = &row;
    if (row.list != nullptr) item->list = row.list(menu);
  }
  menu_add_blank(menu);
  menu_add_item(menu, action, 0, "%s", last);
  return menu;
}
