#include "lab/results.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

#include "books/prefs.h"
#include "lab/boot.h"  // boot_field
#include "playfield/paytable.h"

namespace {

constexpr double Z_95 = 1.959963984540054;

double both(const std::int64_t (&count)[AUDIT_COUNT], AuditIndex row) {
  return static_cast<double>(count[row] + count[row + 1]);
}

double money_of_frog() {
  return static_cast<double>(pref_int(PREF_COINS_TO_PLAY)) / pref_int(PREF_FROGS_PER_GAME) *
         static_cast<double>(pref_float(PREF_COIN_VALUE));
}

void settings_figures(Results& r) {
  boot_field();
  r.row = paytable_row;
  r.row_average = static_cast<double>(paytable_average(paytable_row));
  r.asked = static_cast<double>(paytable_wanted());
  r.menu_jackpots = static_cast<double>(jackpot_chance());
  r.jackpot = jackpot_value();
  const double nothing = std::numeric_limits<double>::quiet_NaN();
  const double money = pref_on(PREF_FREEPLAY) ? 0.0 : money_of_frog();
  const double ticket = static_cast<double>(pref_float(PREF_TICKET_VALUE));
  const double percent = money > 0.0 ? 100.0 * ticket / money : nothing;
  r.percent_asked =
      money > 0.0 ? 100.0 * static_cast<double>(pref_float(PREF_PAYOUT_PERCENT)) : nothing;
  r.percent_paid = r.tickets.mean * percent;
  r.percent_half_width = r.tickets.half_width * percent;
}

void award_rows(Results& r, const BooksSum& books, double frogs) {
  constexpr struct {
    const char* name;
    AuditIndex times, tickets;
  } ROWS[AWARD_ROWS] = {{"bugs", AUDIT_BUGS, AUDIT_BUG_TICKETS},
                        {"butterflies", AUDIT_BUTTERFLIES, AUDIT_BUTTERFLY_TICKETS},
                        {"gold logs, Tier 1", AUDIT_BONUSES, AUDIT_BONUS_TICKETS},
                        {"gold turtles, Tier 2", AUDIT_DOUBLE_BONUSES, AUDIT_DOUBLE_BONUS_TICKETS},
                        {"jackpots", AUDIT_JACKPOTS, AUDIT_JACKPOT_TICKETS},
                        {"minimum", AUDIT_FREES, AUDIT_FREE_TICKETS}};
  for (int i = 0; i < AWARD_ROWS; ++i) {
    r.awards[i] = {ROWS[i].name, both(books.count, ROWS[i].times) / frogs,
                   both(books.count, ROWS[i].tickets) / frogs};
  }
}

void lanes_figures(Results& r, const AwardsSum& awards, double frogs) {
  for (int lane = 0; lane < LANE_COUNT; ++lane) {
    const auto ended =
        static_cast<double>(awards.ended_on[SIDE_LEFT][lane] + awards.ended_on[SIDE_RIGHT][lane]);
    r.ended_on[lane] = ended / frogs;
    r.lanes_climbed += ended / frogs * (LANE_NEAR_BANK - lane);
  }
}

}  // namespace

double student_95(std::int64_t degrees) {
  constexpr double FEW[] = {
      std::numeric_limits<double>::infinity(), 12.706, 4.303, 3.182, 2.776, 2.571};
  if (degrees < static_cast<std::int64_t>(std::size(FEW)))
    return FEW[std::max(degrees, std::int64_t{0})];
  // Cornish and Fisher's expansion about the normal; right to two thousandths from here on.
  const auto n = static_cast<double>(degrees);
  const double z = Z_95;
  const double z3 = z * z * z;
  const double z5 = z3 * z * z;
  const double z7 = z5 * z * z;
  return z + (z3 + z) / (4.0 * n) + (5.0 * z5 + 16.0 * z3 + 3.0 * z) / (96.0 * n * n) +
         (3.0 * z7 + 19.0 * z5 + 17.0 * z3 - 15.0 * z) / (384.0 * n * n * n);
}

Estimate estimate(std::int64_t sum, std::int64_t squared, std::int64_t by_frogs, std::int64_t frogs,
                  std::int64_t frogs_squared, std::int64_t boots) {
  if (frogs == 0) return {0.0, std::numeric_limits<double>::infinity()};
  const double mean = static_cast<double>(sum) / static_cast<double>(frogs);
  if (boots < 2) return {mean, std::numeric_limits<double>::infinity()};
  // Of a ratio of two sums: each boot's distance from what its frogs would pay on the average.
  const double distance = static_cast<double>(squared) -
                          2.0 * mean * static_cast<double>(by_frogs) +
                          mean * mean * static_cast<double>(frogs_squared);
  const auto n = static_cast<double>(boots);
  const double variance = std::max(distance, 0.0) / (n - 1.0) * n;
  const double error = std::sqrt(variance) / static_cast<double>(frogs);
  return {mean, student_95(boots - 1) * error};
}

Results results_of(const RunPlan& plan, const Sums& sums) {
  Results r{};
  r.plan = plan;
  r.boots = sums.boots;
  r.frogs = sums_frogs(sums);
  r.game_s = static_cast<double>(sums.game_ms) / 1000.0;
  const auto frogs = static_cast<double>(r.frogs);
  r.tickets = estimate(sums_tickets(sums), sums.spread.tickets_squared, sums.spread.tickets_frogs,
                       r.frogs, sums.spread.frogs_squared, r.boots);
  r.jackpots = estimate(sums_jackpots(sums), sums.spread.jackpots_squared,
                        sums.spread.jackpots_frogs, r.frogs, sums.spread.frogs_squared, r.boots);
  r.jackpots_at_most = std::numeric_limits<double>::quiet_NaN();
  if (sums_jackpots(sums) == 0) {
    r.jackpots.half_width = std::numeric_limits<double>::infinity();
    // A chance under which so many frogs miss in one of twenty runs; about 3 over their number.
    r.jackpots_at_most = -std::expm1(std::log(0.05) / frogs);
  }
  r.paper = static_cast<double>(sums.paper[SIDE_LEFT] + sums.paper[SIDE_RIGHT]) / frogs;
  for (int side = 0; side < SIDE_COUNT; ++side) {
    r.side_tickets[side] =
        static_cast<double>(sums.awards.total[side]) / static_cast<double>(sums.awards.frogs[side]);
  }
  lanes_figures(r, sums.awards, frogs);
  award_rows(r, sums.books, frogs);
  r.capped = both(sums.books.count, AUDIT_CAPPED_TICKETS) / frogs;
  settings_figures(r);
  return r;
}
