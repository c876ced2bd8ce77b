// A jackpot's show: how long it runs, what it plays, what it blocks, and how it is drawn.
#include "presentation/win_show.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/ticket_status.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jps_fake.h"
#include "tests/fakes/led_fake.h"
#include "tests/fakes/random_fake.h"
#include "tests/presentation/stage.h"

namespace {

constexpr std::int64_t BEGUN_MS = 100000;
constexpr std::int64_t FADE_MS = 125;  // of the fade-out at a show's end

class WinShow : public Stage {
 protected:
  WinShow() {
    for (auto& owed : ticket_status.tickets_owed) owed = 500;
  }
  ~WinShow() override { win_show_reset(); }

  // One late step, then.
  static void at(std::int64_t ms) {
    game_clock.now_ms = BEGUN_MS + ms;
    win_show_step();
  }
  // A step each millisecond until then.
  static void run_to(std::int64_t ms) {
    while (now_ms() < BEGUN_MS + ms) at(now_ms() + 1 - BEGUN_MS);
  }
  // Runs on until the side's show is over: milliseconds since the test began, -1 if never.
  static std::int64_t end_of(int side) {
    const std::int64_t last = now_ms() + 60000;
    while (win_show_active(side) && now_ms() < last) at(now_ms() + 1 - BEGUN_MS);
    return win_show_active(side) ? -1 : now_ms() - BEGUN_MS;
  }
  static int flakes(const std::vector<Drawn>& drawn) {
    return static_cast<int>(
        std::ranges::count_if(drawn, [](const Drawn& d) { return d.what == "ticket"; }));
  }
};

TEST_F(WinShow, LastsWhileTicketsArePaidWithinItsLimits) {
  const struct {
    std::int32_t owed, fault_at_start, fault_later, paid_at_ms;
    std::int64_t end_ms;
  } rows[] = {
      {500, 0, 0, 60000, 20000},  // pays all the time
      {500, 1, 1, 60000, 10000},  // can't pay
      {500, 1, 0, 60000, 10000},  // a refill does not extend it
      {500, 0, 1, 60000, 20000},  // nor does a fault that comes later
      {0, 0, 0, 0, 10001},        // nothing to pay
      {500, 0, 0, 9000, 10001},   // paid before the shortest time
      {500, 0, 0, 13000, 13000},  // paid after it
  };
  int ended = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(ended));
    game_clock.now_ms = BEGUN_MS;
    ticket_status.tickets_owed[SIDE_LEFT] = row.owed;
    ticket_status.ticket_error[SIDE_LEFT] = row.fault_at_start;
    ticket_status.ticket_error[SIDE_RIGHT] = 1 - row.fault_at_start;  // of the other side
    win_show_start(SIDE_LEFT, 500);
    EXPECT_TRUE(win_show_active(SIDE_LEFT));
    EXPECT_FALSE(win_show_active(SIDE_RIGHT));
    ticket_status.ticket_error[SIDE_LEFT] = row.fault_later;
    at(row.paid_at_ms - 1 < row.end_ms ? row.paid_at_ms - 1 : 0);
    if (row.paid_at_ms <= row.end_ms) ticket_status.tickets_owed[SIDE_LEFT] = 0;
    EXPECT_EQ(end_of(SIDE_LEFT), row.end_ms + FADE_MS);
    EXPECT_EQ(jps_fake_count("endjackpotbgm"), ++ended);
    EXPECT_EQ(jps_fake_count("endjackpotcheer"), ended);
    EXPECT_EQ(jps_fake_count("jackpotbgm"), ended);
    EXPECT_EQ(jps_fake_count("jackpotcheer"), ended);
  }
}

TEST_F(WinShow, SecondJackpotRestartsShow) {
  win_show_start(SIDE_RIGHT, 100);
  at(15000);
  win_show_start(SIDE_RIGHT, 200);
  at(20200);
  EXPECT_TRUE(win_show_active(SIDE_RIGHT));
  EXPECT_EQ(end_of(SIDE_RIGHT), 35000 + FADE_MS);
  EXPECT_EQ(jps_fake_count("jackpotbgm"), 2);
  EXPECT_EQ(jps_fake_count("endjackpotbgm"), 1);

  game_clock.now_ms = BEGUN_MS;
  win_show_start(SIDE_RIGHT, 100);
  at(20060);  // in its fade-out
  win_show_start(SIDE_RIGHT, 200);
  EXPECT_EQ(end_of(SIDE_RIGHT), 40060 + FADE_MS);
}

