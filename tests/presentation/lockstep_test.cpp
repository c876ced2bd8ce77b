// Attract mode and the jackpot shows beside their models: hours at random, and all that is drawn
// and played compared after each step. Then what the model can't do: a show that two threads
// change.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/sides.h"
#include "frame/tick_timers.h"
#include "frame/ticket_status.h"
#include "platform/random.h"
#include "playfield/paytable.h"
#include "playfield/playfield.h"
#include "presentation/attract.h"
#include "presentation/win_show.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jps_fake.h"
#include "tests/fakes/led_fake.h"
#include "tests/fakes/random_fake.h"
#include "tests/presentation/lockstep.h"
#include "tests/presentation/stage.h"

namespace {

class AttractLockstep : public Lockstep {
 protected:
  AttractLockstep() { game_clock.now_ms = next_vox = tick_timers.next_vox_ms = 0; }

  // 32 boards in turn, then the three marks.
  [[nodiscard]] int item() const {
    return row < 32 ? 5 + row % 2 : row == 32 ? 3 : row == 33 ? 1 : 0;
  }
  void hide() {
    x = 2000;
    alpha = 255;
    frog = 0;
  }
  void next() {
    hide();
    start = now_ms() + (row == 32 || row == 33 ? 2000 : 4000);
    row = row == 34 ? 0 : row + 1;
  }
  void mark(float s) {
    const float legs[7] = {1784, 1331, 878, 424, -29, -482, -935};
    float from = 424, to = 424, u = 0;
    if (s <= 1.5F || s > 4.5F) {
      const float begun = s <= 1.5F ? 0.0F : 4.5F;
      const int hop = s <= begun + 0.5F ? 0 : s <= begun + 1.0F ? 1 : 2;
      u = s - (begun + 0.5F * static_cast<float>(hop));
      from = legs[hop + (begun > 0 ? 3 : 0)];
      to = legs[hop + (begun > 0 ? 4 : 1)];
    }
    x = static_cast<int>(glide(from, to, 2 * u)) - (item() == 0 ? 256 : 0);
    y = static_cast<int>(128 - 1024 * u + 2048 * u * u);
    alpha = 255;
  }
  void board(float s) {
    float u = s - std::floor(s);
    if (u == 0 && s > 0) u = 1;
    x = item() == 6 ? 369 - 32 : 369 + 16;
    y = static_cast<int>(203 - 64 * u + 64 * u * u) - (item() == 5 ? 64 : 0);
    alpha = static_cast<int>(s <= 5.5F ? glide(0, 255, 2 * s) : glide(255, 0, 2 * (s - 5.5F)));
    if (item() != 6) return;
    frog = s > 1 ? static_cast<int>((s - 1) * 63 * 0.25F) : 0;
    if (frog >= 63) frog = 0;
  }
  void model_draw() {
    const char* const names[7] = {"lilyhoplogo", "slymarvels",  "", "orblogo", "",
                                  "lrg_lilypad", "eat_bugs_tck"};
    picture(names[item()], x, y, white(alpha));
    if (item() == 6) picture("anim_frog_attract", x + 86, y - 252, white(alpha), frog);
    if (item() != 5) return;
    picture("win", x + 122, y - 72, white(alpha));
    picture("tickets", x + 38, y + 320, white(alpha));
    std::string digits = std::to_string(std::min(jackpot_value(), pref_int(PREF_MAXIMUM_TICKETS)));
    std::ranges::reverse(digits);
    int digit_x = x + 250 - 75 + 75 * (static_cast<int>(digits.size()) - 1);
    for (const char digit : digits) {
      picture(std::string("jack_") + digit, digit_x, y + 123, white(alpha));
      digit_x -= 150;
    }
  }

