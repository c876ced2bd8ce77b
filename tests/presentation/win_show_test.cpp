// A jackpot's show between the threads, and what it blocks.
#include "presentation/win_show.h"

#include <cstdint>
#include <string>
#include <vector>

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
};

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

TEST_F(WinShow, NextOneBeginsWithoutTheTicketsThatFellInTheLast) {
  win_show_start(SIDE_LEFT, 100);
  run_to(20000);
  ASSERT_TRUE(has(seen(win_show_draw), "ticket"));
  at(20126);
  ASSERT_FALSE(win_show_active(SIDE_LEFT));
  win_show_start(SIDE_LEFT, 100);
  EXPECT_FALSE(has(seen(win_show_draw), "ticket"));
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

}  // namespace
