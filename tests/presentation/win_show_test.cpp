// What is seen of a jackpot's show: the thumb, the number that grows and breathes, the rain.
#include "presentation/win_show.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/ticket_status.h"
#include "presentation/win_show_start.h"
#include "tests/presentation/stage.h"

namespace {

std::function<void()> between;  // called at the next draw of chance, once

}  // namespace

extern "C" {  // NOLINTBEGIN: the linker's names
double __real__Z11random_unitv();
double __wrap__Z11random_unitv() {
  if (between) std::exchange(between, nullptr)();
  return __real__Z11random_unitv();
}
}  // NOLINTEND

namespace {

constexpr std::int64_t BEGUN_MS = 100000;

class WinShowSeen : public Stage {
 protected:
  WinShowSeen() {
    win_show_reset();
    for (auto& owed : ticket_status.tickets_owed) owed = 500;
  }
  ~WinShowSeen() override { win_show_reset(); }

  // A pass of the worker each millisecond until this one of the show.
  static void at(std::int64_t ms) {
    while (now_ms() < BEGUN_MS + ms) {
      ++game_clock.now_ms;
      win_show_step();
    }
  }
  static int flakes(const std::vector<Drawn>& drawn) {
    return static_cast<int>(
        std::ranges::count_if(drawn, [](const Drawn& d) { return d.what == "ticket"; }));
  }
};

TEST_F(WinShowSeen, TheThumbRisesThenStands) {
  win_show_start(SIDE_RIGHT, 88);
  at(100);
  EXPECT_EQ(places(seen(win_show_draw), "anim_thumbs_up"), "764,128");
  at(1240);
  EXPECT_TRUE(has(seen(win_show_draw), "anim_thumbs_up"));
  at(1300);
  const std::vector<Drawn> drawn = seen(win_show_draw);
  EXPECT_FALSE(has(drawn, "anim_thumbs_up"));
  EXPECT_EQ(places(drawn, "anim_thumbs_idle"), "764,128");
}

TEST_F(WinShowSeen, BegunAnewDuringALatePass_RisesFromItsStart) {
  win_show_start(SIDE_LEFT, 100);
  game_clock.now_ms += 5000;
  between = [] { win_show_start(SIDE_LEFT, 200); };
  win_show_step();
  ASSERT_EQ(between, nullptr);
  EXPECT_TRUE(has(seen(win_show_draw), "anim_thumbs_up"));
  at(5100);
  std::vector<Drawn> drawn = seen(win_show_draw);
  EXPECT_TRUE(has(drawn, "anim_thumbs_up"));
  EXPECT_FALSE(has(drawn, "anim_thumbs_idle"));
  at(6400);
  EXPECT_TRUE(has(seen(win_show_draw), "anim_thumbs_idle"));
}

TEST_F(WinShowSeen, TheNumberGrowsInAndBreathesRoundItsMiddle) {
  win_show_start(SIDE_LEFT, 250);
  at(161);  // frame 7 of 58
  const Drawn young = [] {
    for (const Drawn& d : seen(win_show_draw)) {
      if (d.what.find_first_of("250") == 0) return d;
    }
    return Drawn{};
  }();
  EXPECT_GT(young.width, 20);
  EXPECT_LT(young.width, 35) << "half grown";
  at(2500);  // two whole breaths: its smallest
  std::vector<Drawn> drawn = seen(win_show_draw);
  EXPECT_EQ(places(drawn, "250"), "257,430 253,426");
  EXPECT_EQ(first(drawn, "250").width, 58);
  EXPECT_EQ(first(drawn, "250").colour, 0xFF000000U);
  at(3125);  // half a breath later: 1.2 times as large
  drawn = seen(win_show_draw);
  int largest = 0;
  for (const Drawn& d : drawn) {
    if (d.what.size() <= 3 && d.what[0] == '2') largest = d.width;
  }
  EXPECT_NEAR(largest, 69, 1);
}

TEST_F(WinShowSeen, TicketsRainOnItsHalfAndStopWithIt) {
  win_show_start(SIDE_RIGHT, 500);
  at(3000);
  std::vector<Drawn> drawn = seen(win_show_draw);
  EXPECT_GT(flakes(drawn), 20) << "sixteen a second, about";
  EXPECT_LE(flakes(drawn), 40);
  for (const Drawn& d : drawn) {
    if (d.what != "ticket") continue;
    EXPECT_GT(d.x, 500);
    EXPECT_LT(d.y, 900);
  }
  at(20100);  // fading
  drawn = seen(win_show_draw);
  const std::uint32_t alpha = first(drawn, "anim_thumbs_idle").colour >> 24;
  EXPECT_NEAR(alpha, 51, 3);
  EXPECT_EQ(first(drawn, "500").colour >> 24, alpha);
  at(20130);
  EXPECT_TRUE(seen(win_show_draw).empty());
}

TEST_F(WinShowSeen, WithoutTicketsThereIsOnlyTheThumb) {
  prefs[PREF_TICKET_USE].int_value = 0;
  win_show_start(SIDE_LEFT, 0);
  at(3000);
  const std::vector<Drawn> drawn = seen(win_show_draw);
  ASSERT_EQ(drawn.size(), 1U);
  EXPECT_EQ(drawn[0].what, "anim_thumbs_idle");
}

}  // namespace
