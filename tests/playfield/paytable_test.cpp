#include "playfield/paytable.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>

#include "books/prefs.h"
#include "tests/playfield/field.h"
#include "tests/playfield/tables.h"

namespace {

using Paytable = Field;

TEST_F(Paytable, RowsAreThoseOfTheSecondCopy) {
  static_assert(PAYTABLE_ROWS == ROWS);
  for (int n = 0; n < ROWS; ++n) {
    SCOPED_TRACE(n);
    const int factor = 1 + n % 3;
    paytable_row = n;
    paytable_factor = factor;
    bonus_value_reset();
    EXPECT_EQ(paytable_average(n), 3.0F + 0.5F * static_cast<float>(n));
    EXPECT_EQ(paytable[n].bugs_per_lane, BUGS_PER_LANE[n]);
    EXPECT_EQ(pref_int(PREF_BONUS_VALUE), factor * JACKPOT[n]);
    for (const bool points : {false, true}) {
      prefs[PREF_TWO_POINT_TICKETS].int_value = points ? 1 : 0;
      const auto value = [&](int tickets) { return factor * (points ? even(tickets) : tickets); };
      EXPECT_EQ((std::array{bug_value(), butterfly_value(), tier1_value(), tier2_value()}),
                (std::array{factor * bug_of(n) * (points ? 2 : 1), value(BUTTERFLY[n]),
                            value(TIER1[n]), value(TIER2[n])}));
    }
  }
  payout_recompute();
  EXPECT_EQ(paytable_factor, 1);
}

TEST_F(Paytable, AnyStoredSettingSelectsAValidRow) {
  const float floats[] = {0.0F, -0.0F, 1e-45F, 0.25F, 1e38F, -1e38F, INFINITY, -INFINITY, NAN};
  const int ints[] = {0, 1, -1, INT_MIN, INT_MAX};
  prefs[PREF_PAYOUT_PERCENT].float_value = 1.0F;
  for (const float coin : floats) {
    for (const float ticket : floats) {
      for (const int coins : ints) {
        for (const int frogs : ints) {
          prefs[PREF_COIN_VALUE].float_value = coin;
          prefs[PREF_TICKET_VALUE].float_value = ticket;
          prefs[PREF_COINS_TO_PLAY].int_value = coins;
          prefs[PREF_FROGS_PER_GAME].int_value = frogs;
          paytable_row_update();
          ASSERT_TRUE(paytable_row >= 0 && paytable_row < ROWS) << coin << ' ' << ticket;
          const double wanted = static_cast<double>(coin) * (1.0 * coins / frogs) / ticket;
          ASSERT_EQ(paytable_wanted(), std::isfinite(wanted)
                                           ? static_cast<float>(std::clamp(wanted, -1e9, 1e9))
                                           : 0.0F);
        }
      }
    }
  }
}

}  // namespace
