#include "operator/resets.h"

#include <cstdint>
#include <iterator>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/sides.h"
#include "frame/tick_timers.h"  // credit_wait_ms
#include "io/jamma.h"
#include "operator/adjustments.h"
#include "operator/info_pane.h"
#include "operator/main_menu.h"  // pane_page_version
#include "operator/menu.h"
#include "playfield/paytable.h"  // payout_recompute

namespace {

void tickets_clear() {
  jamma_command(JAMMA_CLEAR_TICKETS, SIDE_LEFT);
  jamma_command(JAMMA_CLEAR_TICKETS, SIDE_RIGHT);
}

void books_clear() {
  audits_reset();
  audits_save();
}

void settings_clear() {
  prefs_reset();
  prefs_save();
  adjust_refresh_coin_rows();
  adjust_refresh_payout_rows();
  payout_recompute();
}

void adjustments_clear() {
  settings_clear();
  credits_clear();
}

void factory_restore() {
  tickets_clear();
  books_clear();
  settings_clear();
}

void check_at_next_boot() {
  prefs[PREF_CHECK_CRC].int_value = 1;
  prefs_save();
}

struct ResetRow {
  std::uintptr_t action;
  const char* text;
  const char* question;
  void (*reset)();
};
constexpr ResetRow RESET_ROWS[] = {
    {0, "Clear Coins", "REALLY Clear Coins?", credits_clear},
    {1, "Clear Tickets", "REALLY Clear Tickets?", tickets_clear},
    {2, "Reset Audits", "REALLY Clear Audits?", books_clear},
    {3, "Reset Adjustments", "REALLY Clear Adjustments?", adjustments_clear},
    {4, "Factory Restore", "REALLY Perform Factory Restore?", factory_restore},
    {5, "CRC Check", "REALLY Check CRC Next Boot?", check_at_next_boot},
};
constexpr std::uintptr_t RESET_COUNT = std::size(RESET_ROWS);
constexpr bool rows_are_in_order() {
  for (std::uintptr_t i = 0; i < RESET_COUNT; ++i) {
    if (RESET_ROWS[i].action != i) return false;
  }
  return true;
}
static_assert(rows_are_in_order());

enum SureAction : std::uintptr_t { SURE_YES, SURE_NO, SURE_CANCEL };

struct Resets {
  Menu* sure;           // one question for all of them
  const ResetRow* row;  // that it is about
};
constinit Resets state{};

std::uintptr_t sure_chosen(std::uintptr_t action, MenuItem* item) {
  if (action == SURE_YES) state.row->reset();
  pane_page("Resets");
  return menu_go_back(item);
}

std::uintptr_t resets_chosen(std::uintptr_t action, MenuItem* item) {
  if (action < RESET_COUNT) {
    state.row = &RESET_ROWS[action];
    menu_set_title(state.sure, state.sure->title_colour, "%s", state.row->question);
    menu_open_at_top(state.sure);
    return MENU_STAY;
  }
  pane_page_version();
  return menu_go_back(item);
}

}  // namespace

Menu* resets_menu_build(Menu* parent) {
  Menu* menu = menu_create(RESET_COUNT + 2, resets_chosen, parent, "Resets Menu");
  for (const ResetRow& row : RESET_ROWS) menu_add_item(menu, row.action, 0, "%s", row.text);
  menu_add_blank(menu);
  menu_add_item(menu, RESET_COUNT, 0, "Exit");
  state = {menu_build(menu, sure_chosen, "Are you SURE?", {"Yes", "No", "", "Cancel"}), nullptr};
  return menu;
}

void credits_clear() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    audits[AUDIT_CURRENT_CREDITS + side].count = 0;
    audits[AUDIT_CURRENT_COINS + side].count = 0;
    tick_timers.credit_wait_ms[side] = 0;
  }
  audits_save();
}
