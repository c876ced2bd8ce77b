// Audit pages, and what each reset clears and keeps.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
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
  choose("Payout");
  EXPECT_EQ(line("Tickets Per Frog"), "Tickets Per Frog                      5.000          0.000");
}

TEST_F(Books, Resets_ClearTheirOwnRowsAfterYesOnly) {
  const auto dirty = [] {
    for (int row = 0; row < AUDIT_COUNT; ++row) audits[row].count = 9;
    histogram[0][5] = 4;
    prefs[PREF_COINS_TO_PLAY].int_value = 7;
    prefs[PREF_CHECK_CRC].int_value = 0;
    tick_timers.credit_wait_ms[1] = 55;
    payout_recompute();
    jamma_fake_forget_calls();
  };
  const auto reset = [](const char* row, const char* answer) {
    choose(row);
    EXPECT_EQ(selected(), "Yes");
    choose(answer);
    EXPECT_TRUE(selected().starts_with(row));
  };
  choose("Resets");
  for (const char* row : {"Clear Coins", "Clear Tickets", "Reset Audits", "Reset Adjustments",
                          "Factory Restore", "CRC Check"}) {
    for (const char* answer : {"No", "Cancel"}) {
      dirty();
      reset(row, answer);
      EXPECT_EQ(audits[AUDIT_TICKETS].count, 9);
      EXPECT_EQ(pref_int(PREF_COINS_TO_PLAY), 7);
      EXPECT_EQ(pref_int(PREF_CHECK_CRC), 0);
      EXPECT_EQ(jamma_fake_count(JAMMA_CLEAR_TICKETS), 0U);
    }
  }
  dirty();
  reset("Clear Coins", "Yes");
  EXPECT_EQ(audit_count(AUDIT_CURRENT_CREDITS, 0), 0);
  EXPECT_EQ(audit_count(AUDIT_CURRENT_COINS, 1), 0);
  EXPECT_EQ(tick_timers.credit_wait_ms[1], 0);
  EXPECT_EQ(audit_count(AUDIT_COIN_DROPS, 0), 9) << "the counters of coins taken stay";

  dirty();
  reset("Clear Tickets", "Yes");
  EXPECT_EQ(jamma_fake_count(JAMMA_CLEAR_TICKETS), 2U);
  EXPECT_EQ(audit_count(AUDIT_TICKETS, 0), 9);

  dirty();
  reset("Reset Audits", "Yes");
  EXPECT_EQ(audit_count(AUDIT_BOOT_COUNT), 0);
  EXPECT_EQ(histogram[0][5], 0U);
  EXPECT_EQ(pref_int(PREF_COINS_TO_PLAY), 7);
  EXPECT_EQ(jamma_fake_count(JAMMA_CLEAR_TICKETS), 0U) << "the board still owes tickets";

  dirty();
  reset("Reset Adjustments", "Yes");
  EXPECT_EQ(pref_int(PREF_COINS_TO_PLAY), 1);
  EXPECT_EQ(pref_int(PREF_CHECK_CRC), 1);
  EXPECT_EQ(audit_count(AUDIT_CURRENT_CREDITS, 0), 0);
  EXPECT_EQ(audit_count(AUDIT_TICKETS, 0), 9);

  dirty();
  reset("Factory Restore", "Yes");
  EXPECT_EQ(jamma_fake_count(JAMMA_CLEAR_TICKETS), 2U);
  EXPECT_EQ(audit_count(AUDIT_TICKETS, 0), 0);
  EXPECT_EQ(histogram[0][5], 0U);
  EXPECT_EQ(pref_int(PREF_COINS_TO_PLAY), 1);

  dirty();
  reset("CRC Check", "Yes");
  EXPECT_EQ(pref_int(PREF_CHECK_CRC), 1);
  EXPECT_EQ(pref_int(PREF_COINS_TO_PLAY), 7);
  press(PRESS_SRV);
  choose("Coin/Game");
  EXPECT_TRUE(shows("Coins To Play            1")) << "the rows show the reset at once";
}

}  // namespace
