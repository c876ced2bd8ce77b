#include "operator/adjustments.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "books/prefs.h"
#include "io/led_value.h"  // led_update
#include "operator/info_pane.h"
#include "operator/menu.h"
#include "operator/menu_tree.h"
#include "operator/payout_figures.h"
#include "operator/resets.h"  // credits_clear
#include "operator/setting_values.h"
#include "playfield/paytable.h"

namespace {

constexpr int HELP_FIRST_LINE = 8;

// A setting with its row and its list.
struct Adjustment {
  const Setting* setting;
  MenuItem* row;
  Menu* list;
  std::vector<SettingOption> options;
};

std::vector<Adjustment>& adjustments() {
  static std::vector<Adjustment> instance;
  return instance;
}

const Adjustment& of_list(const Menu* list) {
  return *std::ranges::find(adjustments(), list, &Adjustment::list);
}

bool can_be_chosen(SettingNeed need) {
  const bool tickets = pref_on(PREF_TICKET_USE);
  const bool fixed = pref_on(PREF_FIXED_TICKET);
  switch (need) {
    case NEEDS_NOTHING:
      return true;
    case NEEDS_TICKETS:
      return tickets;
    case NEEDS_FIXED_TICKETS:
      return tickets && fixed;
    case NEEDS_TICKETS_BY_CATCH:
      return tickets && !fixed;
  }
  return true;
}

void refresh(SettingMenu menu) {
  for (const Adjustment& a : adjustments()) {
    if (a.setting->menu != menu) continue;
    menu_set_item_text(a.row, "%s", setting_text(*a.setting).c_str());
    a.row->flags = can_be_chosen(a.setting->needs) ? 0U : ITEM_DISABLED;
  }
}

void apply(const Setting& setting) {
  const std::uint32_t effects = setting.effects;
  if ((effects & (EFFECT_PAYTABLE | EFFECT_FIELD)) != 0) payout_recompute();
  if ((effects & EFFECT_PAYTABLE) != 0) bonus_value_reset();
  if ((effects & EFFECT_CLEAR_CREDITS) != 0) credits_clear();
  if ((effects & EFFECT_FIELD) != 0) led_update();
  adjust_refresh_coin_rows();
  adjust_refresh_payout_rows();
}

std::uintptr_t value_chosen(std::uintptr_t action, MenuItem* item) {
  const Adjustment& a = of_list(menu_current());
  const bool chosen = item != nullptr && action < a.options.size();
  if (chosen) {
    setting_choose(*a.setting, a.options[action]);
    apply(*a.setting);
  }
  menu_go_back();
  if (chosen) prefs_save();
  return MENU_STAY;
}

std::uintptr_t setting_chosen(std::uintptr_t /*action*/, MenuItem* item) {
  if (item == nullptr || item->list == nullptr) return menu_go_back();
  const Adjustment& a = of_list(item->list);
  menu_open_at_top(a.list);
  a.list->selected = setting_selected(*a.setting, a.options);
  return MENU_STAY;
}

Menu* build_list(const Setting& setting, const std::vector<SettingOption>& options, Menu* parent) {
  const auto values = static_cast<std::uint32_t>(options.size());
  Menu* list = menu_create(values + 2, value_chosen, parent, setting.question);
  for (std::uint32_t i = 0; i < values; ++i) {
    menu_add_item(list, i, 0, "%s", options[i].text.c_str());
  }
  menu_add_blank(list);
  menu_add_item(list, values, 0, "Cancel");
  return list;
}

void add_setting(Menu* menu, const Setting& setting) {
  auto options = setting_options(setting);
  MenuItem* row = menu_add_item(menu, setting.action, 0, "%s", setting_text(setting).c_str());
  row->list = build_list(setting, options, menu);
  adjustments().push_back({&setting, row, row->list, std::move(options)});
}

// Builds a menu with each setting at its place, a blank row where a place has none, and "Exit".
Menu* build(SettingMenu which, Menu* parent, const char* title, void (*page)()) {
  std::erase_if(adjustments(), [&](const Adjustment& a) { return a.setting->menu == which; });
  const std::size_t places = setting_places(which);
  Menu* menu = menu_create(static_cast<std::uint32_t>(places) + 2, setting_chosen, parent, title);
  menu->page = page;
  for (std::size_t action = 0; action < places; ++action) {
    if (const Setting* setting = setting_at(which, action)) {
      add_setting(menu, *setting);
    } else {
      menu_add_blank(menu);
    }
  }
  menu_add_blank(menu);
  menu_add_item(menu, places, 0, "Exit");
  refresh(which);
  return menu;
}

void write_help(SettingMenu menu) {
  int line = HELP_FIRST_LINE;
  for (std::size_t action = 0; action < setting_places(menu); ++action) {
    const Setting* setting = setting_at(menu, action);
    if (setting == nullptr) continue;
    std::istringstream help(setting->help);
    for (std::string text; std::getline(help, text);) pane_set_line(line++, "%s", text.c_str());
    ++line;
  }
}

}  // namespace

Menu* coin_game_menu_build(Menu* parent) {
  return build(COIN_GAME_MENU, parent, "Coin/Game Adjustments Menu", pane_page_coin_game);
}

Menu* payout_menu_build(Menu* parent) {
  return build(PAYOUT_MENU, parent, "Payout Adjustments Menu", pane_page_payout);
}

void adjust_refresh_coin_rows() {
  refresh(COIN_GAME_MENU);
}

void adjust_refresh_payout_rows() {
  refresh(PAYOUT_MENU);
}

void pane_page_coin_game() {
  pane_page("Coin/Game Adjustments");
  pane_payout_figures(0);
  write_help(COIN_GAME_MENU);
}

void pane_page_payout() {
  pane_page("Payout Adjustments");
  pane_payout_figures(pref_int(PREF_FIXED_TICKETS_PER_GAME));
  write_help(PAYOUT_MENU);
}
