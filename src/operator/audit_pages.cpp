// The audit pages. A page shows the counters as they were when it was opened. Game thread.
#include <cstdint>
#include <cstdio>

#include "books/audit_time.h"
#include "books/audits.h"
#include "operator/info_pane.h"
#include "operator/menu_tree.h"
#include "operator/trouble_line.h"

namespace {

struct TimeText {
  char text[AUDIT_TIME_SIZE];
};
TimeText time_text(std::int64_t ms) {
  TimeText text;
  audit_format_time(ms, text.text);
  return text;
}

std::int64_t time_of(const Audit& audit, int side) {
  return audits[audit.row + side].time_ms;
}

double count_per_frog(const Audit& audit, int side) {
  const std::int32_t frogs = audit_count(AUDIT_GAMES_PLAYED, side);
  return frogs < 1 ? 0.0 : static_cast<double>(audit_count(audit.row, side)) / frogs;
}

// Without a frog played there is no time per frog.
TimeText time_per_frog(const Audit& audit, int side) {
  const std::int32_t frogs = audit_count(AUDIT_GAMES_PLAYED, side);
  return frogs < 1 ? TimeText{"-"} : time_text(time_of(audit, side) / frogs);
}

constexpr int L = SIDE_LEFT, R = SIDE_RIGHT;

void write_line(const Audit& audit) {
  const bool pair = audit.sides == SIDE_COUNT;
  if (audit.kind == KIND_COUNT && pair) {
    pane_set_line(audit.line, "%-28s %14d %14d", audit.label, audit_count(audit.row, L),
                  audit_count(audit.row, R));
  } else if (audit.kind == KIND_COUNT) {
    pane_set_line(audit.line, "%-28s %14d", audit.label, audit_count(audit.row));
  } else if (pair) {
    pane_set_line(audit.line, "%-28s %14s %14s", audit.label, time_text(time_of(audit, L)).text,
                  time_text(time_of(audit, R)).text);
  } else {
    pane_set_line(audit.line, "%-28s %14s", audit.label, time_text(time_of(audit, L)).text);
  }
}

void write_line_per_frog(const Audit& audit) {
  char label[32];
  std::snprintf(label, sizeof label, "%s Per Frog", audit.label);
  if (audit.kind == KIND_COUNT) {
    pane_set_line(audit.per_frog_line, "%-28s %14.3f %14.3f", label, count_per_frog(audit, L),
                  count_per_frog(audit, R));
  } else {
    pane_set_line(audit.per_frog_line, "%-28s %14s %14s", label, time_per_frog(audit, L).text,
                  time_per_frog(audit, R).text);
  }
}

void write_page(AuditPage page, const char* heading) {
  pane_page("%s", heading);
  for (const Audit& audit : AUDITS) {
    if (audit.page != page) continue;
    if (audit.line > 0) write_line(audit);
    if (audit.per_frog_line > 0) write_line_per_frog(audit);
  }
}

void pane_page_system_audits() {
  write_page(SYSTEM_PAGE, "System Audits");
  pane_line_of_trouble(21);
}
void pane_page_coin_audits() {
  write_page(COIN_PAGE, "Coin Audits");
}
void pane_page_payout_audits() {
  write_page(PAYOUT_PAGE, "Payout Audits");
}
void pane_page_game_audits() {
  write_page(GAME_PAGE, "Game Audits");
}

constexpr MenuRow AUDITS_ROWS[] = {
    {"System Audits", pane_page_system_audits},
    {"Coin Audits", pane_page_coin_audits},
    {"Payout Audits", pane_page_payout_audits},
    {"Game Audits", pane_page_game_audits},
};

}  // namespace

Menu* audits_menu_build(Menu* parent) {
  return menu_build(parent, "Audits Menu", AUDITS_ROWS, [] { pane_page("Audits"); });
}
