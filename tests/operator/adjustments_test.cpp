// Settings: what a choice stores and changes, and the figures that follow from it.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <tuple>

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
  // The bonus, the average and the percentage, as the page beside the menu has them.
  static std::string figures() {
    std::string text;
    for (const char* label : {"Bonus Value   ", "Average", "Payout Percent   "}) {
      const std::string shown = line(label);
      text += (text.empty() ? "" : ", ") + (shown.size() > 37 ? shown.substr(37) : "nothing");
    }
    return text;
  }
};

// Each row shows what is stored. What it shows at first, and what its list offers, is in
// screens.txt.
TEST_F(Adjustments, OptionLists_StoreTheChoiceAndOpenOnIt) {
  int settings = 0;
  for (const char* menu : {"Coin/Game", "Payout"}) {
    choose(menu);
    for (const Drawn& drawn : seen(menu_draw)) {
      const std::string row = drawn.what.substr(0, 24);
      if (drawn.what.size() < 26 || drawn.colour != 0xFFFFFFFF) continue;  // no setting, or faint
      if (row.starts_with("Ticket Use") || row.starts_with("Fixed Ticket"))
        continue;  // these disable others
      SCOPED_TRACE(row);
      ++settings;
      for (const JammaPress beside_cancel : {PRESS_P1S, PRESS_VLU}) {  // the first, and the last
        choose(row);
        find("Cancel");
        press(beside_cancel);
        const std::string value = selected();
        press(PRESS_P2S);
        std::string shown = value.substr(value.find_first_not_of(' '));
        if (shown.ends_with("%")) shown.insert(shown.size() - 1, ".0");  // " 5%" is "5.0%" there
        EXPECT_EQ(selected(), row + " " + shown);
        choose(row);
        EXPECT_EQ(selected(), value) << "the list opens on the current value";
        press(PRESS_SRV);
      }
    }
    press(PRESS_SRV);
  }
  EXPECT_GE(settings, 15);
  EXPECT_TRUE(drive.has("prefs"));
}

TEST_F(Adjustments, PriceChosen_ClearsCredits_CancelKeepsThem) {
  audits[AUDIT_CURRENT_CREDITS].count = 2;
  audits[AUDIT_CURRENT_COINS + 1].count = 3;
  tick_timers.credit_wait_ms[0] = 700;
  const auto money = [] {
    return std::tuple(audit_count(AUDIT_CURRENT_CREDITS, 0), audit_count(AUDIT_CURRENT_COINS, 1),
                      tick_timers.credit_wait_ms[0].get());
  };
  choose("Coin/Game");
  choose("Coins To Play");
  press(PRESS_SRV);
  choose("Coins To Play");
  choose("Cancel");
  EXPECT_EQ(money(), std::tuple(2, 3, 700));
  choose("Coins To Play");
  EXPECT_EQ(selected(), "1");
  press(PRESS_TST);  // the current value
  EXPECT_EQ(money(), std::tuple(0, 0, 0));
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

TEST_F(Adjustments, PayoutFigures_FollowMoneySettings) {
  choose("Payout");
  EXPECT_EQ(figures(), "250, 10.00, 40.00%");
  choose("Bonus Value");
  choose("500");
  EXPECT_EQ(figures(), "500 (MANUAL), (11.97), (47.90%)");
  press(PRESS_SRV);
  set("Coin/Game", "Coin Value", "2.000");
  choose("Payout");
  EXPECT_EQ(figures(), "600, 80.00 (CAPPED TO 25.00), 40.00% (CAPPED TO 12.50%)")
      << "a money setting resets the bonus";
  choose("Ticket Value");
  choose("0.00250");
  EXPECT_EQ(figures(), "600, 320.00 (CAPPED TO 25.00), 40.00% (CAPPED TO 3.12%)");
  choose("Bonus Value");
  choose("50");
  EXPECT_EQ(figures(), "50 (MANUAL), 320.00 (CAPPED TO (20.66), 40.00% (CAPPED TO (2.58%)");
  choose("Fixed Ticket");
  choose("On");
  EXPECT_EQ(figures(), "10 (FIXED), 10.00 (FIXED), 1.25% (FIXED)");
  prefs[PREF_COIN_VALUE].float_value = 0.0F;
  choose("Fixed Ticket");
  choose("On");
  EXPECT_EQ(figures(), "10 (FIXED), 10.00 (FIXED), 0.00% (FIXED)") << "of no money";
  prefs[PREF_COIN_VALUE].float_value = 2.0F;
  press(PRESS_SRV);
  choose("Coin/Game");
  EXPECT_EQ(figures(), "0 (FIXED), 10.00 (FIXED), 1.25% (FIXED)");
  press(PRESS_SRV);
  set("Payout", "Ticket Use", "Off");
  choose("Coin/Game");
  EXPECT_EQ(figures(), "0 (DISABLED), 0.00 (DISABLED), 0.00% (DISABLED)");
}

TEST_F(Adjustments, PayoutFigures_AreThoseOfTheBonusThatIsPaid) {
  set("Payout", "Boost Bonus", "On");
  pane_page_payout();
  EXPECT_EQ(figures(), "500, 10.00, 40.00%");
  set("Payout", "Boost Bonus", "Off");
  set("Payout", "Bonus Value", "75");
  set("Payout", "Two Point", "On");
  pane_page_payout();
  EXPECT_EQ(figures(), "80 (MANUAL), (8.62), (34.47%)");
  prefs[PREF_BONUS_VALUE].int_value = std::numeric_limits<std::int32_t>::min();
  pane_page_payout();
  EXPECT_EQ(figures(), "0 (MANUAL), (-16959746.00), (-67838984.00%)") << "far out of range";
  paytable_factor = 3;
  bonus_value_reset();
  pane_page_payout();
  EXPECT_EQ(figures(), "750, 10.00, 40.00%");
  paytable_factor = 1;
  pane_page_payout();
  EXPECT_EQ(figures(), "750 (MANUAL), (13.95), (55.80%)") << "not the table's any more";
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

}  // namespace