  void model_step() {
    const bool tickets = pref_on(PREF_TICKET_USE);
    if (item() == 5 && (!tickets || pref_on(PREF_FIXED_TICKET))) next();
    if (item() == 6 && !tickets) next();
    if (fade_from >= 0 && now_ms() > fade_from) {
      const float s = seconds_since(fade_from);
      alpha = static_cast<int>(glide(255, 0, 2 * s));
      if (s > 0.5F) {
        hide();
        row = 0;
        fade_from = -1;
      }
    }
    const bool idle = station_idle(SIDE_LEFT) && station_idle(SIDE_RIGHT);
    if (now_ms() > start) move(idle);
    if (!idle) start = now_ms() + 60000;
  }
  void move(bool idle) {
    const bool paid =
        pref_int(PREF_COINS_TO_PLAY) > 0 &&
        (audit_count(AUDIT_CURRENT_CREDITS, 0) > 0 || audit_count(AUDIT_CURRENT_CREDITS, 1) > 0);
    if (!idle || paid || win_show_active(0) || win_show_active(1)) {
      fade_from = now_ms();
      start = now_ms() + 60000;
      return;
    }
    const float s = seconds_since(start);
    const bool is_board = item() >= 5;
    if (is_board && s > 1 && s <= 2 && may_speak() && now_ms() > own_voice) {
      cues.emplace_back(item() == 6 ? "voxeatbugsattract" : "voxwinticketsattract");
      own_voice = now_ms() + static_cast<std::int64_t>(30000 + 60000 * random_unit());
      next_vox = now_ms() + static_cast<std::int64_t>(2500 + 2500 * random_unit());
    }
    if (s > 6) return next();
    is_board ? board(s) : mark(s);
  }
  // A setting, a coin, a frog or a show.
  void change() {
    const int side = die(SIDE_COUNT), what = die(6);
    if (what == 0) prefs[PREF_TICKET_USE].int_value = once_in(3) ? 0 : 1;
    if (what == 1) prefs[PREF_FIXED_TICKET].int_value = once_in(3) ? 1 : 0;
    if (what == 2) prefs[PREF_COINS_TO_PLAY].int_value = die(2);
    if (what == 3) audits[AUDIT_CURRENT_CREDITS + side].count = once_in(4) ? 1 : 0;
    if (what == 4) stations[side].frogs[0].state = once_in(4) ? FROG_HOPPING : FROG_FREE;
    if (what != 5) return;
    win_show_reset();
    if (once_in(4)) win_show_start(side, 10);
    played.clear();
    next_vox = tick_timers.next_vox_ms;
  }

  int row = 0, x = 2000, y = 203, alpha = 255, frog = 0;
  std::int64_t start = 15000, fade_from = -1, own_voice = 0;
};

TEST_F(AttractLockstep, PicturesFollowTheirModel) {
  for (int i = 0; i < 60000; ++i) {
    game_clock.now_ms += once_in(100) ? one_of<int>({500, 1000, 6000, 61000}) : die(40);
    if (once_in(i < 20000 ? 50000 : 1000)) change();
    if (once_in(50)) set_pref(PREF_MAXIMUM_TICKETS, one_of<int>({7, 10, 42, 100, 250, 1250}));
    both(attract_step, [this] { model_step(); });
    if (HasFatalFailure()) FAIL() << "step " << i;
    model_draw();
    ASSERT_EQ(drawn(attract_draw), model_lines()) << "step " << i << ", row " << row;
  }
}

struct ModelFlake {
  bool falls = false;
  int x = 0, y = 0;
  float age = 0, vx = 0, vy = 0, turn = 0, spin = 0;
};

struct ModelShow {
  bool runs = false, begun = false, raining = false, rises = true;
  std::int64_t start = 0, end = 0;
  int tickets = 0, cell = 0, moves = 0, alpha = 255;
  float scale = 1, pulse = 1, voice_at = 0;
  ModelFlake flakes[40];
};

class ShowLockstep : public Lockstep {
 protected:
  ShowLockstep() { led_fake_blink = 0; }

  static float chance(double least, double span) {
    return static_cast<float>(least + span * random_unit());
  }

