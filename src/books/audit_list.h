// All counters of the books, one row each, with everything that other code needs to know about it:
// the stored table, the names in the code and the operator's audit pages come from here. The rows
// are in the files in this order; a pair is the Left row, then the Right row.
#pragma once

#include <cstdint>

enum AuditPage : std::uint8_t { NO_PAGE, SYSTEM_PAGE, COIN_PAGE, PAYOUT_PAGE, GAME_PAGE };
enum AuditKind : std::uint8_t { KIND_COUNT, KIND_TIME };

// X(symbol, name in the files, kind, 2 for a pair, page, its line there, line of its share per frog
// (0: none), label on the page)
// clang-format off
#define AUDIT_LIST(X) \
  X(TIME_GAME_ON,          "Time Game On",          KIND_TIME,  1, SYSTEM_PAGE,  2,  0, "Time Game On") \
  X(TIME_SINCE_BOOT,       "Time Since Boot",       KIND_TIME,  1, SYSTEM_PAGE,  8,  0, "Time Since Boot") \
  X(GAMES_PLAYED,          "Games Played",          KIND_COUNT, 2, SYSTEM_PAGE,  4,  0, "Frogs Played") \
  X(TIME_PLAYED,           "Time Played",           KIND_TIME,  2, SYSTEM_PAGE,  3,  0, "Time Played") \
  X(GAMES_SINCE_BOOT,      "Games Since Boot",      KIND_COUNT, 2, SYSTEM_PAGE, 10,  0, "Frogs Played Since Boot") \
  X(TIME_SINCE_BOOT_SIDE,  "Time Since Boot",       KIND_TIME,  2, SYSTEM_PAGE,  9,  0, "Time Played Since Boot") \
  X(TIME_TOTAL_PLAYED,     "Time Total Played",     KIND_TIME,  2, SYSTEM_PAGE,  0,  6, "Time") \
  X(REPEAT_PLAYS,          "Repeat Plays",          KIND_COUNT, 2, SYSTEM_PAGE, 12,  0, "Repeat Games Played") \
  X(BOOT_COUNT,            "Boot Count",            KIND_COUNT, 1, SYSTEM_PAGE, 14,  0, "Boot Count") \
  X(TEST_ENTRY_COUNT,      "Test Entry Count",      KIND_COUNT, 1, SYSTEM_PAGE, 15,  0, "Test Entry Count") \
  X(WATCHDOG_COUNT,        "Watchdog Count",        KIND_COUNT, 1, SYSTEM_PAGE, 16,  0, "Watchdog Count") \
  X(PERIODIC_REBOOT_COUNT, "Periodic Reboot Count", KIND_COUNT, 1, SYSTEM_PAGE, 17,  0, "Periodic Reboot Count") \
  X(IO_CHECKSUM_FAILURES,  "I/O Checksum Failures", KIND_COUNT, 1, SYSTEM_PAGE, 19,  0, "I/O Checksum Failures") \
  X(COIN_DROPS,            "Coin Drops",            KIND_COUNT, 2, COIN_PAGE,    2,  0, "Coins") \
  X(SERVICE_CREDITS,       "Service Credits",       KIND_COUNT, 1, COIN_PAGE,    3,  0, "Service Credits") \
  X(TICKETS,               "Tickets",               KIND_COUNT, 2, PAYOUT_PAGE,  2, 13, "Tickets") \
  X(TICKETS_OWED,          "Tickets Owed",          KIND_COUNT, 2, NO_PAGE,      0,  0, "") \
  X(CURRENT_CREDITS,       "Current Credits",       KIND_COUNT, 2, NO_PAGE,      0,  0, "") \
  X(CURRENT_COINS,         "Current Coins",         KIND_COUNT, 2, NO_PAGE,      0,  0, "") \
  X(BUGS,                  "Bugs",                  KIND_COUNT, 2, GAME_PAGE,    2,  0, "Bugs") \
  X(BUTTERFLIES,           "Butterflies",           KIND_COUNT, 2, GAME_PAGE,    3,  0, "Butterflies") \
  X(BONUSES,               "Bonuses",               KIND_COUNT, 2, GAME_PAGE,    4,  0, "Tier 1 Logs") \
  X(DOUBLE_BONUSES,        "Double Bonuses",        KIND_COUNT, 2, GAME_PAGE,    5,  0, "Tier 2 Logs") \
  X(JACKPOTS,              "Jackpots",              KIND_COUNT, 2, GAME_PAGE,    6,  0, "Jackpots") \
  X(FREES,                 "Frees",                 KIND_COUNT, 2, GAME_PAGE,    7,  0, "Mercies") \
  X(BUG_TICKETS,           "Bug Tickets",           KIND_COUNT, 2, PAYOUT_PAGE,  4, 15, "Bug Tickets") \
  X(BUTTERFLY_TICKETS,     "Butterfly Tickets",     KIND_COUNT, 2, PAYOUT_PAGE,  5, 16, "Butterfly Tickets") \
  X(BONUS_TICKETS,         "Bonus Tickets",         KIND_COUNT, 2, PAYOUT_PAGE,  6, 17, "Tier 1 Log Tickets") \
  X(DOUBLE_BONUS_TICKETS,  "Double Bonus Tickets",  KIND_COUNT, 2, PAYOUT_PAGE,  7, 18, "Tier 2 Log Tickets") \
  X(JACKPOT_TICKETS,       "Jackpot Tickets",       KIND_COUNT, 2, PAYOUT_PAGE,  8, 19, "Jackpot Tickets") \
  X(FREE_TICKETS,          "Free Tickets",          KIND_COUNT, 2, PAYOUT_PAGE,  9, 20, "Mercy Tickets") \
  X(FIXED_TICKETS,         "Fixed Tickets",         KIND_COUNT, 2, PAYOUT_PAGE, 10, 21, "Fixed Tickets") \
  X(CAPPED_TICKETS,        "Capped Tickets",        KIND_COUNT, 2, PAYOUT_PAGE, 11, 22, "Capped Tickets")
// clang-format on

// AUDIT_TICKETS and so on: the row of a single counter; of a pair, the Left row.
enum AuditIndex {
#define AUDIT_INDEX(symbol, name, kind, sides, page, line, per_frog, label) \
  AUDIT_##symbol, AUDIT_##symbol##_LAST = AUDIT_##symbol + (sides) - 1,
  AUDIT_LIST(AUDIT_INDEX)
#undef AUDIT_INDEX
      AUDIT_COUNT
};

struct Audit {
  AuditIndex row;
  const char* name;  // without the side
  AuditKind kind;
  int sides;
  AuditPage page;
  int line, per_frog_line;
  const char* label;
};

inline constexpr Audit AUDITS[] = {
#define AUDIT_ROW(symbol, ...) {AUDIT_##symbol, __VA_ARGS__},
    AUDIT_LIST(AUDIT_ROW)
#undef AUDIT_ROW
};

// A counter's name in the files, without the side. `row` is that of AUDIT_LIST.
constexpr const char* audit_name(AuditIndex row) {
  for (const Audit& audit : AUDITS) {
    if (audit.row == row) return audit.name;
  }
  return "";
}
