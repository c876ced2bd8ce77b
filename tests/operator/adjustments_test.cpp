// Settings: what a choice stores and changes, and the figures that follow from it.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/tick_timers.h"
#include "operator/adjustments.h"
#include "operator/menu.h"
#include "playfield/paytable.h"
#include "tests/operator/desk.h"

namespace {

class Adjustments : public Desk {
 protected:
  Adjustments() {
    payout_recompute();
    bonus_value_reset();
  }
  static void set(const std::string& menu, const std::string& row, const std::string& value) {
    choose(menu);
    choose(row);
    choose(value);
    press(PRESS_SRV);
  }
};

TEST_F(Adjustments, OptionLists_OfferTheirValuesAndStoreTheChoice) {
  const struct {
    const char *menu, *row, *first, *last;
    PrefIndex pref;
    float least, most;
    int count;
  } rows[] = {
      {"Coin/Game", "Freeplay", "On", "Off", PREF_FREEPLAY, 1, 0, 2},
      {"Coin/Game", "Coin Lockout", "On", "Off", PREF_LOCKOUT_COILS, 1, 0, 2},
      {"Coin/Game", "Currency Type", "Coins", "Swipes", PREF_CURRENCY_UNIT, 0, 3, 4},
      {"Coin/Game", "Coin Value", "0.050", "2.000", PREF_COIN_VALUE, 0.05F, 2.0F, 26},
      {"Coin/Game", "Coins To Play", "1", "10", PREF_COINS_TO_PLAY, 1, 10, 10},
      {"Coin/Game", "Frogs Per Game", "1", "10", PREF_FROGS_PER_GAME, 1, 10, 10},
      {"Coin/Game", "Coins Per Swipe", "1", "10", PREF_COINS_PER_SWIPE, 1, 10, 10},
      {"Coin/Game", "Timeout", "Off", "120", PREF_TIMEOUT_SECONDS, -1, 120, 10},
      {"Payout", "Payout Percent", " 5%", "95%", PREF_PAYOUT_PERCENT, 0.05F, 0.95F, 19},
      {"Payout", "Ticket Value", "0.00250", "0.10000", PREF_TICKET_VALUE, 0.0025F, 0.1F, 11},
      {"Payout", "Minimum Tickets", "1", "10", PREF_MINIMUM_TICKETS, 1, 10, 10},
      {"Payout", "Maximum Tickets", "10", "2500", PREF_MAXIMUM_TICKETS, 10, 2500, 8},
      {"Payout", "Bonus Value", "50", "600", PREF_BONUS_VALUE, 50, 600, 23},
      {"Payout", "Boost Bonus", "On", "Off", PREF_BOOST_BONUS, 1, 0, 2},
      {"Payout", "Two Point", "On", "Off", PREF_TWO_POINT_TICKETS, 1, 0, 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.row);
    const bool real = row.least != static_cast<float>(static_cast<int>(row.least));
    choose(row.menu);
    for (const bool last : {false, true}) {
      choose(row.row);
      int values = -2;  // the title, and "Cancel"
      for (const Drawn& d : seen(menu_draw)) values += d.what != "rectangle" ? 1 : 0;
      EXPECT_EQ(values, row.count);
      press(PRESS_VLU, 40);  // away from the row where the list opened
      const std::string value = last ? row.last : row.first;
      for (int i = 0; i < 40 && selected() != value; ++i) press(PRESS_P1S);
      ASSERT_EQ(selected(), value);
      press(PRESS_P2S);
      EXPECT_TRUE(selected().starts_with(row.row));
      const float now = real ? pref_float(row.pref) : static_cast<float>(pref_int(row.pref));
      EXPECT_EQ(now, last ? row.most : row.least);
      choose(row.row);
      EXPECT_EQ(selected(), value) << "the list opens on the current value";
      press(PRESS_SRV);
    }
    press(PRESS_SRV);
  }
  EXPECT_TRUE(drive.has("prefs"));
}

TEST_F(Adjustments, PriceChosen_ClearsCredits_CancelKeepsThem) {
  audits[AUDIT_CURRENT_CREDITS].count = 2;
  audits[AUDIT_CURRENT_COINS + 1].count = 3;
  tick_timers.credit_wait_ms[0] = 700;
  choose("Coin/Game");
  choose("Coins To Play");
  press(PRESS_SRV);
  choose("Coins To Play");
  choose("Cancel");
  EXPECT_EQ(audit_count(AUDIT_CURRENT_CREDITS, 0), 2);
  choose("Coins To Play");
  EXPECT_EQ(selected(), "1");
  press(PRESS_TST);  // the current value
  EXPECT_EQ(audit_count(AUDIT_CURRENT_CREDITS, 0), 0);
  EXPECT_EQ(audit_count(AUDIT_CURRENT_COINS, 1), 0);
  EXPECT_EQ(tick_timers.credit_wait_ms[0], 0);
}

TEST_F(Adjustments, StoredValueNotInItsList_IsShownAndKept) {
  prefs[PREF_COIN_VALUE].float_value = 0.333F;
  prefs[PREF_CURRENCY_UNIT].int_value = 9;
  prefs[PREF_MAXIMUM_TICKETS].int_value = 77;
  adjust_refresh_coin_rows();
  adjust_refresh_payout_rows();
  choose("Coin/Game");
  EXPECT_TRUE(shows("Coin Value               0.333"));
  EXPECT_TRUE(shows("Currency Type            9"));
  choose("Coin Value");
  EXPECT_EQ(selected(), "0.250");
  press(PRESS_SRV, 2);
  choose("Payout");
  choose("Maximum");
  EXPECT_EQ(selected(), "2500");
  press(PRESS_SRV);
  EXPECT_EQ(pref_int(PREF_MAXIMUM_TICKETS), 77);
}

TEST_F(Adjustments, PayoutFigures_TakeTheTablesJackpotForNoBonusByHand) {
  paytable_factor = 3;
  bonus_value_reset();
  choose("Payout");
  EXPECT_EQ(line("Bonus Value   "), "Bonus Value                          750");
  paytable_factor = 1;
  press(PRESS_SRV);
  choose("Payout");
  EXPECT_EQ(line("Bonus Value   "), "Bonus Value                          750 (MANUAL)");
}

TEST_F(Adjustments, PayoutFigures_FollowMoneySettings) {
  choose("Payout");
  EXPECT_EQ(line("Bonus Value   "), "Bonus Value                          250");
  EXPECT_EQ(line("Average"), "Average Ticket Payout                10.00");
  EXPECT_TRUE(shows("Payout Percent                       40.00%"));
  EXPECT_TRUE(shows("Games To Bonus"));
  choose("Bonus Value");
  choose("500");
  EXPECT_TRUE(shows("Bonus Value                          500 (MANUAL)"));
  EXPECT_TRUE(line("Average").find("(1") != std::string::npos) << line("Average");
  press(PRESS_SRV);
  set("Coin/Game", "Coin Value", "2.000");
  choose("Payout");
  EXPECT_FALSE(shows("(MANUAL)")) << "a money setting resets the bonus";
  choose("Ticket Value");
  choose("0.00250");
  EXPECT_EQ(line("Average"), "Average Ticket Payout                320.00 (CAPPED TO 25.00)");
  EXPECT_TRUE(shows("Payout Percent                       40.00% (CAPPED TO 3.12%)"));
  choose("Bonus Value");
  choose("50");
  EXPECT_TRUE(
      line("Average").starts_with("Average Ticket Payout                320.00 (CAPPED TO ("));
  choose("Fixed Ticket");
  choose("On");
  EXPECT_EQ(line("Average"), "Average Ticket Payout                10.00 (FIXED)");
  EXPECT_TRUE(shows("Bonus Value                          10 (FIXED)"));
  EXPECT_TRUE(shows("Payout Percent                       1.25% (FIXED)"));
  prefs[PREF_COIN_VALUE].float_value = 0.0F;
  choose("Fixed Ticket");
  choose("On");
  EXPECT_TRUE(shows("Payout Percent                       0.00% (FIXED)")) << "of no money";
  prefs[PREF_COIN_VALUE].float_value = 2.0F;
  press(PRESS_SRV);
  choose("Coin/Game");
  EXPECT_TRUE(shows("Bonus Value                          0 (FIXED)"));
  press(PRESS_SRV);
  set("Payout", "Ticket Use", "Off");
  choose("Coin/Game");
  EXPECT_TRUE(shows("Average Ticket Payout                0.00 (DISABLED)"));
}

TEST_F(Adjustments, WantedTickets_AreRoundedAs32BitFloats) {
  set("Coin/Game", "Coin Value", "0.450");
  set("Payout", "Payout Percent", "65%");  // 29.25; in doubles slightly less
  choose("Payout");
  EXPECT_EQ(line("Average"), "Average Ticket Payout                29.50 (CAPPED TO 25.00)");
  for (const float damaged : {0.0F, -1e-30F, 1e-38F, std::numeric_limits<float>::quiet_NaN()}) {
    prefs[PREF_TICKET_VALUE].float_value = damaged;
    pane_page_payout();
    EXPECT_FALSE(line("Average").empty()) << damaged;
  }
}

TEST_F(Adjustments, BonusFarOutOfRange_LowersTheAverage) {
  prefs[PREF_BONUS_VALUE].int_value = std::numeric_limits<std::int32_t>::min();
  pane_page_payout();
  EXPECT_NE(line("Average").find("(-"), std::string::npos) << line("Average");
}

TEST_F(Adjustments, BoostAndTwoPointTickets_ChangeTheBonusShown) {
  set("Payout", "Boost Bonus", "On");
  choose("Payout");
  EXPECT_TRUE(shows("Bonus Value                          500"));
  press(PRESS_SRV);
  set("Payout", "Boost Bonus", "Off");
  set("Payout", "Bonus Value", "75");
  set("Payout", "Two Point", "On");
  choose("Payout");
  EXPECT_TRUE(shows("Bonus Value                          80 (MANUAL)"));
}

}  // namespace