TEST_F(WinShow, MusicEndsWithTheLastShow) {
  win_show_start(SIDE_LEFT, 100);
  at(4000);
  win_show_start(SIDE_RIGHT, 100);
  EXPECT_EQ(end_of(SIDE_LEFT), 20000 + FADE_MS);
  EXPECT_TRUE(win_show_active(SIDE_RIGHT));
  EXPECT_EQ(jps_fake_count("endjackpotbgm") + jps_fake_count("endjackpotcheer"), 0);
  EXPECT_EQ(end_of(SIDE_RIGHT), 24000 + FADE_MS);
  EXPECT_EQ(jps_fake_count("endjackpotbgm"), 1);
  EXPECT_EQ(jps_fake_count("endjackpotcheer"), 1);
}

// The workers' thread and the game thread, each in the middle of the other's function.
TEST_F(WinShow, EndingShowKeepsMusicAndBlinkOfOneThatBegins) {
  const auto last_music = [] {
    std::string last;
    for (const std::string& name : jps_fake.played) {
      if (name.ends_with("jackpotbgm")) last = name;
    }
    return last;
  };
  win_show_start(SIDE_RIGHT, 100);
  at(0);
  game_clock.now_ms = BEGUN_MS + 20000 + FADE_MS;
  jps_fake.on_play = [](const std::string& name) {
    if (name == "jackpotbgm") win_show_step();  // ends the right one
  };
  win_show_start(SIDE_LEFT, 100);
  EXPECT_FALSE(win_show_active(SIDE_RIGHT));
  EXPECT_EQ(last_music(), "jackpotbgm");
  EXPECT_EQ(led_fake_blink, 1);

  game_clock.now_ms += 20000 + FADE_MS;
  jps_fake.on_play = [](const std::string& name) {
    if (name == "endjackpotbgm") win_show_start(SIDE_RIGHT, 100);
  };
  win_show_step();  // ends the left one
  EXPECT_FALSE(win_show_active(SIDE_LEFT));
  EXPECT_TRUE(win_show_active(SIDE_RIGHT));
  EXPECT_EQ(last_music(), "jackpotbgm");
  EXPECT_EQ(led_fake_blink, 1);
}

TEST_F(WinShow, BlocksLaunchesOnItsSide) {
  ASSERT_TRUE(frog_ready(SIDE_LEFT));
  win_show_start(SIDE_LEFT, 100);
  for (const std::int64_t ms : {0, 10000, 20000, 20124}) {
    at(ms);
    EXPECT_FALSE(frog_ready(SIDE_LEFT)) << ms;
    EXPECT_TRUE(frog_ready(SIDE_RIGHT)) << ms;
  }
  at(20126);
  EXPECT_TRUE(frog_ready(SIDE_LEFT));
}

TEST_F(WinShow, SpeaksOfTicketsAfter5SecondsButNotAtItsEnd) {
  win_show_start(SIDE_LEFT, 500);
  EXPECT_EQ(jps_fake_count("voxwin"), 1);
  for (std::int64_t ms = 0; ms < 5000; ++ms) at(ms);
  EXPECT_EQ(jps_fake_count("voxtickets"), 0);
  for (std::int64_t ms = 5000; ms < 20000; ++ms) at(ms);
  const int spoken = jps_fake_count("voxtickets");
  EXPECT_GE(spoken, 1);
  EXPECT_LE(spoken, 3);
  prefs[PREF_TICKET_USE].int_value = 0;
  win_show_reset();
  win_show_start(SIDE_LEFT, 0);
  for (std::int64_t ms = 20000; ms < 40000; ++ms) at(ms);
  EXPECT_EQ(jps_fake_count("voxtickets"), spoken) << "tickets are not in use";
}

