#include "operator/audit_pages.h"

#include <cstdint>

#include "books/audit_time.h"
#include "books/audits.h"
#include "operator/info_pane.h"
#include "operator/main_menu.h"  // pane_page_version
#include "operator/menu.h"

namespace {

enum LineKind {
  LINE_COUNT,   // one number
  LINE_COUNTS,  // left and right
  LINE_TIME,
  LINE_TIMES,
  LINE_PER_FROG,  // left and right, divided by the frogs played
  LINE_TIME_PER_FROG,
};

struct PageLine {
  int line;
  LineKind kind;
  const char* label;
  AuditIndex row;
};

constexpr PageLine SYSTEM_LINES[] = {
    {2, LINE_TIME, "Time Game On", AUDIT_TIME_GAME_ON},
    {3, LINE_TIMES, "Time Played", AUDIT_TIME_PLAYED},
    {4, LINE_COUNTS, "Frogs Played", AUDIT_GAMES_PLAYED},
    {6, LINE_TIME_PER_FROG, "Time Per Frog", AUDIT_TIME_TOTAL_PLAYED},
    {8, LINE_TIME, "Time Since Boot", AUDIT_TIME_SINCE_BOOT},
    {9, LINE_TIMES, "Time Played Since Boot", AUDIT_TIME_SINCE_BOOT_SIDE},
    {10, LINE_COUNTS, "Frogs Played Since Boot", AUDIT_GAMES_SINCE_BOOT},
    {12, LINE_COUNTS, "Repeat Games Played", AUDIT_REPEAT_PLAYS},
    {14, LINE_COUNT, "Boot Count", AUDIT_BOOT_COUNT},
    {15, LINE_COUNT, "Test Entry Count", AUDIT_TEST_ENTRY_COUNT},
    {16, LINE_COUNT, "Watchdog Count", AUDIT_WATCHDOG_COUNT},
    {17, LINE_COUNT, "Periodic Reboot Count", AUDIT_PERIODIC_REBOOT_COUNT},
    {19, LINE_COUNT, "I/O Checksum Failures", AUDIT_IO_CHECKSUM_FAILURES},
};
constexpr PageLine COIN_LINES[] = {
    {2, LINE_COUNTS, "Coins", AUDIT_COIN_DROPS},
    {3, LINE_COUNT, "Service Credits", AUDIT_SERVICE_CREDITS},
};
constexpr PageLine PAYOUT_LINES[] = {
    {2, LINE_COUNTS, "Tickets", AUDIT_TICKETS},
    {4, LINE_COUNTS, "Bug Tickets", AUDIT_BUG_TICKETS},
    {5, LINE_COUNTS, "Butterfly Tickets", AUDIT_BUTTERFLY_TICKETS},
    {6, LINE_COUNTS, "Tier 1 Log Tickets", AUDIT_BONUS_TICKETS},
    {7, LINE_COUNTS, "Tier 2 Log Tickets", AUDIT_DOUBLE_BONUS_TICKETS},
    {8, LINE_COUNTS, "Jackpot Tickets", AUDIT_JACKPOT_TICKETS},
    {9, LINE_COUNTS, "Mercy Tickets", AUDIT_FREE_TICKETS},
    {10, LINE_COUNTS, "Fixed Tickets", AUDIT_FIXED_TICKETS},
    {11, LINE_COUNTS, "Capped Tickets", AUDIT_CAPPED_TICKETS},
    {13, LINE_PER_FROG, "Tickets Per Frog", AUDIT_TICKETS},
    {15, LINE_PER_FROG, "Bug Tickets Per Frog", AUDIT_BUG_TICKETS},
    {16, LINE_PER_FROG, "Butterfly Tickets Per Frog", AUDIT_BUTTERFLY_TICKETS},
    {17, LINE_PER_FROG, "Tier 1 Log Tickets Per Frog", AUDIT_BONUS_TICKETS},
    {18, LINE_PER_FROG, "Tier 2 Log Tickets Per Frog", AUDIT_DOUBLE_BONUS_TICKETS},
    {19, LINE_PER_FROG, "Jackpot Tickets Per Frog", AUDIT_JACKPOT_TICKETS},
    {20, LINE_PER_FROG, "Mercy Tickets Per Frog", AUDIT_FREE_TICKETS},
    {21, LINE_PER_FROG, "Fixed Tickets Per Frog", AUDIT_FIXED_TICKETS},
    {22, LINE_PER_FROG, "Capped Tickets Per Frog", AUDIT_CAPPED_TICKETS},
};
constexpr PageLine GAME_LINES[] = {
    {2, LINE_COUNTS, "Bugs", AUDIT_BUGS},
    {3, LINE_COUNTS, "Butterflies", AUDIT_BUTTERFLIES},
    {4, LINE_COUNTS, "Tier 1 Logs", AUDIT_BONUSES},
    {5, LINE_COUNTS, "Tier 2 Logs", AUDIT_DOUBLE_BONUSES},
    {6, LINE_COUNTS, "Jackpots", AUDIT_JACKPOTS},
    {7, LINE_COUNTS, "Mercies", AUDIT_FREES},
};

struct TimeText {
  char text[AUDIT_TIME_SIZE];
};
TimeText time_text(std::int64_t ms) {
  TimeText text;
  audit_format_time(ms, text.text);
  return text;
}

std::int64_t time_of(const PageLine& line, int side) {
  return audits[static_cast<int>(line.row) + side].time_ms;
}

double per_frog(const PageLine& line, int side) {
  const std::int32_t frogs = audit_count(AUDIT_GAMES_PLAYED, side);
  return frogs < 1 ? 0.0 : static_cast<double>(audit_count(line.row, side)) / frogs;
}

// Nothing has a time per frog where no frog was played.
TimeText time_per_frog(const PageLine& line, int side) {
  const std::int32_t frogs = audit_count(AUDIT_GAMES_PLAYED, side);
  return frogs < 1 ? TimeText{"-"} : time_text(time_of(line, side) / frogs);
}

void write_line(const PageLine& line) {
  constexpr int L = SIDE_LEFT;
  constexpr int R = SIDE_RIGHT;
  switch (line.kind) {
    case LINE_COUNT:
      pane_set_line(line.line, "%-28s %14d", line.label, audit_count(line.row));
      break;
    case LINE_COUNTS:
      pane_set_line(line.line, "%-28s %14d %14d", line.label, audit_count(line.row, L),
                    audit_count(line.row, R));
      break;
    case LINE_TIME:
      pane_set_line(line.line, "%-28s %14s", line.label, time_text(time_of(line, L)).text);
      break;
    case LINE_TIMES:
      pane_set_line(line.line, "%-28s %14s %14s", line.label, time_text(time_of(line, L)).text,
                    time_text(time_of(line, R)).text);
      break;
    case LINE_PER_FROG:
      pane_set_line(line.line, "%-28s %14.3f %14.3f", line.label, per_frog(line, L),
                    per_frog(line, R));
      break;
    case LINE_TIME_PER_FROG:
      pane_set_line(line.line, "%-28s %14s %14s", line.label, time_per_frog(line, L).text,
                    time_per_frog(line, R).text);
      break;
  }
}

template <int count>
void write_page(const char* heading, const PageLine (&lines)[count]) {
  pane_page("%s", heading);
  for (const PageLine& line : lines) write_line(line);
}

enum AuditsAction : std::uintptr_t { PAGE_SYSTEM, PAGE_COIN, PAGE_PAYOUT, PAGE_GAME, PAGE_EXIT };

std::uintptr_t audits_chosen(std::uintptr_t action, MenuItem* item) {
  switch (action) {
    case PAGE_SYSTEM:
      pane_page_system_audits();
      break;
    case PAGE_COIN:
      pane_page_coin_audits();
      break;
    case PAGE_PAYOUT:
      pane_page_payout_audits();
      break;
    case PAGE_GAME:
      pane_page_game_audits();
      break;
    default:
      pane_page_version();
      return menu_go_back(item);
  }
  return MENU_STAY;
}

}  // namespace

Menu* audits_menu_build(Menu* parent) {
  return menu_build(parent, audits_chosen, "Audits Menu",
                    {"System Audits", "Coin Audits", "Payout Audits", "Game Audits", "", "Exit"});
}

void pane_page_system_audits() {
  write_page("System Audits", SYSTEM_LINES);
}
void pane_page_coin_audits() {
  write_page("Coin Audits", COIN_LINES);
}
void pane_page_payout_audits() {
  write_page("Payout Audits", PAYOUT_LINES);
}
void pane_page_game_audits() {
  write_page("Game Audits", GAME_LINES);
}
