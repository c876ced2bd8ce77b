#include "lab/sums.h"

#include <cstddef>

#include "lab/board.h"

void sums_add(Sums& to, const Sums& from) {
  auto* words = reinterpret_cast<std::int64_t*>(&to);
  const auto* more = reinterpret_cast<const std::int64_t*>(&from);
  for (std::size_t i = 0; i < sizeof(Sums) / sizeof *words; ++i) words[i] += more[i];
}

void sums_take_books(Sums& sums) {
  for (int row = 0; row < AUDIT_COUNT; ++row) {
    sums.books.count[row] += audits[row].count;
    sums.books.time_ms[row] += audits[row].time_ms;
  }
  for (int side = 0; side < SIDE_COUNT; ++side) {
    for (int n = 0; n < HISTOGRAM_CELLS; ++n) {
      sums.books.histogram[side][n] += histogram[side][n];
    }
    sums.paper[side] += board_books.tickets[side];
    sums.ticket_pulses[side] += board_books.ticket_pulses[side];
    sums.coin_pulses[side] += board_books.coin_pulses[side];
  }
}

void sums_take_spread(Sums& boot) {
  const std::int64_t frogs = sums_frogs(boot);
  const std::int64_t tickets = sums_tickets(boot);
  const std::int64_t jackpots = sums_jackpots(boot);
  boot.spread = {frogs * frogs, tickets * tickets, tickets * frogs, jackpots * jackpots,
                 jackpots * frogs};
}

std::int64_t sums_frogs(const Sums& sums) {
  return sums.awards.frogs[SIDE_LEFT] + sums.awards.frogs[SIDE_RIGHT];
}

std::int64_t sums_tickets(const Sums& sums) {
  return sums.awards.total[SIDE_LEFT] + sums.awards.total[SIDE_RIGHT];
}

std::int64_t sums_jackpots(const Sums& sums) {
  return sums.awards.of_kind[SIDE_LEFT][AWARD_JACKPOT] +
         sums.awards.of_kind[SIDE_RIGHT][AWARD_JACKPOT];
}
