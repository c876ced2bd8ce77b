#include "playfield/awards.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/tick_timers.h"
#include "tests/playfield/field.h"

namespace {

using Books = std::map<AuditIndex, int>;

enum Ending { WATER, FAR_BANK };

struct PayoutCase {
  const char* name;
  std::vector<std::pair<PrefIndex, int>> settings;  // on top of the built-in ones
  int bugs;
  std::vector<LaneCell> gold;
  int butterfly;
  Ending ending;
  int total;    // shown on the frog
  int paper;    // ordered from the dispenser, -1 for no order
  int shown;    // in the jackpot show, -1 for none
  Books books;  // every row that isn't 0
};

// With the built-in settings a bug is worth 1, Tier 1 25, Tier 2 45, the jackpot 250. After the
// settings: bugs, gold, butterfly, ending; total, paper, shown; books.
// clang-format off
const std::vector<PayoutCase> payout_cases = {
    {"nothing pays the minimum", {}, 0, {}, 0, WATER, 1, 1, -1,
     {{AUDIT_FREES, 1}, {AUDIT_FREE_TICKETS, 1}, {AUDIT_TICKETS, 1}}},
    {"bugs add", {}, 3, {}, 0, WATER, 3, 3, -1,
     {{AUDIT_BUGS, 3}, {AUDIT_BUG_TICKETS, 3}, {AUDIT_TICKETS, 3}}},
    {"a butterfly above the minimum stands alone", {}, 0, {}, 20, WATER, 20, 20, -1,
     {{AUDIT_BUTTERFLY_TICKETS, 20}, {AUDIT_TICKETS, 20}}},
    {"a butterfly below it comes on top", {{PREF_MINIMUM_TICKETS, 10}}, 0, {}, 4, WATER, 14, 14, -1,
     {{AUDIT_FREES, 1}, {AUDIT_FREE_TICKETS, 10}, {AUDIT_BUTTERFLY_TICKETS, 4}, {AUDIT_TICKETS, 14}}},
    {"the minimum replaces bugs below it", {{PREF_MINIMUM_TICKETS, 10}}, 3, {}, 0, WATER, 10, 10, -1,
     {{AUDIT_BUGS, 3}, {AUDIT_FREES, 1}, {AUDIT_FREE_TICKETS, 10}, {AUDIT_TICKETS, 10}}},
    {"gold replaces bugs", {}, 10, {CELL_TIER1, CELL_TIER2}, 0, WATER, 45, 45, -1,
     {{AUDIT_BUGS, 10}, {AUDIT_BONUSES, 1}, {AUDIT_DOUBLE_BONUSES, 1},
      {AUDIT_DOUBLE_BONUS_TICKETS, 45}, {AUDIT_TICKETS, 45}}},
    {"the lesser gold adds nothing", {}, 0, {CELL_TIER2, CELL_TIER1}, 7, WATER, 52, 52, -1,
     {{AUDIT_DOUBLE_BONUSES, 1}, {AUDIT_DOUBLE_BONUS_TICKETS, 45}, {AUDIT_BUTTERFLY_TICKETS, 7},
      {AUDIT_TICKETS, 52}}},
    {"bugs past the gold keep their own", {}, 40, {CELL_TIER1}, 0, WATER, 40, 40, -1,
     {{AUDIT_BUGS, 40}, {AUDIT_BUG_TICKETS, 40}, {AUDIT_TICKETS, 40}}},
    {"bugs as many as the gold", {}, 25, {CELL_TIER1}, 0, WATER, 25, 25, -1,
     {{AUDIT_BUGS, 25}, {AUDIT_BUG_TICKETS, 25}, {AUDIT_TICKETS, 25}}},
    {"each step over the cap books its whole excess", {{PREF_MAXIMUM_TICKETS, 10}},
     12, {}, 0, WATER, 10, 10, -1,
     {{AUDIT_BUGS, 12}, {AUDIT_BUG_TICKETS, 12}, {AUDIT_CAPPED_TICKETS, 1 + 2}, {AUDIT_TICKETS, 10}}},
    {"points", {{PREF_TWO_POINT_TICKETS, 1}}, 15, {}, 0, WATER, 30, 15, -1,
     {{AUDIT_BUGS, 15}, {AUDIT_BUG_TICKETS, 30}, {AUDIT_TICKETS, 30}}},
    {"points of gold are even", {{PREF_TWO_POINT_TICKETS, 1}}, 0, {CELL_TIER1}, 0, WATER, 26, 13, -1,
     {{AUDIT_BONUSES, 1}, {AUDIT_BONUS_TICKETS, 26}, {AUDIT_TICKETS, 26}}},
    {"points of the minimum are even", {{PREF_TWO_POINT_TICKETS, 1}}, 0, {}, 0, WATER, 2, 1, -1,
     {{AUDIT_FREES, 1}, {AUDIT_FREE_TICKETS, 2}, {AUDIT_TICKETS, 2}}},
    {"fixed", {{PREF_FIXED_TICKET, 1}, {PREF_FIXED_TICKETS_PER_GAME, 7}}, 3, {}, 0, WATER, 3, 7, -1,
     {{AUDIT_BUGS, 3}, {AUDIT_TICKETS, 7}, {AUDIT_FIXED_TICKETS, 7}}},
    {"fixed is paper, not points",
     {{PREF_FIXED_TICKET, 1}, {PREF_FIXED_TICKETS_PER_GAME, 7}, {PREF_TWO_POINT_TICKETS, 1}},
     3, {}, 0, WATER, 6, 7, -1, {{AUDIT_BUGS, 3}, {AUDIT_TICKETS, 7}, {AUDIT_FIXED_TICKETS, 7}}},
    {"no tickets in use", {{PREF_TICKET_USE, 0}}, 3, {}, 5, WATER, 8, -1, -1, {{AUDIT_BUGS, 3}}},
    {"jackpot", {}, 0, {}, 0, FAR_BANK, 250, 250, 250,
     {{AUDIT_JACKPOTS, 1}, {AUDIT_JACKPOT_TICKETS, 250}, {AUDIT_TICKETS, 250}}},
    {"the jackpot replaces all", {}, 3, {CELL_TIER2}, 20, FAR_BANK, 250, 250, 250,
     {{AUDIT_BUGS, 3}, {AUDIT_DOUBLE_BONUSES, 1}, {AUDIT_JACKPOTS, 1}, {AUDIT_JACKPOT_TICKETS, 250},
      {AUDIT_TICKETS, 250}}},
    {"a jackpot over the cap", {{PREF_MAXIMUM_TICKETS, 100}}, 0, {}, 0, FAR_BANK, 100, 100, 100,
     {{AUDIT_JACKPOTS, 1}, {AUDIT_JACKPOT_TICKETS, 250}, {AUDIT_CAPPED_TICKETS, 150},
      {AUDIT_TICKETS, 100}}},
    {"boost", {{PREF_BOOST_BONUS, 1}}, 0, {}, 0, FAR_BANK, 500, 500, 500,
     {{AUDIT_JACKPOTS, 1}, {AUDIT_JACKPOT_TICKETS, 500}, {AUDIT_TICKETS, 500}}},
    {"an odd bonus in points", {{PREF_BONUS_VALUE, 125}, {PREF_TWO_POINT_TICKETS, 1}},
     0, {}, 0, FAR_BANK, 130, 65, 130,
     {{AUDIT_JACKPOTS, 1}, {AUDIT_JACKPOT_TICKETS, 130}, {AUDIT_TICKETS, 130}}},
    {"an odd bonus in points with boost",
     {{PREF_BONUS_VALUE, 125}, {PREF_TWO_POINT_TICKETS, 1}, {PREF_BOOST_BONUS, 1}},
     0, {}, 0, FAR_BANK, 250, 125, 250,
     {{AUDIT_JACKPOTS, 1}, {AUDIT_JACKPOT_TICKETS, 250}, {AUDIT_TICKETS, 250}}},
    {"a fixed jackpot", {{PREF_FIXED_TICKET, 1}}, 0, {}, 0, FAR_BANK, 250, 10, 10,
     {{AUDIT_JACKPOTS, 1}, {AUDIT_TICKETS, 10}, {AUDIT_FIXED_TICKETS, 10}}},
    {"a jackpot without tickets", {{PREF_TICKET_USE, 0}}, 0, {}, 0, FAR_BANK, 250, -1, 0,
     {{AUDIT_JACKPOTS, 1}}},
    {"more than the histogram holds", {{PREF_BONUS_VALUE, 1500}},
     0, {}, 0, FAR_BANK, 1500, 1500, 1500,
     {{AUDIT_JACKPOTS, 1}, {AUDIT_JACKPOT_TICKETS, 1500}, {AUDIT_TICKETS, 1500}}},
    {"settings below nothing", {{PREF_MINIMUM_TICKETS, -5}, {PREF_MAXIMUM_TICKETS, -1}},
     2, {}, 0, WATER, 0, 0, -1,
     {{AUDIT_BUGS, 2}, {AUDIT_BUG_TICKETS, 2}, {AUDIT_CAPPED_TICKETS, 1 + 2}}},
    {"fixed below nothing", {{PREF_FIXED_TICKET, 1}, {PREF_FIXED_TICKETS_PER_GAME, -3}},
     0, {}, 0, WATER, 1, 0, -1, {{AUDIT_FREES, 1}}},
    {"a jackpot below nothing", {{PREF_BONUS_VALUE, -250}, {PREF_BOOST_BONUS, 1}},
     3, {}, 0, FAR_BANK, 0, 0, 0, {{AUDIT_BUGS, 3}, {AUDIT_JACKPOTS, 1}}},
};
// clang-format on

class Awards : public Field {
 protected:
  static Frog& play(const PayoutCase& at, int side) {
    for (const auto& [row, value] : at.settings) prefs[row].int_value = value;
    playfield_reset();
    outcomes.clear();
    Frog& frog = stations[side].frogs[0];
    for (int i = 0; i < at.bugs; ++i) award_bug(side, frog, 7, i);
    frog.butterfly_tickets = at.butterfly;
    if (at.butterfly > 0) purse_add_up(side, frog);
    for (const LaneCell cell : at.gold) award_gold(side, frog, cell, 0, 0);
    for (Shared<std::int32_t>& cell : lane_cells[5]) cell = CELL_EMPTY;
    frog.lane = at.ending == WATER ? 5 : 1;
    frog.state = at.ending == WATER ? FROG_RESTING : FROG_HOPPING;
    tick(351);
    return frog;
  }

