#include "playfield/paytable.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "books/prefs.h"
#include "platform/random.h"  // random_unit
#include "playfield/lanes.h"  // lane_slots_fill
#include "playfield/playfield.h"

constinit Shared<std::int32_t> paytable_row{0};
constinit Shared<std::int32_t> boost_factor{1};
constinit Shared<std::int32_t> paytable_factor{1};

namespace {

// No file of settings is checked when it is read. Held to this range, a number of tickets can't
// take anything away from a player and sums of them can't overflow.
constexpr std::int32_t TICKETS_LIMIT = 1'000'000;
constexpr double WANTED_LIMIT = 1e9;

std::int32_t pref_tickets(PrefIndex row) {
  return std::clamp(pref_int(row), 0, TICKETS_LIMIT);
}

const PaytableRow& row_in_force() {
  return paytable[paytable_row];
}

std::int32_t by_points(std::int32_t tickets, std::int32_t points) {
  return (pays_points() ? points : tickets) * paytable_factor;
}

}  // namespace

float rounded_to_half(float wanted) {
  const auto whole = static_cast<float>(static_cast<int>(wanted));
  const float rest = wanted - whole;
  if (rest < 0.25F) return whole;
  return rest < 0.75F ? whole + 0.5F : whole + 1.0F;
}

bool pays_points() {
  return pref_on(PREF_TWO_POINT_TICKETS);
}

float paytable_wanted() {
  const double coins_per_frog = static_cast<double>(pref_int(PREF_COINS_TO_PLAY)) /
                                static_cast<double>(pref_int(PREF_FROGS_PER_GAME));
  const double wanted = static_cast<double>(pref_float(PREF_COIN_VALUE)) *
                        static_cast<double>(pref_float(PREF_PAYOUT_PERCENT)) * coins_per_frog /
                        static_cast<double>(pref_float(PREF_TICKET_VALUE));
  if (!std::isfinite(wanted)) return 0.0F;
  return static_cast<float>(std::clamp(wanted, -WANTED_LIMIT, WANTED_LIMIT));
}

void paytable_row_update() {
  // Both ends lie outside the table; between them the rounding has small numbers.
  const float wanted = std::clamp(paytable_wanted(), 0.0F, 100.0F);
  paytable_factor = 1;
  const int row = static_cast<int>((rounded_to_half(wanted) - PAYTABLE_LEAST) / PAYTABLE_STEP);
  paytable_row = std::clamp(row, 0, PAYTABLE_ROWS - 1);
}

void bugs_seed() {
  // A bug of two points is worth twice as much, so there are half as many.
  const std::int32_t bugs = row_in_force().bugs_per_lane / (pays_points() ? 2 : 1);
  for (int lane = LANE_MEADOW_FAR; lane <= LANE_MEADOW_NEAR; ++lane) {
    lanes[lane].eaten = 0;
    for (auto& cell : lane_cells[lane]) cell = CELL_EMPTY;
    // A cell that is drawn twice counts twice, so a lane may hold fewer.
    for (int cell = 0, count = 0; count < bugs; cell = (cell + 1) % LANE_CELLS) {
      if (random_unit() >= bugs / static_cast<double>(LANE_CELLS)) continue;
      lane_cells[lane][cell] = CELL_BUG;
      ++count;
    }
    lane_slots_fill(lane);
  }
}

void lane1_seed() {
  const bool boost = pref_on(PREF_BOOST_BONUS);
  boost_factor = boost ? 2 : 1;
  lane1_cells_fill(boost);
  lane_slots_fill(1);
}

void payout_recompute() {
  paytable_row_update();
  bugs_seed();
  lane1_seed();
}

void bonus_value_reset() {
  prefs[PREF_BONUS_VALUE].int_value = row_in_force().jackpot * paytable_factor;
}

std::int32_t jackpot_value() {
  const std::int32_t value = pref_tickets(PREF_BONUS_VALUE) * boost_factor;
  return pays_points() && value % 2 != 0 ? value + 5 : value;
}

float jackpot_chance() {
  float chance = 1.0F;
  for (int lane = LANE_RIVER_NEAR; lane >= LANE_RIVER_FAR; --lane) {
    const auto occupied = std::ranges::count_if(
        lane_cells[lane], [](std::int32_t cell) { return cell != CELL_EMPTY; });
    chance *= static_cast<float>(occupied) / static_cast<float>(LANE_CELLS);
  }
  return chance;
}

std::int32_t bug_value() {
  return by_points(row_in_force().bug, row_in_force().bug_2pt * 2);
}

std::int32_t butterfly_value() {
  return by_points(row_in_force().butterfly, row_in_force().butterfly_2pt);
}

std::int32_t tier1_value() {
  return by_points(row_in_force().tier1, row_in_force().tier1_2pt);
}

std::int32_t tier2_value() {
  return by_points(row_in_force().tier2, row_in_force().tier2_2pt);
}

std::int32_t minimum_value() {
  const std::int32_t value = pref_tickets(PREF_MINIMUM_TICKETS);
  return pays_points() ? value + value % 2 : value;
}

std::int32_t maximum_value() {
  return pref_tickets(PREF_MAXIMUM_TICKETS);
}

std::int32_t fixed_value() {
  return pref_tickets(PREF_FIXED_TICKETS_PER_GAME);
}
