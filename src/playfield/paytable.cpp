#include "playfield/paytable.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "books/prefs.h"
#include "platform/random.h"  // random_unit
#include "playfield/lanes.h"  // lane_slots_fill
#include "playfield/playfield.h"

// Row, bugs per lane; bug, butterfly, Tier 1, Tier 2, jackpot; the four in points.
// clang-format off
constexpr PaytableRow paytable[PAYTABLE_ROWS] = {
    { 0,  9, 1,  7,  5,  10,  50, 1,  8,  6,  10},
    { 1, 10, 1, 10,  5,  15,  75, 1, 10,  6,  16},
    { 2, 12, 1, 12, 10,  15,  75, 1, 12, 10,  16},
    { 3, 12, 1, 15, 10,  20, 100, 1, 16, 10,  20},
    { 4, 14, 1, 17, 10,  25, 100, 1, 18, 10,  26},
    { 5, 15, 1, 17, 10,  25, 125, 1, 18, 10,  26},
    { 6, 17, 1, 20, 15,  25, 125, 1, 20, 16,  26},
    { 7, 17, 1, 22, 15,  30, 150, 1, 22, 16,  30},
    { 8, 19, 1, 25, 20,  30, 150, 1, 26, 20,  30},
    { 9, 20, 1, 27, 20,  35, 175, 1, 28, 20,  36},
    {10, 22, 1, 30, 20,  40, 175, 1, 30, 20,  40},
    {11, 24, 1, 30, 20,  40, 200, 1, 30, 20,  40},
    {12, 26, 1, 32, 20,  45, 200, 1, 32, 20,  46},
    {13, 26, 1, 35, 25,  45, 225, 1, 36, 26,  46},
    {14, 28, 1, 35, 25,  45, 250, 1, 36, 26,  46},
    {15, 14, 2, 37, 25,  50, 250, 2, 38, 26,  50},
    {16, 16, 2, 40, 25,  55, 250, 2, 40, 26,  56},
    {17, 17, 2, 40, 25,  55, 275, 2, 40, 26,  56},
    {18, 18, 2, 40, 25,  55, 300, 2, 40, 26,  56},
    {19, 18, 2, 45, 30,  60, 300, 2, 46, 30,  60},
    {20, 19, 2, 47, 30,  65, 300, 2, 48, 30,  66},
    {21, 20, 2, 47, 30,  65, 325, 2, 48, 30,  66},
    {22, 20, 2, 50, 35,  65, 350, 2, 50, 36,  66},
    {23, 21, 2, 52, 35,  70, 350, 2, 52, 36,  70},
    {24, 22, 2, 55, 35,  75, 350, 2, 56, 36,  76},
    {25, 23, 2, 55, 35,  75, 375, 2, 56, 36,  76},
    {26, 23, 2, 57, 40,  75, 400, 2, 58, 40,  76},
    {27, 24, 2, 60, 40,  80, 400, 2, 60, 40,  80},
    {28, 25, 2, 62, 40,  85, 400, 2, 62, 40,  86},
    {29, 25, 2, 65, 45,  85, 425, 2, 66, 46,  86},
    {30, 26, 2, 67, 45,  90, 450, 2, 68, 46,  90},
    {31, 27, 2, 67, 45,  90, 450, 2, 68, 46,  90},
    {32, 28, 2, 70, 45,  95, 450, 2, 70, 46,  96},
    {33, 28, 2, 72, 50,  95, 475, 2, 72, 50,  96},
    {34, 19, 3, 72, 50,  95, 500, 3, 72, 50,  96},
    {35, 20, 3, 75, 50, 100, 500, 3, 76, 50, 100},
    {36, 20, 3, 77, 50, 105, 500, 3, 78, 50, 106},
    {37, 20, 3, 80, 55, 105, 525, 3, 80, 56, 106},
    {38, 21, 3, 80, 55, 105, 550, 3, 80, 56, 106},
    {39, 22, 3, 82, 55, 110, 550, 3, 82, 56, 110},
    {40, 23, 3, 85, 55, 115, 550, 3, 86, 56, 116},
    {41, 23, 3, 87, 60, 115, 575, 3, 88, 60, 116},
    {42, 24, 3, 87, 60, 115, 600, 3, 88, 60, 116},
    {43, 25, 3, 90, 60, 120, 600, 3, 90, 60, 120},
    {44, 25, 3, 92, 60, 125, 600, 3, 92, 60, 126},
};
// clang-format on

constinit Shared<std::int32_t> paytable_row{0};
constinit Shared<std::int32_t> boost_factor{1};
constinit Shared<std::int32_t> paytable_factor{1};

namespace {

constexpr bool rows_in_order() {
  for (int n = 0; n < PAYTABLE_ROWS; ++n) {
    if (paytable[n].row != n) return false;
  }
  return true;
}
static_assert(rows_in_order());

// A dispenser gives whole tickets of two points each. A bug's points are doubled when they are
// paid.
constexpr bool points_make_whole_tickets() {
  for (const PaytableRow& row : paytable) {
    if (row.butterfly_2pt % 2 != 0 || row.tier1_2pt % 2 != 0 || row.tier2_2pt % 2 != 0)
      return false;
  }
  return true;
}
static_assert(points_make_whole_tickets());

// No file of settings is checked when it is read. Held to this range, a number of tickets can't
// take anything away from a player and sums of them can't overflow.
constexpr std::int32_t TICKETS_LIMIT = 1'000'000;
constexpr double WANTED_LIMIT = 1e9;  // twice that, in rows, is an int too

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
  const float rounded = rounded_to_half(paytable_wanted());
  paytable_factor = 1;
  const int row = static_cast<int>((rounded - PAYTABLE_LEAST) / PAYTABLE_STEP);
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
