#include "playfield/awards.h"

#include <algorithm>
#include <map>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick_timers.h"
#include "playfield/paytable.h"
#include "tests/fakes/jps_fake.h"
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
  static void settle(const PayoutCase& at) {
    for (const auto& [row, value] : at.settings) prefs[row].int_value = value;
    playfield_reset();
    clear_field();
    outcomes.clear();
  }

  static Frog& play(const PayoutCase& at, int side) {
    Frog& frog = frog_on(side, 3);
    for (int i = 0; i < at.bugs; ++i) award_bug(side, frog, 7, i);
    if (at.butterfly > 0) {
      frog.butterfly_tickets = at.butterfly;
      purse_add_up(side, frog);
    }
    for (const LaneCell cell : at.gold) award_gold(side, frog, cell, 0, 0);
    if (at.ending == WATER) {
      drown(frog);
    } else {
      cross(frog);
    }
    return frog;
  }

  static std::vector<Outcome> expected(const PayoutCase& at, int side) {
    std::vector<Outcome> list;
    if (at.shown >= 0) list.push_back({"show", side, at.shown});
    if (at.paper >= 0) {
      list.push_back({"add", side, at.paper});
      list.push_back({"meter", side, at.paper});
    }
    list.push_back({"store", 0, 0});
    return list;
  }

  static void expect_books(const Books& books, int side) {
    for (int row = 0; row < AUDIT_COUNT; ++row) {
      int wanted = 0;
      for (const auto& [left_row, count] : books) {
        if (left_row + side == row) wanted = count;
      }
      EXPECT_EQ(audit_count(row), wanted) << audits[row].name;
    }
  }

  static void expect_histogram(const PayoutCase& at, int side) {
    const auto booked = at.books.find(AUDIT_TICKETS);
    const int cell = booked == at.books.end() ? 0 : booked->second;
    for (int each = 0; each < SIDE_COUNT; ++each) {
      for (int n = 0; n < HISTOGRAM_CELLS; ++n) {
        const bool counted = each == side && n == cell && at.paper >= 0;
        ASSERT_EQ(histogram[each][n], counted ? 1U : 0U) << each << ' ' << n;
      }
    }
  }
};

TEST_F(Awards, BooksPaysAndStoresEveryPayout) {
  for (const PayoutCase& at : payout_cases) {
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
      SCOPED_TRACE(testing::Message() << at.name << ", side " << side);
      SetUp();
      settle(at);
      const Frog& frog = play(at, side);
      EXPECT_EQ(frog.total_tickets, at.total);
      EXPECT_EQ(outcomes, expected(at, side));
      EXPECT_EQ(tick_timers.award_done[side], at.ending == WATER ? 1 : 0);
      expect_books(at.books, side);
      expect_histogram(at, side);
    }
  }
}

TEST_F(Awards, DemoFrogCountsOnlyCappedTickets) {
  prefs[PREF_MAXIMUM_TICKETS].int_value = 2;
  clear_field();
  Frog& frog = frog_on(SIDE_LEFT, 7);
  frog.flags = FROG_DEMO;
  award_bug(SIDE_LEFT, frog, 7, 0);
  award_bug(SIDE_LEFT, frog, 7, 1);
  award_bug(SIDE_LEFT, frog, 7, 2);
  award_gold(SIDE_LEFT, frog, CELL_TIER1, 0, 0);
  award_butterfly(SIDE_LEFT, frog);
  drown(frog);
  EXPECT_EQ(frog.sink_ms, 2000);
  cross(frog);
  EXPECT_EQ(frog.total_tickets, 2);
  EXPECT_TRUE(outcomes.empty());
  EXPECT_TRUE(jps_fake.played.empty());
  EXPECT_EQ(tick_timers.award_done[SIDE_LEFT], 0);
  for (int row = 0; row < AUDIT_COUNT; ++row) {
    EXPECT_EQ(audit_count(row) != 0, row == AUDIT_CAPPED_TICKETS) << audits[row].name;
  }
}