  void music(bool begins) {
    cues.emplace_back(begins ? "jackpotbgm" : "endjackpotbgm");
    cues.emplace_back(begins ? "jackpotcheer" : "endjackpotcheer");
    blinks = begins;
  }
  void model_start(int side, int tickets) {
    ModelShow& show = shows[side];
    const bool restart = show.runs;
    show.raining = pref_on(PREF_TICKET_USE);
    show.tickets = tickets;
    show.start = now_ms();
    show.end = now_ms() + (ticket_status.ticket_error[side] != 0 ? 10000 : 20000);
    show.runs = true;
    show.begun = restart && show.begun;  // the rain and the pause of the voice go on
    show.rises = true;
    show.cell = 0;
    show.alpha = 255;
    show.scale = show.pulse = 1;
    music(true);
    if (may_speak()) speak("voxwin");
  }
  void drop(ModelShow& show, int side) {
    if (random_unit() >= 0.01666666753590107) return;
    for (ModelFlake& flake : show.flakes) {
      if (flake.falls) continue;
      flake = {.falls = true};
      flake.x = 680 * side + static_cast<int>(552 * random_unit());
      flake.y = -64 - static_cast<int>(64 * random_unit());
      flake.vx = chance(0, 64);
      flake.vy = chance(32, 128);
      flake.turn = chance(0, 360);
      flake.spin = chance(-90, 180);
      return;
    }
  }
  static void fall(ModelShow& show, float dt) {
    for (ModelFlake& flake : show.flakes) {
      if (!flake.falls) continue;
      flake.x = static_cast<int>(static_cast<float>(flake.x) + flake.vx * dt);
      flake.y = static_cast<int>(static_cast<float>(flake.y) + flake.vy * dt + 12 * flake.age);
      flake.turn += flake.spin * dt;
      flake.age += dt;
      flake.falls = flake.y <= 800;
    }
  }
  static void thumb(ModelShow& show, float t) {
    if (show.rises) {
      show.cell = static_cast<int>(58 * t / 1.25F);
      show.scale = std::min(static_cast<float>(show.cell) / 15, 1.0F);
      show.rises = show.cell < 58;
    }
    if (!show.rises) {
      show.cell = static_cast<int>(28 * t / 1.5F) % 28;
      show.scale = 1;
    }
    const float pi = 3.14159265F;
    show.pulse = std::cos(pi + 2 * pi * t / 1.25F) * 0.1F + 1.1F;
  }
  void end(int side) {
    shows[side] = {};
    if (!shows[1 - side].runs) music(false);
  }
  void model_step(int side) {
    ModelShow& show = shows[side];
    if (!show.runs) return;
    if (!show.begun) {
      show.begun = true;
      show.voice_at = chance(5, 5);
      show.moves = 0;
    }
    const float t = seconds_since(show.start),
                length = static_cast<float>(show.end - show.start) / 1000;
    if (t >= length + 0.125F) return end(side);
    thumb(show, t);
    if (t >= length) {
      show.alpha = static_cast<int>(255 * (1 - (t - length) / 0.125F));
    } else {
      if (show.voice_at < t && t < length - 2 && may_speak() && pref_on(PREF_TICKET_USE)) {
        cues.emplace_back("voxtickets");
        show.voice_at = t + chance(5, 5);
        next_vox = now_ms() + static_cast<std::int64_t>(2500 + 2500 * random_unit());
      }
      if (t > 10 && ticket_status.tickets_owed[side] == 0) show.end = now_ms();
    }
    if (show.raining) drop(show, side);
    const int moves = static_cast<int>(60 * t);
    const float dt = static_cast<float>(moves - show.moves) * 0.01666666753590107F;
    if (dt > 0) fall(show, dt);
    show.moves = moves;
  }

  void model_draw() {
    for (int side = 0; side < SIDE_COUNT; ++side) {
      const ModelShow& show = shows[side];
      if (!show.runs) continue;
      for (const ModelFlake& flake : show.flakes) {
        if (flake.falls) picture("ticket", flake.x, flake.y);
      }
      const int left = side == 0 ? 84 : 764;
      picture(show.rises ? "anim_thumbs_up" : "anim_thumbs_idle", left, 128, white(show.alpha),
              show.cell);
      const float f = show.scale * show.pulse;
      if (!pref_on(PREF_TICKET_USE) || f < 0.5F) continue;
      const std::string digits = std::to_string(show.tickets);
      const float x = static_cast<float>(left + 256) - 29 * static_cast<float>(digits.size()) * f;
      const float y = 426 - 45 * (f - 1);
      picture(digits, x + 4, y + 4, black(show.alpha));
      picture(digits, x, y, white(show.alpha));
    }
  }

