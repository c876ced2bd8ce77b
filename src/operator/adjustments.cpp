#include "operator/adjustments.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "books/prefs.h"
#include "io/led_value.h"  // led_update
#include "operator/info_pane.h"
#include "operator/main_menu.h"  // pane_page_version
#include "operator/menu.h"
#include "operator/payout_figures.h"
#include "operator/resets.h"  // credits_clear
#include "operator/settings_table.h"
#include "playfield/paytable.h"

namespace {

constexpr std::uintptr_t COIN_GAME_EXIT = 9;
constexpr std::uintptr_t PAYOUT_EXIT = 10;
constexpr std::uint32_t SETTINGS_MAX = 18;

// A setting with its row and its list.
struct Adjustment {
  const Setting* setting;
  MenuItem* row;
  Menu* list;
  std::vector<SettingOption> options;
  void (*page)();
};

struct Adjustments {
  std::uint32_t count = 0;
  Adjustment rows[SETTINGS_MAX];
};

Adjustments& state() {
  static Adjustments instance;
  return instance;
}

std::span<Adjustment> adjustments() {
  return {state().rows, state().count};
}

// The one whose row or list this is, or null.
template <typename T>
Adjustment* find(T* Adjustment::* part, const T* wanted) {
  const auto all = adjustments();
  const auto found = std::ranges::find(all, wanted, part);
  return found == all.end() ? nullptr : &*found;
}

void refresh(void (*page)()) {
  for (const Adjustment& a : adjustments()) {
    if (a.page == page) menu_set_item_text(a.row, "%s", setting_text(*a.setting).c_str());
  }
}

void apply(const Adjustment& a) {
  const std::uint32_t effects = a.setting->effects;
  if ((effects & (EFFECT_PAYTABLE | EFFECT_FIELD)) != 0) payout_recompute();
  if ((effects & EFFECT_PAYTABLE) != 0) bonus_value_reset();
  if ((effects & EFFECT_CLEAR_CREDITS) != 0) credits_clear();
  if ((effects & EFFECT_FIELD) != 0) led_update();
  const bool coin_page = a.page == pane_page_coin_game;
  if (coin_page) adjust_refresh_coin_rows();
  if (!coin_page || (effects & EFFECT_PAYTABLE) != 0) adjust_refresh_payout_rows();
}

std::uintptr_t value_chosen(std::uintptr_t action, MenuItem* item) {
  const Adjustment* a = find(&Adjustment::list, item != nullptr ? item->menu : menu_current());
  const bool chosen = item != nullptr && action < a->options.size();
  if (chosen) {
    setting_choose(*a->setting, a->options[action]);
    apply(*a);
  }
  a->page();
  menu_go_back(item);
  if (chosen) prefs_save();
  return MENU_STAY;
}

std::uintptr_t setting_chosen(std::uintptr_t /*action*/, MenuItem* item) {
  if (const Adjustment* a = item != nullptr ? find(&Adjustment::row, item) : nullptr) {
    menu_open_at_top(a->list);
    a->list->selected = setting_selected(*a->setting, a->options);
    return MENU_STAY;
  }
  pane_page_version();
  return menu_go_back(item);
}

Menu* build_list(const Adjustment& a, Menu* parent) {
  const auto values = static_cast<std::uint32_t>(a.options.size());
  Menu* list = menu_create(values + 2, value_chosen, parent, a.setting->question);
  for (std::uint32_t i = 0; i < values; ++i) {
    menu_add_item(list, i, 0, "%s", a.options[i].text.c_str());
  }
  menu_add_blank(list);
  menu_add_item(list, values, 0, "Cancel");
  return list;
}

void add_setting(Menu* menu, const Setting& setting, void (*page)()) {
  Adjustment& a = state().rows[state().count++];
  a.setting = &setting;
  a.options = setting.options();
  a.page = page;
  a.row = menu_add_item(menu, setting.action, 0, "%s", setting_text(setting).c_str());
  a.list = build_list(a, menu);
}

void set_disabled(const Adjustment& a, bool disabled) {
  a.row->flags = disabled ? ITEM_DISABLED : 0U;
}

}  // namespace

