// Audit pages, and what each reset clears and keeps.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "books/store_report.h"
#include "frame/tick_timers.h"
#include "playfield/paytable.h"
#include "tests/operator/desk.h"

namespace {

class Books : public Desk {};

TEST_F(Books, OpenAuditPage_DoesNotChange) {
  choose("Audits");
  choose("System");
  audits[AUDIT_BOOT_COUNT].count = 7;
  EXPECT_EQ(line("Boot Count"), "Boot Count                                0");
  choose("System");
  EXPECT_EQ(line("Boot Count"), "Boot Count                                7");
}

TEST_F(Books, StoreThatFails_AddsALineUntilItWorks) {
  const auto pages = [] {
    choose("Audits");
    choose("System");
    std::vector<std::string> seen = {line("BOOKS NOT")};
    press(PRESS_SRV);
    seen.push_back(line("BOOKS NOT"));
    return seen;
  };
  EXPECT_EQ(pages(), (std::vector<std::string>{"", ""}));
  store_report(R"(d:\audits)", ENOSPC);
  const std::string trouble = "BOOKS NOT STORED     : No space left on device";
  EXPECT_EQ(pages(), (std::vector<std::string>{trouble, trouble}));
  store_report(R"(d:\audits)", 0);
  EXPECT_EQ(pages(), (std::vector<std::string>{"", ""}));
}

// Stored counters aren't checked when they are read. No value may crash a page.
TEST_F(Books, DamagedCounters_AreShownAsStored) {
  audits[AUDIT_GAMES_PLAYED].count = -1;
  audits[AUDIT_TIME_TOTAL_PLAYED].time_ms = std::numeric_limits<std::int64_t>::min();
  choose("Audits");
  choose("System");
  EXPECT_EQ(line("Time Per Frog"), "Time Per Frog                             -              -");
  EXPECT_EQ(line("Frogs Played  "), "Frogs Played                             -1              0");
  audits[AUDIT_TICKETS].count = 5;
  choose("Payout");
  EXPECT_EQ(line("Tickets Per Frog"), "Tickets Per Frog                      0.000          0.000");
  audits[AUDIT_GAMES_PLAYED].count = 1;
  audits[AUDIT_TIME_TOTAL_PLAYED].time_ms = 23450;
  choose("Payout");
  EXPECT_EQ(line("Tickets Per Frog"), "Tickets Per Frog                      5.000          0.000");
  choose("System");
  EXPECT_EQ(line("Time Per Frog"), "Time Per Frog                       0:23.45              -");
}

TEST_F(Books, Resets_ClearTheirOwnRowsAfterYesOnly) {
  const auto make_dirty = [] {
    for (int row = 0; row < AUDIT_COUNT; ++row) audits[row].count = 9;
    histogram[0][5] = 4;
    prefs[PREF_COINS_TO_PLAY].int_value = 7;
    prefs[PREF_CHECK_CRC].int_value = 0;
    tick_timers.credit_wait_ms[1] = 55;
    payout_recompute();
    jamma_fake_forget_calls();
  };
  // Credits and coins that wait, and how long; the counters; the settings; dispensers cleared.
  const auto state = [] {
    std::string text;
    for (const int number :
         {audit_count(AUDIT_CURRENT_CREDITS, 0), audit_count(AUDIT_CURRENT_COINS, 1),
          static_cast<int>(tick_timers.credit_wait_ms[1]), audit_count(AUDIT_COIN_DROPS, 0),
          audit_count(AUDIT_TICKETS, 0), audit_count(AUDIT_BOOT_COUNT),
          static_cast<int>(histogram[0][5]), pref_int(PREF_COINS_TO_PLAY), pref_int(PREF_CHECK_CRC),
          static_cast<int>(jamma_fake_count(JAMMA_CLEAR_TICKETS))}) {
      text += std::to_string(number) + " ";
    }
    return text;
  };
  choose("Resets");
  for (const auto& [row, after_yes] : {std::pair{"Clear Coins", "0 0 0 9 9 9 4 7 0 0 "},
                                       {"Clear Tickets", "9 9 55 9 9 9 4 7 0 2 "},
                                       {"Reset Audits", "0 0 55 0 0 0 0 7 0 0 "},
                                       {"Reset Adjustments", "0 0 0 9 9 9 4 1 1 0 "},
                                       {"Factory Restore", "0 0 55 0 0 0 0 1 1 2 "},
                                       {"CRC Check", "9 9 55 9 9 9 4 7 1 0 "}}) {
    for (const char* answer : {"No", "Cancel", "Yes"}) {
      SCOPED_TRACE(row);
      make_dirty();
      choose(row);
      EXPECT_EQ(selected(), "Yes");
      choose(answer);
      EXPECT_TRUE(selected().starts_with(row));
      EXPECT_EQ(state(), answer[0] == 'Y' ? after_yes : "9 9 55 9 9 9 4 7 0 0 ") << answer;
    }
  }
}

TEST_F(Books, ResetSettings_AreInTheRowsAtOnce) {
  prefs[PREF_COINS_TO_PLAY].int_value = 7;
  choose("Resets");
  choose("Reset Adjustments");
  choose("Yes");
  press(PRESS_SRV);
  choose("Coin/Game");
  EXPECT_TRUE(shows("Coins To Play            1"));
}

}  // namespace
