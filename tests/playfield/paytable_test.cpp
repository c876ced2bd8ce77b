#include "playfield/paytable.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "books/prefs.h"
#include "tests/playfield/field.h"

namespace {

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float ENDLESS = std::numeric_limits<float>::infinity();

int row_for(float coin_value, float ticket_value = 1.0F, int coins = 1, int frogs = 1) {
  prefs[PREF_COIN_VALUE].float_value = coin_value;
  prefs[PREF_TICKET_VALUE].float_value = ticket_value;
  prefs[PREF_PAYOUT_PERCENT].float_value = 1.0F;
  prefs[PREF_COINS_TO_PLAY].int_value = coins;
  prefs[PREF_FROGS_PER_GAME].int_value = frogs;
  paytable_row_update();
  return paytable_row;
}

class Paytable : public Field {};

TEST_F(Paytable, BuiltInSettingsSelectTheTenTicketRow) {
  EXPECT_EQ(paytable_wanted(), 10.0F);
  EXPECT_EQ(paytable_row, 14);
  EXPECT_EQ(bug_value(), 1);
  EXPECT_EQ(butterfly_value(), 35);
  EXPECT_EQ(tier1_value(), 25);
  EXPECT_EQ(tier2_value(), 45);
  EXPECT_EQ(jackpot_value(), 250);
  EXPECT_NEAR(jackpot_chance(), 0.0078975F, 1e-7F);
  prefs[PREF_BOOST_BONUS].int_value = 1;
  payout_recompute();
  EXPECT_NEAR(1.0F / jackpot_chance(), 253.24F, 0.01F);
  EXPECT_EQ(jackpot_value(), 500);
}

TEST_F(Paytable, WantedTicketsRoundToNearestHalf) {
  struct {
    float wanted;
    int row;
  } const cases[] = {{0.0F, 0},   {2.9F, 0},    {3.24F, 0},   {3.25F, 1},   {3.74F, 1},
                     {3.75F, 2},  {10.0F, 14},  {10.24F, 14}, {24.74F, 43}, {24.75F, 44},
                     {25.0F, 44}, {25.25F, 44}, {30.0F, 44},  {1e30F, 44},  {-7.0F, 0}};
  for (const auto& at : cases) EXPECT_EQ(row_for(at.wanted), at.row) << at.wanted;
  EXPECT_EQ(row_for(4.0F, 1.0F, 3, 2), 6) << "coins by frogs is no whole number";
}

TEST_F(Paytable, AnyStoredSettingSelectsAValidRow) {
  const float floats[] = {0.0F,   -0.0F,   1e-45F,   0.25F,       1e38F,
                          -1e38F, ENDLESS, -ENDLESS, NOT_A_NUMBER};
  const int ints[] = {0, 1, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
  for (const float coin : floats) {
    for (const float ticket : floats) {
      for (const int coins : ints) {
        for (const int frogs : ints) {
          const int row = row_for(coin, ticket, coins, frogs);
          ASSERT_TRUE(row >= 0 && row < PAYTABLE_ROWS) << coin << ' ' << ticket;
          ASSERT_TRUE(std::isfinite(paytable_wanted()));
        }
      }
    }
  }
  EXPECT_EQ(row_for(0.25F, 0.0F), 0);
  EXPECT_EQ(row_for(0.25F, 0.01F, 1, 0), 0);
}

TEST_F(Paytable, TwoPointValuesAreRoundedUpToEven) {
  const auto even = [](int value) { return value + value % 2; };
  const PaytableRow* before = nullptr;
  for (const PaytableRow& row : paytable) {
    SCOPED_TRACE(row.row);
    EXPECT_EQ(row.bug_2pt, row.bug);
    EXPECT_EQ(row.butterfly_2pt, even(row.butterfly));
    EXPECT_EQ(row.tier1_2pt, even(row.tier1));
    EXPECT_EQ(row.tier2_2pt, even(row.tier2));
    EXPECT_EQ(row.jackpot % 25, 0) << "a step of the menu";
    EXPECT_TRUE(row.bug < row.tier1 && row.tier1 < row.tier2 && row.tier2 < row.jackpot);
    if (before != nullptr) {  // values never fall from row to row; the number of bugs may
      EXPECT_GE(row.bug, before->bug);
      EXPECT_GE(row.butterfly, before->butterfly);
      EXPECT_GE(row.tier1, before->tier1);
      EXPECT_GE(row.tier2, before->tier2);
      EXPECT_GE(row.jackpot, before->jackpot);
      EXPECT_GE(row.bugs_per_lane * row.bug, before->bugs_per_lane * before->bug);
    }
    before = &row;
  }
}

TEST_F(Paytable, SeedsBugsForEveryRow) {
  for (const int points : {0, 1}) {
    prefs[PREF_TWO_POINT_TICKETS].int_value = points;
    for (const PaytableRow& row : paytable) {
      paytable_row = row.row;
      lanes[9].eaten = cell_bit(LANE_CELLS) - 1;
      bugs_seed();
      const int asked = row.bugs_per_lane / (points == 0 ? 1 : 2);
      for (int lane = 7; lane <= 11; ++lane) {
        const auto bugs = std::ranges::count_if(lane_cells[lane],
                                                [](std::int32_t cell) { return cell == CELL_BUG; });
        ASSERT_LE(bugs, asked);
        ASSERT_GE(bugs, asked / 3);
        for (int cell = 0; cell < LANE_CELLS; ++cell) {
          const bool bug = lane_cells[lane][cell] == CELL_BUG;
          const LaneSlot& slot = lanes[lane].slots[cell];
          ASSERT_EQ(slot.kind == SLOT_ANIMATED, bug);
          ASSERT_EQ(slot.sheet != nullptr, bug);
          ASSERT_EQ(slot.active, bug ? 1 : 0);
          ASSERT_FALSE(bug_is_eaten(lanes[lane], cell));
        }
      }
    }
  }
}

TEST_F(Paytable, BonusValueFollowsRowOnlyOnReset) {
  prefs[PREF_BONUS_VALUE].int_value = 600;
  row_for(3.0F);
  EXPECT_EQ(jackpot_value(), 600);
  bonus_value_reset();
  EXPECT_EQ(jackpot_value(), 50);
}

}  // namespace