TEST_F(WinShow, ThumbRisesThenStands) {
  win_show_start(SIDE_RIGHT, 88);
  run_to(100);
  EXPECT_EQ(places(seen(win_show_draw), "anim_thumbs_up"), "764,128");
  run_to(1240);
  EXPECT_TRUE(has(seen(win_show_draw), "anim_thumbs_up"));
  run_to(1300);
  const std::vector<Drawn> drawn = seen(win_show_draw);
  EXPECT_FALSE(has(drawn, "anim_thumbs_up"));
  EXPECT_EQ(places(drawn, "anim_thumbs_idle"), "764,128");
}

TEST_F(WinShow, RestartDuringLateStepBeginsAnew) {
  win_show_start(SIDE_LEFT, 100);
  game_clock.now_ms += 5000;
  random_fake_before_next = [] { win_show_start(SIDE_LEFT, 200); };
  win_show_step();
  ASSERT_EQ(random_fake_before_next, nullptr);
  EXPECT_TRUE(has(seen(win_show_draw), "anim_thumbs_up"));
  run_to(5100);
  std::vector<Drawn> drawn = seen(win_show_draw);
  EXPECT_TRUE(has(drawn, "anim_thumbs_up"));
  EXPECT_FALSE(has(drawn, "anim_thumbs_idle"));
  run_to(6400);
  EXPECT_TRUE(has(seen(win_show_draw), "anim_thumbs_idle"));
}

TEST_F(WinShow, NumberGrowsThenPulsates) {
  win_show_start(SIDE_LEFT, 250);
  run_to(161);  // frame 7 of 58
  const Drawn young = [] {
    for (const Drawn& d : seen(win_show_draw)) {
      if (d.what.find_first_of("250") == 0) return d;
    }
    return Drawn{};
  }();
  EXPECT_GT(young.width, 20);
  EXPECT_LT(young.width, 35) << "half grown";
  run_to(2500);  // after two whole pulses it is smallest
  std::vector<Drawn> drawn = seen(win_show_draw);
  EXPECT_EQ(places(drawn, "250"), "257,430 253,426");
  EXPECT_EQ(first(drawn, "250").width, 58);
  EXPECT_EQ(first(drawn, "250").colour, 0xFF000000U);
  run_to(3125);  // half a pulse later: 1.2 times as large
  drawn = seen(win_show_draw);
  int largest = 0;
  for (const Drawn& d : drawn) {
    if (d.what.size() <= 3 && d.what[0] == '2') largest = d.width;
  }
  EXPECT_NEAR(largest, 69, 1);
}

TEST_F(WinShow, TicketsFallOnItsHalfUntilItEnds) {
  win_show_start(SIDE_RIGHT, 500);
  run_to(3000);
  std::vector<Drawn> drawn = seen(win_show_draw);
  EXPECT_GE(flakes(drawn), 10) << "about sixteen a second";
  EXPECT_LE(flakes(drawn), 40);
  for (const Drawn& d : drawn) {
    if (d.what != "ticket") continue;
    EXPECT_GT(d.x, 500);
    EXPECT_LT(d.y, 800 + 128 + 182) << "a corner of one that is turned";
  }
  run_to(20100);  // fading
  drawn = seen(win_show_draw);
  const std::uint32_t alpha = first(drawn, "anim_thumbs_idle").colour >> 24;
  EXPECT_NEAR(alpha, 51, 3);
  EXPECT_EQ(first(drawn, "500").colour >> 24, alpha);
  run_to(20130);
  EXPECT_TRUE(seen(win_show_draw).empty());
}

TEST_F(WinShow, WithoutTicketsDrawsOnlyThumb) {
  prefs[PREF_TICKET_USE].int_value = 0;
  win_show_start(SIDE_LEFT, 0);
  run_to(3000);
  const std::vector<Drawn> drawn = seen(win_show_draw);
  ASSERT_EQ(drawn.size(), 1U);
  EXPECT_EQ(drawn[0].what, "anim_thumbs_idle");
}

}  // namespace
