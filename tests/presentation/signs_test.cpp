#include "presentation/scene.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick_timers.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "tests/presentation/stage.h"

namespace {

class Signs : public Stage {
 protected:
  static void set(PrefIndex row, int value) { prefs[row].int_value = value; }
  static void credits(int side, int value) { audits[AUDIT_CURRENT_CREDITS + side].count = value; }
  static void coins(int side, int value) { audits[AUDIT_CURRENT_COINS + side].count = value; }
  static void price(CurrencyUnit unit, int cost, int frogs) {
    set(PREF_CURRENCY_UNIT, unit);
    set(PREF_COINS_TO_PLAY, cost);
    set(PREF_FROGS_PER_GAME, frogs);
  }
};

TEST_F(Signs, SignsHaveTheirPlaces) {
  signs[1].frame = 9;
  const std::vector<Drawn> drawn = seen(signs_draw);
  EXPECT_EQ(places(drawn, "anim_wdsign"), "13,654 1091,654");
  EXPECT_EQ(places(drawn, "anim_lngsign"), "552,654");
}

TEST_F(Signs, AskForMissingCoins) {
  price(CURRENCY_COINS, 2, 1);
  coins(SIDE_RIGHT, 1);
  std::vector<Drawn> drawn = seen(signs_draw);
  // 13 + 128 - 7 * 6 - 7 and 1091 + ...; each word twice, its shadow first
  EXPECT_EQ(places(drawn, "INSERT"), "94,685 92,683 1172,685 1170,683");
  EXPECT_EQ(places(drawn, "2 COINS"), "87,711 85,709");
  EXPECT_EQ(places(drawn, "COIN"), "1186,711 1184,709");
  set(PREF_CURRENCY_UNIT, CURRENCY_SWIPES);
  drawn = seen(signs_draw);
  EXPECT_TRUE(has(drawn, "SWIPE"));
  EXPECT_EQ(first(drawn, "CARD").x, 13 + 128 - 28 - 7 + 2);
  EXPECT_EQ(first(drawn, "AGAIN").x, 1091 + 128 - 35 - 7 + 2);
}

TEST_F(Signs, ShowCreditsAsFrogs) {
  credits(SIDE_LEFT, 1);
  credits(SIDE_RIGHT, 2);
  std::vector<Drawn> drawn = seen(signs_draw);
  EXPECT_EQ(places(drawn, "num_frogs_txt"), "94,654 1172,654");
  EXPECT_EQ(places(drawn, "frogiconmed"), "74,649");
  EXPECT_EQ(places(drawn, "frogicon"), "1154,678 1206,678");
  credits(SIDE_LEFT, 12);
  credits(SIDE_RIGHT, 0);
  drawn = seen(signs_draw);
  EXPECT_EQ(places(drawn, "    X 12"), "80,698 78,696");
  EXPECT_EQ(places(drawn, "frogicon"), "69,678");
  set(PREF_FREEPLAY, 1);
  drawn = seen(signs_draw);
  EXPECT_EQ(places(drawn, "frogiconmed"), "74,649 1152,649") << "with any credits";
  EXPECT_EQ(first(drawn, "FREEPLAY").y, 706);
}

TEST_F(Signs, ShowThePrice) {
  const auto line = [](const char* what, const char* icon) {
    const std::vector<Drawn> drawn = seen(signs_draw);
    const int n = static_cast<int>(std::string(what).size());
    EXPECT_EQ(first(drawn, what).x, 552 + 128 - 7 * n + 2) << what;
    return places(drawn, icon);
  };
  price(CURRENCY_COINS, 1, 1);  // 680 + 7 * 15 - 108
  EXPECT_EQ(line("1 COIN /       ", "frogiconlrg"), "677,654");
  price(CURRENCY_COINS, 3, 2);  // 680 + 7 * 15 - 84
  EXPECT_EQ(line("3 COINS /    X2", "frogicon"), "701,683");
  price(CURRENCY_DOLLARS, 3, 1);
  EXPECT_EQ(line("$0.75 /       ", "frogiconlrg"), "670,654");
  price(CURRENCY_EURO, 4, 5);
  EXPECT_EQ(line("@1.00 /    X5", "frogicon"), "687,683");
}

// Before a number of two digits the gap is narrower than the icon.
TEST_F(Signs, FrogIconLiesBehindThePrice) {
  const auto frog_is_behind = [](const char* line) {
    const std::vector<Drawn> drawn = seen(signs_draw);
    const auto at = [&drawn](const char* what) {
      return std::ranges::find(drawn, what, &Drawn::what) - drawn.begin();
    };
    EXPECT_TRUE(has(drawn, line)) << line;
    EXPECT_LT(at("frogicon"), at(line));
  };
  price(CURRENCY_COINS, 1, 10);
  frog_is_behind("1 COIN /    X10");
  price(CURRENCY_SWIPES, 2, 10);
  set(PREF_COINS_PER_SWIPE, 3);
  frog_is_behind("2 COINS /    X10");
}

TEST_F(Signs, ShowWhatASwipeBuys) {
  const auto swipe = [](int worth, int cost, int frogs) {
    price(CURRENCY_SWIPES, cost, frogs);
    set(PREF_COINS_PER_SWIPE, worth);
    return seen(signs_draw);
  };
  std::vector<Drawn> drawn = swipe(3, 2, 1);
  EXPECT_EQ(first(drawn, "SWIPE / 3 COINS").y, 654 + 33 + 2);
  EXPECT_EQ(first(drawn, "2 COINS /    ").y, 654 + 66 + 2);
  EXPECT_EQ(places(drawn, "frogicon"), "715,699");
  drawn = swipe(1, 2, 3);
  EXPECT_TRUE(has(drawn, "SWIPE / COIN"));
  EXPECT_EQ(places(drawn, "frogicon"), "701,699");

  drawn = swipe(2, 2, 1);  // x0 is 672
  EXPECT_EQ(first(drawn, "SWIPE / ").x, 680 - 56 + 2);
  EXPECT_EQ(places(drawn, "frogiconlrg"), "672,654");
  drawn = swipe(4, 2, 1);
  EXPECT_EQ(first(drawn, "SWIPE / ").x, 680 - 56 - 53 + 2);
  EXPECT_EQ(places(drawn, "frogicon"), "672,683 724,683");
  EXPECT_EQ(places(swipe(6, 2, 1), "frogicon"), "672,663 724,663 672,703");
  EXPECT_EQ(places(swipe(4, 2, 2), "frogicon"), "672,663 724,663 672,703 724,703");
  drawn = swipe(4, 1, 3);
  EXPECT_EQ(first(drawn, "SWIPE /    X12").x, 680 - 7 * 14 - 4 + 2);
  EXPECT_EQ(places(drawn, "frogicon"), "652,683");
  EXPECT_TRUE(has(swipe(4, 0, 1), "SWIPE / 4 COINS")) << "no division by 0";
}

TEST_F(Signs, DamagedSettingsAreDrawnWithoutOverflow) {
  constexpr int MOST = std::numeric_limits<int>::max();
  constexpr int LEAST = std::numeric_limits<int>::min();
  price(CURRENCY_SWIPES, 1, MOST);
  set(PREF_COINS_PER_SWIPE, 2);
  EXPECT_TRUE(has(seen(signs_draw), "SWIPE /    X4294967294"));
  price(CURRENCY_COINS, LEAST, 1);
  coins(SIDE_LEFT, 1);
  EXPECT_EQ(first(seen(signs_draw), "-2147483649 COINS").y, 711);
  set(PREF_TIMEOUT_SECONDS, LEAST);  // as if off
  tick_timers.credit_wait_ms[SIDE_LEFT] = 6000;
  tick_timers.idle_ms[SIDE_LEFT] = 6000;
  EXPECT_EQ(seen(prompt_start_draw).size(), 3U);
}

TEST_F(Signs, PressStartAnimatesAndCountsDown) {
  tick_timers.credit_wait_ms[SIDE_RIGHT] = 5001;
  tick_timers.idle_ms[SIDE_RIGHT] = 5000;
  EXPECT_TRUE(seen(prompt_start_draw).empty());
  tick_timers.idle_ms[SIDE_RIGHT] = 5001;
  std::vector<Drawn> drawn = seen(prompt_start_draw);
  EXPECT_EQ(places(drawn, "prsbtn_frog_up"), "929,434");
  EXPECT_EQ(places(drawn, "press_to_grn_txt"), "892,380");
  EXPECT_EQ(places(drawn, "start_grn_txt"), "892,542");
  EXPECT_EQ(drawn.size(), 3U) << "no count without a timeout";
  set(PREF_TIMEOUT_SECONDS, 15);
  game_clock.now_ms = 100500;
  drawn = seen(prompt_start_draw);
  EXPECT_EQ(places(drawn, "prsbtn_frog_dn"), "929,434");
  EXPECT_EQ(places(drawn, "9"), "1009,504 1007,502") << "9.999 seconds are left";
}

TEST_F(Signs, InsertCoinFadesInAndOut) {
  tick_timers.coin_prompt_start[SIDE_LEFT] = 100000;
  tick_timers.coin_prompt_until[SIDE_LEFT] = 103000;
  const auto alpha_at = [](int ms) {
    game_clock.now_ms = 100000 + ms;
    const std::vector<Drawn> drawn = seen(prompt_coin_draw);
    return drawn.empty() ? -1 : static_cast<int>(drawn[0].colour >> 24);
  };
  EXPECT_EQ(alpha_at(0), -1) << "alpha 0 needs no draw";
  EXPECT_NEAR(alpha_at(250), 127, 1);
  EXPECT_EQ(alpha_at(500), 255);
  EXPECT_EQ(places(seen(prompt_coin_draw), "insertcoin_grn"), "218,350");
  set(PREF_CURRENCY_UNIT, CURRENCY_SWIPES);
  EXPECT_EQ(places(seen(prompt_coin_draw), "swipe_crd"), "218,326");
  EXPECT_EQ(alpha_at(3000), -1);
}

TEST_F(Signs, BubblesAlternate) {
  tick_timers.credit_wait_ms[SIDE_LEFT] = 2001;
  EXPECT_TRUE(seen(bubbles_draw).empty()) << "no frog in the launch place";
  frog_enqueue(SIDE_LEFT);
  EXPECT_TRUE(seen(bubbles_draw).empty()) << "it is still hidden";
  Frog& head = *frog_queues[SIDE_LEFT].places[0].get();
  head.flags = 0;
  const auto bubble_at = [](int wait_ms) {
    tick_timers.credit_wait_ms[SIDE_LEFT] = wait_ms;
    const std::vector<Drawn> drawn = seen(bubbles_draw);
    return drawn.empty() ? std::string() : drawn[0].what;
  };
  EXPECT_EQ(places(seen(bubbles_draw), "msg1_bubble"), "") << "2001 modulo 6000 ms is a pause";
  EXPECT_EQ(bubble_at(3000), "msg3_bubble");
  EXPECT_EQ(bubble_at(5000), "");
  EXPECT_EQ(bubble_at(6000), "msg1_bubble");
  EXPECT_EQ(places(seen(bubbles_draw), "msg1_bubble"), "360,576");
  set(PREF_FIXED_TICKET, 1);
  EXPECT_EQ(bubble_at(3000), "msg1_bubble");
  EXPECT_EQ(bubble_at(5999), "");
  set(PREF_TICKET_USE, 0);
  EXPECT_EQ(bubble_at(3000), "");
  tick_timers.since_award_ms[SIDE_LEFT] = 1;
  EXPECT_EQ(bubble_at(2000), "msg2_bubble");
  tick_timers.since_award_ms[SIDE_LEFT] = 2000;
  EXPECT_EQ(bubble_at(0), "");
  tick_timers.since_award_ms[SIDE_LEFT] = 9000;
  EXPECT_EQ(bubble_at(0), "");
}

}  // namespace
