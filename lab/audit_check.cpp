#include "lab/audit_check.h"

#include <cstdint>

#include "books/audit_list.h"
#include "books/prefs.h"

namespace {

struct Check {
  std::string text;
  int side;

  void equal(const char* what, std::int64_t first, std::int64_t second) {
    if (first == second) return;
    text += std::string(what) + (side == SIDE_LEFT ? " Left: " : " Right: ") +
            std::to_string(first) + " against " + std::to_string(second) + "\n";
  }

  void counter(const BooksSum& books, AuditIndex row, std::int64_t second) {
    equal(audit_name(row), books.count[row + side], second);
  }
};

void check_pieces(Check& check, const BooksSum& books, const AwardsSum& awards) {
  constexpr struct {
    AwardKind kind;
    AuditIndex row;
  } PIECES[] = {{AWARD_BUG, AUDIT_BUG_TICKETS},
                {AWARD_TIER1, AUDIT_BONUS_TICKETS},
                {AWARD_TIER2, AUDIT_DOUBLE_BONUS_TICKETS},
                {AWARD_JACKPOT, AUDIT_JACKPOT_TICKETS},
                {AWARD_FREE, AUDIT_FREE_TICKETS}};
  for (const auto& piece : PIECES) {
    check.counter(books, piece.row, awards.base[check.side][piece.kind]);
  }
  check.counter(books, AUDIT_BUTTERFLY_TICKETS, awards.butterfly[check.side]);
}

void check_histogram(Check& check, const BooksSum& books, const AwardsSum& awards) {
  for (int n = 0; n < HISTOGRAM_CELLS; ++n) {
    if (books.histogram[check.side][n] == awards.histogram[check.side][n]) continue;
    const std::string cell = "histogram " + std::to_string(n);
    check.equal(cell.c_str(), books.histogram[check.side][n], awards.histogram[check.side][n]);
  }
}

}  // namespace

std::string audit_check(const Sums& sums) {
  const BooksSum& books = sums.books;
  const AwardsSum& awards = sums.awards;
  Check check{};
  for (check.side = 0; check.side < SIDE_COUNT; ++check.side) {
    const int side = check.side;
    check.counter(books, AUDIT_GAMES_PLAYED, awards.frogs[side]);
    check.counter(books, AUDIT_JACKPOTS, awards.of_kind[side][AWARD_JACKPOT]);
    check.counter(books, AUDIT_FREES, awards.of_kind[side][AWARD_FREE]);
    check.counter(books, AUDIT_TICKETS, awards.total[side]);
    check.equal("tickets told to the board", sums.paper[side], awards.paper[side]);
    check.equal("pulses of the ticket meter", sums.ticket_pulses[side], awards.paper[side]);
    check.counter(books, AUDIT_COIN_DROPS, sums.coin_pulses[side]);
    check_histogram(check, books, awards);
    if (pref_on(PREF_TICKET_USE) && !pref_on(PREF_FIXED_TICKET)) {
      check_pieces(check, books, awards);
    }
  }
  return check.text;
}