  // A ticket is turned about its middle, so its place is seen there. A small number isn't compared.
  void compare() {
    model_draw();
    const Lines wanted = model_lines();
    Lines lines;
    std::vector<float> turns;
    for (const Drawn& d : seen(win_show_draw)) {
      const bool number = d.what.find_first_not_of("0123456789") == std::string::npos;
      if (d.what == "ticket") {
        turns.push_back(d.turn);
        lines.push_back(line(d.what, static_cast<int>(std::lround(d.middle_x)) - 128,
                             static_cast<int>(std::lround(d.middle_y)) - 128, d.colour));
      } else if (!number || d.width >= 29) {
        lines.push_back(line(d.what, d.x, d.y, d.colour, d.cell));
      }
    }
    ASSERT_EQ(lines, wanted);
    auto turn = turns.begin();  // there is one for each flake that falls
    for (const ModelShow& show : shows) {
      for (const ModelFlake& flake : show.flakes) {
        if (!flake.falls) continue;
        ASSERT_NEAR(std::remainder(*turn++ - flake.turn, 360.0F), 0, 0.1);
      }
    }
  }

  ModelShow shows[SIDE_COUNT];
  bool blinks = false;
};

TEST_F(ShowLockstep, ShowsFollowTheirModel) {
  for (int i = 0; i < 60000; ++i) {
    SCOPED_TRACE(i);
    game_clock.now_ms += once_in(500) ? die(800) : 1 + die(3);
    const int side = die(SIDE_COUNT);
    if (once_in(8000)) ticket_status.ticket_error[side] = die(2);
    if (once_in(4000)) ticket_status.tickets_owed[side] = once_in(3) ? 0 : 500;
    if (once_in(15000)) set_pref(PREF_TICKET_USE, once_in(3) ? 0 : 1);
    if (once_in(8000)) {
      const int tickets = one_of<int>({0, 7, 88, 250, 1250});
      both([&] { win_show_start(side, tickets); }, [&] { model_start(side, tickets); });
      ASSERT_NO_FATAL_FAILURE(compare());
    }
    ASSERT_NO_FATAL_FAILURE(both(win_show_step, [this] { model_step(0), model_step(1); }));
    ASSERT_EQ((std::array{win_show_active(0), win_show_active(1), led_fake_blink != 0}),
              (std::array{shows[0].runs, shows[1].runs, blinks}));
    if (!once_in(10)) continue;
    ASSERT_NO_FATAL_FAILURE(compare());
  }
}

// --- a show between the threads ------------------------------------------------------------------

class WinShow : public Lockstep {
 protected:
  static constexpr int SHOW_MS = 20125;  // with its fade

  WinShow() {
    for (auto& owed : ticket_status.tickets_owed) owed = 500;
  }

  static void expect_show_of(int side) {
    EXPECT_TRUE(win_show_active(side));
    EXPECT_FALSE(win_show_active(1 - side));
    const auto music = [](const std::string& name) { return name.ends_with("jackpotbgm"); };
    EXPECT_EQ(*std::find_if(jps_fake.played.rbegin(), jps_fake.played.rend(), music), "jackpotbgm");
    EXPECT_EQ(led_fake_blink, 1);
  }
};

// The workers' thread and the game thread, each in the middle of the other's function.
TEST_F(WinShow, EndingShowKeepsMusicAndBlinkOfOneThatBegins) {
  win_show_start(SIDE_RIGHT, 100);
  win_show_step();
  game_clock.now_ms += SHOW_MS;
  jps_fake.on_play = [](const std::string& name) {
    if (name == "jackpotbgm") win_show_step();  // ends the right one
  };
  win_show_start(SIDE_LEFT, 100);
  expect_show_of(SIDE_LEFT);

  game_clock.now_ms += SHOW_MS;
  jps_fake.on_play = [](const std::string& name) {
    if (name == "endjackpotbgm") win_show_start(SIDE_RIGHT, 100);
  };
  win_show_step();  // ends the left one
  expect_show_of(SIDE_RIGHT);
}

TEST_F(WinShow, NextOneBeginsWithoutTheTicketsThatFellInTheLast) {
  win_show_start(SIDE_LEFT, 100);
  for (int ms = 0; ms < 20000; ++ms) {
    ++game_clock.now_ms;
    win_show_step();
  }
  ASSERT_TRUE(has(seen(win_show_draw), "ticket"));
  game_clock.now_ms += 126;
  win_show_step();
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
  for (const auto& [ms, thumb] :
       {std::pair{0, "anim_thumbs_up"}, {100, "anim_thumbs_up"}, {1300, "anim_thumbs_idle"}}) {
    game_clock.now_ms += ms;
    if (ms > 0) win_show_step();
    EXPECT_EQ(seen(win_show_draw).front().what, thumb) << ms;
  }
}

}  // namespace
