#include "lab/flights.h"

#include "books/audits.h"
#include "books/prefs.h"
#include "playfield/paytable.h"  // fixed_value, pays_points

namespace {

struct Flight {
  const Frog* frog;
  std::int32_t launches;  // as the books count them
};
constinit Flight flights[SIDE_COUNT]{};

const Frog* launched_frog(int side) {
  for (const Frog& frog : stations[side].frogs) {
    if (frog.state == FROG_LAUNCHING && !is_demo(frog)) return &frog;
  }
  return nullptr;
}

void count_paid(AwardsSum& awards, int side, std::int32_t tickets, std::int32_t paper) {
  awards.total[side] += tickets;
  awards.paper[side] += paper;
  if (tickets < HISTOGRAM_CELLS) {
    ++awards.histogram[side][tickets];
  } else {
    awards.beyond_histogram[side] += tickets;
  }
}

void count_end(AwardsSum& awards, int side, const Frog& frog) {
  ++awards.frogs[side];
  ++awards.ended_on[side][frog.lane];
  ++awards.of_kind[side][frog.award_kind];
  if (!pref_on(PREF_TICKET_USE)) return;
  if (pref_on(PREF_FIXED_TICKET)) {
    count_paid(awards, side, fixed_value(), fixed_value());
    return;
  }
  awards.base[side][frog.award_kind] += frog.base_tickets;
  if (frog.award_kind != AWARD_JACKPOT) awards.butterfly[side] += frog.butterfly_tickets;
  count_paid(awards, side, frog.total_tickets, frog.total_tickets / (pays_points() ? 2 : 1));
}

}  // namespace

void flights_reset() {
  for (Flight& flight : flights) flight = {};
}

void flights_step(AwardsSum& awards) {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    Flight& flight = flights[side];
    const Frog* frog = flight.frog;
    if (frog != nullptr && (frog->state == FROG_SINKING || frog->state == FROG_WINNING)) {
      count_end(awards, side, *frog);
      flight.frog = nullptr;
    }
    // The tick that ends a frog may launch the next.
    const std::int32_t launches = audit_count(AUDIT_GAMES_PLAYED, side);
    if (launches != flight.launches) flight = {launched_frog(side), launches};
  }
}

const Frog* flight_of(int side) {
  return flights[side].frog;
}