// The first menu of the two: it begins the list of adjustments anew.
Menu* coin_game_menu_build(Menu* parent) {
  state().count = 0;
  const auto settings = coin_game_settings();
  Menu* menu = menu_create(static_cast<std::uint32_t>(settings.size()) + 3, setting_chosen, parent,
                           "Coin/Game Adjustments Menu");
  for (const Setting& setting : settings) {
    if (setting.pref == PREF_TIMEOUT_SECONDS) menu_add_blank(menu);
    add_setting(menu, setting, pane_page_coin_game);
  }
  menu_add_blank(menu);
  menu_add_item(menu, COIN_GAME_EXIT, 0, "Exit");
  return menu;
}

Menu* payout_menu_build(Menu* parent) {
  const auto settings = payout_settings();
  Menu* menu = menu_create(static_cast<std::uint32_t>(settings.size()) + 2, setting_chosen, parent,
                           "Payout Adjustments Menu");
  for (const Setting& setting : settings) add_setting(menu, setting, pane_page_payout);
  menu_add_blank(menu);
  menu_add_item(menu, PAYOUT_EXIT, 0, "Exit");
  adjust_refresh_payout_rows();
  return menu;
}

void adjust_refresh_coin_rows() {
  refresh(pane_page_coin_game);
}

void adjust_refresh_payout_rows() {
  refresh(pane_page_payout);
  const bool tickets = pref_on(PREF_TICKET_USE);
  const bool fixed = pref_on(PREF_FIXED_TICKET);
  for (const Adjustment& a : adjustments()) {
    if (a.page != pane_page_payout) continue;
    switch (a.setting->pref) {
      case PREF_TICKET_USE:
        break;
      case PREF_FIXED_TICKET:
        set_disabled(a, !tickets);
        break;
      case PREF_FIXED_TICKETS_PER_GAME:
        set_disabled(a, !tickets || !fixed);
        break;
      default:
        set_disabled(a, !tickets || fixed);
        break;
    }
  }
}

void pane_page_coin_game() {
  pane_page("Coin/Game Adjustments");
  pane_payout_figures(0);
  pane_set_line(8, "Freeplay: No cost per frog");
  pane_set_line(10, "Coin Lockout: Block additional coins beyond cost to play");
  pane_set_line(12, "Currency Type: Display cost information in number of coins,");
  pane_set_line(13, "  plays per card swip, or in currency denominations");
  pane_set_line(15, "Coin Value: In dollars, euros, etc.");
  pane_set_line(17, "Coins To Play: Cost to start a game");
  pane_set_line(19, "Frogs Per Game: Frogs per play");
  pane_set_line(21, "Coins Per Swipe: Number of coins added per card swipe");
  pane_set_line(23, "Timeout (Seconds): Number of seconds game will wait before");
  pane_set_line(24, "  automatically launching frog after inserting credit");
}

void pane_page_payout() {
  pane_page("Payout Adjustments");
  pane_payout_figures(pref_int(PREF_FIXED_TICKETS_PER_GAME));
  pane_set_line(8, "Ticket Use: Disable to remove payouts and ticket advertisement");
  pane_set_line(10, "Fixed Ticket: Force identical payout for each play");
  pane_set_line(12, "Fixed Tickets Per Frog: Number of tickets to pay out per play");
  pane_set_line(13, "  when Fixed Ticket mode is active");
  pane_set_line(15, "Payout Percent: Target payout in normal operation");
  pane_set_line(17, "Ticket Value: Value of each ticket for use in paytable calculations");
  pane_set_line(19, "Minimum Tickets: Minimum number of tickets to pay out each game");
  pane_set_line(21, "Maximum Tickets: Ticket cap per game");
  pane_set_line(23, "Bonus Value: Base jackpot value (before boost or two point adjustment)");
  pane_set_line(25, "Boost Bonus: Double the jackpot value and double the number");
  pane_set_line(26, "  of games to bonus");
  pane_set_line(28, "Two Point Tickets: Tickets are double value");
}
