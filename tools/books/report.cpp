#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "tools/books/answers.h"
#include "tools/books/moment.h"

namespace {

using Pair = std::int64_t[SIDE_COUNT];

struct Sums {
  Pair counts[AUDIT_COUNT]{};  // by the left row of a counter; a single one stands on the left
};

struct SheetRow {
  AuditIndex row;
  bool sides;
};
// As on the operator's pages.
constexpr SheetRow SHEET[] = {
    {AUDIT_COIN_DROPS, true},
    {AUDIT_SERVICE_CREDITS, false},
    {AUDIT_GAMES_PLAYED, true},
    {AUDIT_JACKPOTS, true},
    {AUDIT_TICKETS, true},
    {AUDIT_BUG_TICKETS, true},
    {AUDIT_BUTTERFLY_TICKETS, true},
    {AUDIT_BONUS_TICKETS, true},
    {AUDIT_DOUBLE_BONUS_TICKETS, true},
    {AUDIT_JACKPOT_TICKETS, true},
    {AUDIT_FREE_TICKETS, true},
    {AUDIT_FIXED_TICKETS, true},
    {AUDIT_CAPPED_TICKETS, true},
};

const char* label_of(AuditIndex row) {
  for (const Audit& audit : AUDITS) {
    if (audit.row == row) return audit.label;
  }
  return "";
}

std::string decimal(double value) {
  char text[48];
  std::snprintf(text, sizeof text, "%.2f", std::isfinite(value) ? value : 0.0);
  return text;
}

// --- from the counters ------------------------------------------------------------------------

// The counters less those of a collection. False if one has gone back: they were reset.
bool subtract(const Drive& drive, const Collection& from, Sums& sums) {
  bool forward = true;
  for (const SheetRow& one : SHEET) {
    for (int side = 0; side < (one.sides ? SIDE_COUNT : 1); ++side) {
      const AuditRow& row = drive.audits[one.row + side];
      const auto then = from.counts.find(counter_name(row));
      sums.counts[one.row][side] =
          row.count - (then == from.counts.end() ? std::int64_t{0} : then->second);
      forward = forward && sums.counts[one.row][side] >= 0;
    }
  }
  return forward;
}

// --- from the journal -------------------------------------------------------------------------

void add_end(Sums& sums, const JournalLine& line, const JournalLine& tickets) {
  const int side = side_of(line);
  constexpr struct {
    std::string_view award;
    AuditIndex row;
  } PIECES[] = {{"bug", AUDIT_BUG_TICKETS},
                {"tier1", AUDIT_BONUS_TICKETS},
                {"tier2", AUDIT_DOUBLE_BONUS_TICKETS},
                {"jackpot", AUDIT_JACKPOT_TICKETS},
                {"minimum", AUDIT_FREE_TICKETS}};
  if (field_of(tickets, "by") == "fixed") {
    sums.counts[AUDIT_FIXED_TICKETS][side] += number_of(tickets, "tickets");
    return;
  }
  for (const auto& piece : PIECES) {
    if (field_of(line, "award") == piece.award) {
      sums.counts[piece.row][side] += number_of(line, "base");
    }
  }
  sums.counts[AUDIT_BUTTERFLY_TICKETS][side] += number_of(line, "butterfly");
  sums.counts[AUDIT_CAPPED_TICKETS][side] += number_of(line, "capped");
}

void add_line(Sums& sums, const JournalLine& line, const JournalLine* (&ends)[SIDE_COUNT]) {
  const int side = side_of(line);
  switch (line.kind) {
    case JOURNAL_COIN:
    case JOURNAL_SWIPE:
      sums.counts[AUDIT_COIN_DROPS][side] += number_of(line, "coins");
      break;
    case JOURNAL_SERVICE:
      sums.counts[AUDIT_SERVICE_CREDITS][0] += number_of(line, "service");
      break;
    case JOURNAL_LAUNCH:
      ++sums.counts[AUDIT_GAMES_PLAYED][side];
      break;
    case JOURNAL_END:
      ends[side] = &line;
      if (field_of(line, "award") == "jackpot") ++sums.counts[AUDIT_JACKPOTS][side];
      break;
    case JOURNAL_TICKETS:
      sums.counts[AUDIT_TICKETS][side] += number_of(line, "tickets");
      if (ends[side] != nullptr && field_of(line, "by") != "test") add_end(sums, *ends[side], line);
      break;
    default:
      break;
  }
}

Sums sums_since(const Drive& drive, std::int64_t since_ms) {
  Sums sums;
  const JournalLine* ends[SIDE_COUNT]{};
  for (const JournalLine& line : drive.journal.lines) {
    if (line.utc_ms >= since_ms) add_line(sums, line, ends);
  }
  return sums;
}

// --- the sheet --------------------------------------------------------------------------------

Table sheet(const Drive& drive, const Sums& sums) {
  Table table{"report", {"what", "left", "right", "total"}, {}};
  for (const SheetRow& one : SHEET) {
    const Pair& pair = sums.counts[one.row];
    if (one.sides) {
      table.rows.push_back({label_of(one.row), std::to_string(pair[0]), std::to_string(pair[1]),
                            std::to_string(pair[0] + pair[1])});
    } else {
      table.rows.push_back({label_of(one.row), "", "", std::to_string(pair[0])});
    }
  }
  // At the present prices.
  const auto worth = [&](AuditIndex row, PrefIndex price) {
    return static_cast<double>(sums.counts[row][0] + sums.counts[row][1]) *
           static_cast<double>(drive.prefs[price].float_value.get());
  };
  const double money = worth(AUDIT_COIN_DROPS, PREF_COIN_VALUE);
  const double paid = worth(AUDIT_TICKETS, PREF_TICKET_VALUE);
  table.rows.push_back({"Money in", "", "", decimal(money)});
  table.rows.push_back({"Worth of the tickets", "", "", decimal(paid)});
  table.rows.push_back({"Percent paid back", "", "", money > 0 ? decimal(100 * paid / money) : ""});
  return table;
}

void note_beginning(Report& report, const Drive& drive, std::int64_t since_ms) {
  const auto& lines = drive.journal.lines;
  if (lines.empty() || lines.front().utc_ms <= since_ms) return;
  report.notes.push_back("the journal begins at " + moment_for_people(lines.front().utc_ms) +
                         "; nothing is known of the time before");
}

Report from_journal(const Drive& drive, std::int64_t since_ms) {
  Report report;
  report.span = "since " + moment_for_people(since_ms);
  report.table = sheet(drive, sums_since(drive, since_ms));
  note_beginning(report, drive, since_ms);
  return report;
}

}  // namespace

Report report_of(const Drive& drive, const Question& question, const Collection& collection) {
  if (question.has_since) return from_journal(drive, question.since_ms);
  Report report;
  report.span = collection.known ? "since the collection of " + moment_for_people(collection.utc_ms)
                                 : "since the counters were last reset";
  Sums sums;
  if (!drive.has_audits || !subtract(drive, collection, sums)) {
    report = from_journal(drive, collection.utc_ms);
    report.notes.emplace_back(drive.has_audits
                                  ? "the counters were reset since; this is from the journal"
                                  : "the counters can't be read; this is from the journal");
    return report;
  }
  report.table = sheet(drive, sums);
  return report;
}
