// Whether a cabinet pays as it is set.
#include "tools/books/pay.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "books/prefs.h"
#include "tests/temp_folder.h"
#include "tools/books/journal_read.h"

namespace {

// Two players; 11.6 and 13 tickets a frog on average.
std::vector<PayPlayer> players() {
  PayPlayer one;
  one.name = "one";
  one.half_width = 0.1;
  for (auto& side : one.frogs) side = {{2, 4000}, {10, 5500}, {20, 400}, {450, 100}};
  PayPlayer other = one;
  other.name = "other";
  for (auto& side : other.frogs) side[20] += 2000;
  return {one, other};
}

PaySums sums_of(std::int64_t frogs, double tickets_a_frog) {
  PaySums sums;
  for (int side = 0; side < SIDE_COUNT; ++side) {
    sums.frogs[side] = frogs / 2;
    sums.tickets[side] = static_cast<std::int64_t>(static_cast<double>(frogs) / 2 * tickets_a_frog);
  }
  return sums;
}

Journal journal_of(const std::string& text) {
  Journal journal;
  EXPECT_EQ(journal_add(journal, "journal", text), "");
  return journal;
}

std::string win(const char* time, int tickets, const char* by = "catch") {
  return std::string("2026-11-25T") + time + ".000Z 3 tickets side=right game=1 by=" + by +
         " tickets=" + std::to_string(tickets) + " paper=1 told=yes\n";
}

TEST(Pay, OnlyWhatPlayersCantDoIsFound) {
  const struct {
    std::int64_t frogs;
    double tickets;
    PayVerdict verdict;
  } rows[] = {{20000, 11.6, PAYS_AS_SET}, {20000, 12.3, PAYS_AS_SET},
              {20000, 13, PAYS_AS_SET},   {20000, 16, PAYS_ABOVE},
              {20000, 8, PAYS_BELOW},     {4, 225, PAYS_AS_SET},  // two jackpots
              {20, 8, PAYS_AS_SET}};
  for (const auto& row : rows) {
    const PayResult result = pay_judge(sums_of(row.frogs, row.tickets), players());
    EXPECT_EQ(result.verdict, row.verdict) << row.frogs << " frogs, each " << row.tickets;
    EXPECT_EQ(result.p < PAY_ALARM_P, row.verdict != PAYS_AS_SET) << row.tickets;
  }
  EXPECT_EQ(pay_judge(sums_of(0, 0), players()).p, 1);
}

TEST(Pay, FrogsCountFromTheLastChangeOfSettings) {
  const std::string text =
      win("10:00:00", 5) +
      "2026-11-25T10:01:00.000Z 3 setting setting=\"Payout Percent\" from=0.4 to=0.5\n" +
      win("10:02:00", 7) + win("10:03:00", 9) + win("10:04:00", 10, "test") +
      "2026-11-25T10:05:00.000Z 3 setting setting=\"Volume\" from=16 to=12\n";
  const PaySums sums = pay_sums(journal_of(text), 0);
  EXPECT_EQ(sums.frogs[SIDE_RIGHT], 2);
  EXPECT_EQ(sums.tickets[SIDE_RIGHT], 16);
  EXPECT_EQ(sums.frogs[SIDE_LEFT], 0);
  EXPECT_EQ(pay_sums(journal_of(text), sums.since_ms + 90000).tickets[SIDE_RIGHT], 9);
  EXPECT_EQ(pay_sums(journal_of(text + "2026-11-25T10:06:00.000Z 3 reset reset=factory\n"), 0)
                .frogs[SIDE_RIGHT],
            0);
}

TEST(Pay, PlayersComeFromTheLabAndAreKept) {
  PayPlayer player;
  ASSERT_TRUE(pay_player_read(R"({"player": "eager", "x": 1, "tickets_per_frog": {"mean": 3.5,
      "half_width_95": 0.25}, "histogram_left": {"2": 3, "5": 3}, "histogram_right": {"4": 1}})",
                              player));
  EXPECT_FALSE(pay_player_read("{}", player));
  const TempFolder folder;
  PayFile file;
  file.settings = pay_settings(prefs_defaults);
  file.players = {player};
  file.result = {PAYS_ABOVE, 0.001, 99, 1795600800000};
  ASSERT_EQ(pay_write(folder.file("paycheck"), file), "");
  const PayFile again = pay_read(folder.file("paycheck"));
  EXPECT_EQ(again.settings, file.settings);
  EXPECT_EQ(again.result.verdict, PAYS_ABOVE);
  EXPECT_EQ(again.result.utc_ms, 1795600800000);
  ASSERT_EQ(again.players.size(), 1U);
  EXPECT_EQ(again.players[0].name, "eager");
  EXPECT_EQ(again.players[0].half_width, 0.25);
  EXPECT_EQ(again.players[0].frogs[SIDE_LEFT], player.frogs[SIDE_LEFT]);
  EXPECT_TRUE(pay_read(folder.file("none")).players.empty());
}

TEST(Pay, SentenceSaysWhatWasFound) {
  PaySums sums = sums_of(1000, 30);
  const PayResult result = pay_judge(sums, players());
  const std::string text = pay_sentence(sums, players(), result);
  EXPECT_NE(text.find("1000 frogs since "), std::string::npos) << text;
  EXPECT_NE(text.find("won 30.00 tickets each"), std::string::npos) << text;
  EXPECT_NE(text.find("win 11.60 (one)"), std::string::npos) << text;
  EXPECT_NE(text.find("That is above: an expert, a wrong setting or a fault (p = "),
            std::string::npos)
      << text;
}

}  // namespace
