// Attract pictures: when they are shown, how they move, what hides them.
#include "presentation/attract.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "playfield/paytable.h"
#include "presentation/win_show.h"
#include "presentation/win_show_start.h"
#include "tests/presentation/stage.h"

namespace {

class Attract : public Stage {
 protected:
  Attract() { game_clock.now_ms = 0; }
  ~Attract() override { win_show_reset(); }

  // Ticks of 17 ms until this time.
  static void at(std::int64_t ms) {
    while (now_ms() + 17 < ms) {
      game_clock.now_ms += 17;
      attract_step();
    }
    game_clock.now_ms = ms;
    attract_step();
  }
  // The first picture that lies on the screen, and where.
  static std::string shown() {
    for (const Drawn& d : seen(attract_draw)) {
      if (d.x < 1360 && d.x > -1000 && (d.colour >> 24) != 0) {
        return d.what + " " + std::to_string(d.x) + "," + std::to_string(d.y);
      }
    }
    return "";
  }
  // Runs on until this picture shows, at most for five minutes.
  static void until(const std::string& picture) {
    const std::int64_t last = now_ms() + 300000;
    while (!shown().starts_with(picture + " ") && now_ms() < last) at(now_ms() + 17);
    ASSERT_TRUE(shown().starts_with(picture + " ")) << picture;
  }
};

TEST_F(Attract, FirstBoardFadesInAfter15SecondsAndBobs) {
  at(15000);
  EXPECT_EQ(shown(), "");
  at(15250);
  EXPECT_EQ(first(seen(attract_draw), "lrg_lilypad").colour >> 24, 127U) << "half way in";
  at(15500);
  EXPECT_EQ(shown(), "lrg_lilypad 385,123") << "a quarter of 64 pixels higher";
  at(16000);
  EXPECT_EQ(shown(), "lrg_lilypad 385,139");
  at(20750);
  EXPECT_EQ(first(seen(attract_draw), "lrg_lilypad").colour >> 24, 127U);
  at(21001);
  EXPECT_EQ(shown(), "");
  at(25001);
  EXPECT_EQ(shown(), "");
  at(25500);
  EXPECT_TRUE(shown().starts_with("eat_bugs_tck 337,")) << shown();
}

TEST_F(Attract, BoardShowsTheAdvertisedJackpot) {
  at(16000);
  const struct {
    int most;
    const char *first_digit, *last_digit;
    std::string first_place, last_place;
  } rows[] = {
      {7, "jack_7", "jack_7", "560,262", "560,262"},
      {42, "jack_4", "jack_2", "485,262", "635,262"},
      {250, "jack_2", "jack_0", "410,262", "710,262"},
  };
  ASSERT_GE(jackpot_value(), 250) << "more than what is advertised below";
  for (const auto& row : rows) {
    prefs[PREF_MAXIMUM_TICKETS].int_value = row.most;
    const std::vector<Drawn> drawn = seen(attract_draw);
    EXPECT_EQ(places(drawn, "win"), "507,67");
    EXPECT_EQ(places(drawn, "tickets"), "423,459");
    EXPECT_EQ(places(drawn, row.first_digit), row.first_place) << row.most;
    EXPECT_EQ(places(drawn, row.last_digit), row.last_place) << row.most;
  }
}

TEST_F(Attract, FrogSitsOnItsBoard) {
  until("eat_bugs_tck");
  at(now_ms() + 1500);
  const std::vector<Drawn> drawn = seen(attract_draw);
  const Drawn board = first(drawn, "eat_bugs_tck");
  const Drawn frog = first(drawn, "anim_frog_attract");
  EXPECT_EQ(board.x, 337);
  EXPECT_EQ(frog.x, board.x + 86);
  EXPECT_EQ(frog.y, board.y - 252);
}

TEST_F(Attract, LogosHopInStandAndHopOut) {
  prefs[PREF_TICKET_USE].int_value = 0;  // nothing can be won: logos only
  until("orblogo");
  const std::int64_t begun = now_ms();
  std::string seen_names;
  int lowest = 1000;
  int highest = -1000;
  while (now_ms() < begun + 1450) {
    at(now_ms() + 1);
    const Drawn d = first(seen(attract_draw), "orblogo");
    lowest = std::min(lowest, d.y);
    highest = std::max(highest, d.y);
  }
  EXPECT_EQ(lowest, 0);
  EXPECT_LE(highest, 128);
  at(begun + 3000);
  EXPECT_EQ(shown(), "orblogo 424,128");
  until("slymarvels");
  EXPECT_GT(now_ms(), begun + 6900);
  at(now_ms() + 3000);
  EXPECT_EQ(shown(), "slymarvels 424,128");
  until("lilyhoplogo");
  at(now_ms() + 3000);
  EXPECT_EQ(shown(), "lilyhoplogo 168,128");
  until("orblogo");  // from the start again
}

TEST_F(Attract, JackpotBoardIsSkippedWithFixedTickets) {
  prefs[PREF_FIXED_TICKET].int_value = 1;
  at(16000);
  EXPECT_TRUE(shown().starts_with("eat_bugs_tck")) << shown();
}

TEST_F(Attract, CreditOrShowHidesPicturesForAMinute) {
  const struct {
    const char* what;
    void (*begin)();
    void (*end)();
  } rows[] = {
      {"a credit", [] { audits[AUDIT_CURRENT_CREDITS + 1].count = 1; },
       [] { audits[AUDIT_CURRENT_CREDITS + 1].count = 0; }},
      {"a show", [] { win_show_start(1, 10); }, win_show_reset},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    attract_reset();
    game_clock.now_ms = 0;
    at(26000);
    ASSERT_TRUE(shown().starts_with("eat_bugs_tck")) << shown();
    row.begin();
    at(26010);
    at(26260);
    const std::uint32_t alpha = first(seen(attract_draw), "eat_bugs_tck").colour >> 24;
    EXPECT_NEAR(alpha, 127, 1);
    at(26520);
    EXPECT_EQ(shown(), "");
    row.end();
    at(86000);
    EXPECT_EQ(shown(), "");
    at(87000);
    EXPECT_TRUE(shown().starts_with("lrg_lilypad")) << "from the start again";
  }
}

}  // namespace