  static void expect_books(const PayoutCase& at, int side) {
    int wanted[AUDIT_COUNT] = {};
    for (const auto& [left_row, count] : at.books) wanted[left_row + side] = count;
    for (int row = 0; row < AUDIT_COUNT; ++row) {
      EXPECT_EQ(audit_count(row), wanted[row]) << audits[row].name;
    }
    for (int n = 0; n < HISTOGRAM_CELLS; ++n) {
      const bool counted = at.paper >= 0 && n == wanted[AUDIT_TICKETS + side];
      ASSERT_EQ(histogram[side][n], counted ? 1U : 0U) << n;
      ASSERT_EQ(histogram[1 - side][n], 0U) << n;
    }
  }
};

TEST_F(Awards, BooksPaysAndStoresEveryPayout) {
  for (const PayoutCase& at : payout_cases) {
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
      SCOPED_TRACE(testing::Message() << at.name << ", side " << side);
      SetUp();
      EXPECT_EQ(play(at, side).total_tickets, at.total);
      std::vector<std::string> told;
      if (at.shown >= 0) told.push_back(outcome("show", side, at.shown));
      if (at.paper >= 0) told.push_back(outcome("add", side, at.paper));
      if (at.paper >= 0) told.push_back(outcome("meter", side, at.paper));
      told.emplace_back("store");
      EXPECT_EQ(outcomes, told);
      EXPECT_EQ(tick_timers.award_done[side], at.ending == WATER ? 1 : 0);
      expect_books(at, side);
    }
  }
}

}  // namespace
