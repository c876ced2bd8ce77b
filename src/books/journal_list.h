// All kinds of events of the journal, one row each: the game writes its lines from here, and the
// readers know them from here. docs/journal.md says what each field means. A line is
//
//   2026-11-25T19:13:09.123Z 17 coin side=left coins=1 part=0 credits=1
//
// with the time in UTC, the boot's number, the kind, and all fields of its row in their order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

enum JournalKind : std::uint8_t {
  JOURNAL_START,
  JOURNAL_BOOKS,
  JOURNAL_COIN,
  JOURNAL_SWIPE,
  JOURNAL_SERVICE,
  JOURNAL_LAUNCH,
  JOURNAL_CATCH,
  JOURNAL_END,
  JOURNAL_TICKETS,
  JOURNAL_RESTORED,
  JOURNAL_PAPER,
  JOURNAL_FAULT,
  JOURNAL_FAULT_OVER,
  JOURNAL_LINK_LOST,
  JOURNAL_LINK_BACK,
  JOURNAL_TEST_ENTERED,
  JOURNAL_TEST_LEFT,
  JOURNAL_SETTING,
  JOURNAL_RESET,
  JOURNAL_CREDITS_CLEARED,
  JOURNAL_TICKETS_CLEARED,
  JOURNAL_WATCHDOG,
  JOURNAL_NOT_STORED,
  JOURNAL_STORED,
  JOURNAL_LOST,
  JOURNAL_GOING_DOWN,
  JOURNAL_STOP,
  JOURNAL_KIND_COUNT,
};

struct JournalRow {
  JournalKind kind;
  const char* name;
  const char* fields;
};

inline constexpr JournalRow JOURNAL_ROWS[] = {
    {JOURNAL_START, "start", "version last machine"},
    {JOURNAL_BOOKS, "books", "side coins part credits games tickets owed service"},
    {JOURNAL_COIN, "coin", "side coins part credits"},
    {JOURNAL_SWIPE, "swipe", "side coins part credits"},
    {JOURNAL_SERVICE, "service", "service left right"},
    {JOURNAL_LAUNCH, "launch", "side game paid credits"},
    {JOURNAL_CATCH, "catch", "side game catch worth purse"},
    {JOURNAL_END, "end", "side game award base butterfly purse capped"},
    {JOURNAL_TICKETS, "tickets", "side game by tickets paper told"},
    {JOURNAL_RESTORED, "restored", "side owed queued told"},
    {JOURNAL_PAPER, "paper", "side owed queued"},
    {JOURNAL_FAULT, "fault", "side owed"},
    {JOURNAL_FAULT_OVER, "fault-over", "side owed"},
    {JOURNAL_LINK_LOST, "link-lost", ""},
    {JOURNAL_LINK_BACK, "link-back", ""},
    {JOURNAL_TEST_ENTERED, "test-entered", ""},
    {JOURNAL_TEST_LEFT, "test-left", ""},
    {JOURNAL_SETTING, "setting", "setting from to"},
    {JOURNAL_RESET, "reset", "reset"},
    {JOURNAL_CREDITS_CLEARED, "credits-cleared", "side credits part"},
    {JOURNAL_TICKETS_CLEARED, "tickets-cleared", "side owed queued"},
    {JOURNAL_WATCHDOG, "watchdog", ""},
    {JOURNAL_NOT_STORED, "not-stored", "file"},
    {JOURNAL_STORED, "stored", "file"},
    {JOURNAL_LOST, "lost", "events"},
    {JOURNAL_GOING_DOWN, "going-down", ""},
    {JOURNAL_STOP, "stop", ""},
};

// Fields whose numbers are written as words: 0 is the first one.
struct JournalWords {
  std::string_view field, words;
};
inline constexpr JournalWords JOURNAL_WORDS[] = {
    {"side", "left right"},
    {"paid", "free credit"},
    {"catch", "nothing bug butterfly tier1 tier2 jackpot minimum"},
    {"award", "nothing bug butterfly tier1 tier2 jackpot minimum"},
    {"by", "catch fixed test"},
    {"told", "no yes"},
    {"reset", "coins tickets audits adjustments factory check"},
    {"file", "audits audbak histo prefs prefbak"},
};
enum JournalReset {
  RESET_COINS,
  RESET_TICKETS,
  RESET_AUDITS,
  RESET_ADJUSTMENTS,
  RESET_FACTORY,
  RESET_CHECK
};
enum JournalTickets { BY_CATCH, BY_FIXED, BY_TEST };
constexpr std::int32_t JOURNAL_BUTTERFLY = 2;  // among the catches; the others are AwardKind's

constexpr std::size_t JOURNAL_FIELDS_MOST = 8;

// The word at a place of a list, empty behind its end.
constexpr std::string_view journal_word(std::string_view words, std::size_t place) {
  while (!words.empty()) {
    const std::size_t end = words.find(' ');
    if (place-- == 0) return words.substr(0, end);
    words = end == std::string_view::npos ? std::string_view{} : words.substr(end + 1);
  }
  return {};
}

// The words of a field, empty if it is a number.
constexpr std::string_view journal_words(std::string_view field) {
  for (const JournalWords& row : JOURNAL_WORDS) {
    if (row.field == field) return row.words;
  }
  return {};
}

constexpr bool journal_rows_are_in_place() {
  for (std::size_t i = 0; i < std::size(JOURNAL_ROWS); ++i) {
    if (JOURNAL_ROWS[i].kind != static_cast<JournalKind>(i)) return false;
    if (!journal_word(JOURNAL_ROWS[i].fields, JOURNAL_FIELDS_MOST).empty()) return false;
  }
  return std::size(JOURNAL_ROWS) == JOURNAL_KIND_COUNT;
}
static_assert(journal_rows_are_in_place(),
              "row n is JournalKind n, and no row has too many fields");
