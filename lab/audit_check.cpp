#include "lab/audit_check.h"

#include <cstdint>

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
};

void check_pieces(Check& check, const BooksSum& books, const AwardsSum& awards) {
  constexpr struct {
    AwardKind kind;
    AuditIndex row;
    const char* name;
  } PIECES[] = {{AWARD_BUG, AUDIT_BUG_TICKETS, "Bug Tickets"},
                {AWARD_TIER1, AUDIT_BONUS_TICKETS, "Bonus Tickets"},
                {AWARD_TIER2, AUDIT_DOUBLE_BONUS_TICKETS, "Double Bonus Tickets"},
                {AWARD_JACKPOT, AUDIT_JACKPOT_TICKETS, "Jackpot Tickets"},
                {AWARD_FREE, AUDIT_FREE_TICKETS, "Free Tickets"}};
  const int side = check.side;
  for (const auto& piece : PIECES) {
    check.equal(piece.name, books.count[piece.row + side], awards.base[side][piece.kind]);
  }
  check.equal("Butterfly Tickets", books.count[AUDIT_BUTTERFLY_TICKETS + side],
              awards.butterfly[side]);
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
    check.equal("Games Played", books.count[AUDIT_GAMES_PLAYED + side], awards.frogs[side]);
    check.equal("Jackpots", books.count[AUDIT_JACKPOTS + side],
                awards.of_kind[side][AWARD_JACKPOT]);
    check.equal("Frees", books.count[AUDIT_FREES + side], awards.of_kind[side][AWARD_FREE]);
    check.equal("Tickets", books.count[AUDIT_TICKETS + side], awards.total[side]);
    check.equal("tickets told to the board", sums.paper[side], awards.paper[side]);
    check.equal("pulses of the ticket meter", sums.ticket_pulses[side], awards.paper[side]);
    check.equal("Coin Drops", books.count[AUDIT_COIN_DROPS + side], sums.coin_pulses[side]);
    check_histogram(check, books, awards);
    if (pref_on(PREF_TICKET_USE) && !pref_on(PREF_FIXED_TICKET)) {
      check_pieces(check, books, awards);
    }
  }
  return check.text;
}