TEST_F(Awards, ButterflyPaysHalfToOneAndAHalfTimesTableValue) {
  int least = 1000;
  int most = 0;
  for (int i = 0; i < 5000; ++i) {
    Frog& frog = frog_on(SIDE_LEFT, 7);
    frog.butterfly_tickets = 0;
    award_butterfly(SIDE_LEFT, frog);
    least = std::min(least, frog.butterfly_tickets.get());
    most = std::max(most, frog.butterfly_tickets.get());
    ASSERT_EQ(frog.award_kind, AWARD_NONE);
  }
  EXPECT_EQ(least, 17);
  EXPECT_GE(most, 51);
  EXPECT_LE(most, 52);

  prefs[PREF_TWO_POINT_TICKETS].int_value = 1;
  for (int i = 0; i < 200; ++i) {
    Frog& frog = frog_on(SIDE_LEFT, 7);
    frog.butterfly_tickets = 0;
    award_butterfly(SIDE_LEFT, frog);
    ASSERT_EQ(frog.butterfly_tickets % 2, 0);
  }
}

TEST_F(Awards, JackpotShortensSinkingOnItsSide) {
  clear_field();
  Frog& slow = stations[SIDE_LEFT].frogs[3];
  Frog& quick = stations[SIDE_LEFT].frogs[4];
  Frog& other = stations[SIDE_RIGHT].frogs[3];
  for (Frog* frog : {&slow, &quick, &other}) {
    frog->state = FROG_SINKING;
    frog->state_time = now_ms();
    frog->sink_ms = frog == &quick ? 2100 : 20000;
  }
  cross(frog_on(SIDE_LEFT, 1));
  EXPECT_EQ(slow.sink_ms, 351 + 2000);
  EXPECT_EQ(quick.sink_ms, 2100);
  EXPECT_EQ(other.sink_ms, 20000);
}

TEST_F(Awards, RiderOfLandedGoldCellBlowsKiss) {
  clear_field();
  Frog& frog = frog_on(SIDE_LEFT, 3);
  gold_riders[6].lane = 3;
  gold_riders[6].slot = 21;
  gold_riders[6].x = 300;
  gold_riders[6].y = 90;
  award_gold(SIDE_LEFT, frog, CELL_TIER1, -1, 21);
  EXPECT_EQ(gold_riders[6].sheet_index, SHEET_KISS);
  EXPECT_EQ(gold_riders[6].start, now_ms() - 281);
  EXPECT_EQ(gold_riders[6].scale, 1.5F);
  EXPECT_EQ(heart_fx[0].rider, 6);
  EXPECT_EQ(heart_fx[0].x, 360);
  EXPECT_EQ(heart_fx[0].y, 90);
  EXPECT_EQ(gold_riders[0].sheet_index, SHEET_WAVE);
}

TEST_F(Awards, SoundCuesKeepMinimumInterval) {
  clear_field();
  Frog& frog = frog_on(SIDE_LEFT, 7);
  award_bug(SIDE_LEFT, frog, 7, 0);
  award_bug(SIDE_LEFT, frog, 7, 1);
  EXPECT_EQ(jps_fake_count("gulp"), 1);
  game_clock.now_ms += 251;
  award_bug(SIDE_LEFT, frog, 7, 2);
  EXPECT_EQ(jps_fake_count("gulp"), 2);
  for (const double pitch : jps_fake.pitches) {
    EXPECT_GE(pitch, 0.9);
    EXPECT_LE(pitch, 1.0);
  }

  int voices = 0;
  for (int i = 0; i < 100; ++i) {  // five minutes
    game_clock.now_ms += 3000;
    award_sink_cues(frog);
    voices = jps_fake_count("voxoops") + jps_fake_count("voxalmost");
  }
  EXPECT_EQ(jps_fake_count("splash"), 100);
  EXPECT_GT(voices, 10);
  EXPECT_LE(voices, 60);
  EXPECT_EQ(jps_fake_count("voxalmost"), 0) << "lane 1 only";
}

TEST_F(Awards, CroaksOnAnEighthOfHopsAndAQuarterOfLandings) {
  const auto croaks = [](void (*cue)()) {
    jps_fake_reset();
    for (int i = 0; i < 1000; ++i) {
      game_clock.now_ms += 251;
      cue();
      cue();  // never due
    }
    return jps_fake_count("croak");
  };
  EXPECT_NEAR(croaks(award_hop_cues), 125, 40);
  EXPECT_NEAR(croaks(award_landing_cue), 250, 50);

  clear_field();
  awards_reset();
  jps_fake_reset();
  for (int i = 0; i < 100; ++i) {  // landings on the middle bank
    Frog& frog = frog_on(SIDE_LEFT, 7, FROG_HOPPING);
    stations_tick(351);
    ASSERT_EQ(frog.state, FROG_RESTING);
  }
  EXPECT_NEAR(jps_fake_count("croak"), 25, 18);
}

}  // namespace
