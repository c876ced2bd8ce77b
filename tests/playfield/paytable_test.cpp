#include "playfield/paytable.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "books/prefs.h"
#include "tests/playfield/field.h"
#include "tests/playfield/tables.h"

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

TEST_F(Paytable, RowsAreThoseOfTheSecondCopy) {
  static_assert(PAYTABLE_ROWS == ROWS);
  for (const PaytableRow& row : paytable) {
    const int n = row.row;
    SCOPED_TRACE(n);
    EXPECT_EQ(paytable_average(n), 3.0F + 0.5F * static_cast<float>(n));
    paytable_row = n;
    bonus_value_reset();
    EXPECT_EQ(jackpot_value(), JACKPOT[n]);
    const int b = bug_of(n);
    EXPECT_EQ(
        (std::array{row.bugs_per_lane, row.bug, row.butterfly, row.tier1, row.tier2, row.jackpot,
                    row.bug_2pt, row.butterfly_2pt, row.tier1_2pt, row.tier2_2pt}),
        (std::array{BUGS_PER_LANE[n], b, BUTTERFLY[n], TIER1[n], TIER2[n], JACKPOT[n], b,
                    even(BUTTERFLY[n]), even(TIER1[n]), even(TIER2[n])}));
  }
}

TEST_F(Paytable, BuiltInSettingsSelectTheTenTicketRow) {
  EXPECT_EQ(paytable_wanted(), 10.0F);
  EXPECT_EQ(paytable_row, 14);
  EXPECT_EQ(rounded_to_half(3.24F), 3.0F);
  EXPECT_EQ(rounded_to_half(3.25F) + rounded_to_half(3.74F), 3.5F + 3.5F);
  EXPECT_EQ(rounded_to_half(3.75F), 4.0F);
  EXPECT_NEAR(jackpot_chance(), 0.0078975F, 1e-7F);
  prefs[PREF_BOOST_BONUS].int_value = 1;
  payout_recompute();
  EXPECT_NEAR(1.0F / jackpot_chance(), 253.24F, 0.01F);
  EXPECT_EQ(jackpot_value(), 500);
}

TEST_F(Paytable, FactorMultipliesEveryValueUntilTheRowIsChosenAnew) {
  const auto values = [] {
    return std::array{bug_value(), butterfly_value(), tier1_value(), tier2_value()};
  };
  auto wanted = values();
  for (std::int32_t& value : wanted) value *= 3;
  paytable_factor = 3;
  EXPECT_EQ(values(), wanted);
  bonus_value_reset();
  EXPECT_EQ(pref_int(PREF_BONUS_VALUE), 3 * JACKPOT[paytable_row]);
  payout_recompute();
  EXPECT_EQ(paytable_factor, 1);
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

}  // namespace
