#include "operator/resets.h"

#include <cstdint>

#include "books/audits.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "frame/sides.h"
#include "frame/tick_timers.h"  // credit_wait_ms
#include "frame/ticket_status.h"
#include "io/jamma.h"
#include "operator/adjustments.h"
#include "operator/info_pane.h"
#include "operator/menu.h"
#include "operator/menu_tree.h"
#include "playfield/paytable.h"  // payout_recompute

namespace {

void tickets_clear() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    journal_put(JOURNAL_TICKETS_CLEARED,
                {side, ticket_status.tickets_owed[side], ticket_status.tickets_queued[side]});
    jamma_command(JAMMA_CLEAR_TICKETS, side);
  }
}

void books_clear() {
  audits_reset();
  audits_note();
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

struct Resets {
  Menu* sure;          // the confirmation, shared by all resets
  JournalReset which;  // for the journal
  void (*reset)();     // what "Yes" does
};
constinit Resets state{};

void ask(const char* question, JournalReset which, void (*reset)()) {
  state.which = which;
  state.reset = reset;
  menu_set_title(state.sure, state.sure->title_colour, "%s", question);
  menu_open_at_top(state.sure);
}

constexpr MenuRow RESETS_ROWS[] = {
    {"Clear Coins", [] { ask("REALLY Clear Coins?", RESET_COINS, credits_clear); }},
    {"Clear Tickets", [] { ask("REALLY Clear Tickets?", RESET_TICKETS, tickets_clear); }},
    {"Reset Audits", [] { ask("REALLY Clear Audits?", RESET_AUDITS, books_clear); }},
    {"Reset Adjustments",
     [] { ask("REALLY Clear Adjustments?", RESET_ADJUSTMENTS, adjustments_clear); }},
    {"Factory Restore",
     [] { ask("REALLY Perform Factory Restore?", RESET_FACTORY, factory_restore); }},
    {"CRC Check", [] { ask("REALLY Check CRC Next Boot?", RESET_CHECK, check_at_next_boot); }},
};

void go_back() {
  menu_go_back();
}

void yes() {
  journal_put(JOURNAL_RESET, {static_cast<std::int32_t>(state.which)});
  state.reset();
  go_back();
}

constexpr MenuRow SURE_ROWS[] = {{"Yes", yes}, {"No", go_back}};

}  // namespace

Menu* resets_menu_build(Menu* parent) {
  Menu* menu = menu_build(parent, "Resets Menu", RESETS_ROWS, [] { pane_page("Resets"); });
  state = {menu_build(menu, "Are you SURE?", SURE_ROWS, nullptr, nullptr, "Cancel"), {}, nullptr};
  return menu;
}

void credits_clear() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    journal_put(JOURNAL_CREDITS_CLEARED, {side, audit_count(AUDIT_CURRENT_CREDITS, side),
                                          audit_count(AUDIT_CURRENT_COINS, side)});
    audits[AUDIT_CURRENT_CREDITS + side].count = 0;
    audits[AUDIT_CURRENT_COINS + side].count = 0;
    tick_timers.credit_wait_ms[side] = 0;
  }
  audits_save();
}
