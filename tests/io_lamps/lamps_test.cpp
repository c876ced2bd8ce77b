// The lamps beside their model: what the board is told after each tick of a game at random.
#include "io/lamps.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_mode.h"
#include "frame/sides.h"
#include "io/lamp_effects.h"
#include "platform/random.h"
#include "playfield/playfield.h"
#include "presentation/win_show.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jamma_fake.h"
#include "tests/fakes/jps_fake.h"
#include "tests/io_lamps/model_lamps.h"
#include "tests/plain_sheets.h"
#include "tests/reset_game.h"

namespace {

class Lamps : public testing::Test {
 protected:
  Lamps() {
    jamma_fake_reset();
    jps_fake_reset();
    plain_sheets();
    reset_game(1000, 3);
    jamma_lamps_init();
  }

  int die(int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); }
  bool once_in(int times) { return die(times) == 0; }
  int one_of(const std::vector<int>& values) { return values[dice() % values.size()]; }

  // What a test screen or the game may ask for.
  void set_at_random() {
    const int lamp = once_in(10) ? one_of({-1, 7, 255}) : die(LAMP_COUNT);
    const int operation = once_in(20) ? one_of({-1, 9}) : die(9);
    int a = one_of({0, 100, 1024, 2048, 2049, 4095, 5000}), b = one_of({0, 16, 100, 400});
    if (operation == LAMP_FADE) b = one_of({0, 50, 2048, 4095});
    if (operation == LAMP_REPEAT) a = one_of({-1, 0, 1, 2});
    if (operation == LAMP_DELAY) a = die(20);
    const int c =
        operation == LAMP_FADE ? one_of({-100, 50, 1024, -4095}) : one_of({1, 8, 128, 320});
    const int d = die(10);
    lamp_set(static_cast<Lamp>(lamp), operation, a, b, c, d);
    model.set(lamp, operation, a, b, c, d);
  }

  void change_the_game() {
    const int side = die(SIDE_COUNT), what = die(6);
    if (what == 0) game_mode = once_in(2) ? MODE_OPERATOR : MODE_PLAY;
    if (what == 1) stations[side].frogs[0].state = once_in(2) ? FROG_WAITING : FROG_HOPPING;
    if (what == 2) audits[AUDIT_CURRENT_CREDITS + side].count = die(2);
    if (what == 3) prefs[PREF_FREEPLAY].int_value = once_in(4) ? 1 : 0;
    if (what == 4) win_show_reset();
    if (what == 4 && once_in(2)) win_show_start(side, 10);
    if (what == 5) jamma_fake.alive = !once_in(4);
  }

  void tick() {
    ModelLamps::Side sides[SIDE_COUNT];
    for (int side = 0; side < SIDE_COUNT; ++side) {
      sides[side] = {station_idle(side), audit_count(AUDIT_CURRENT_CREDITS, side) > 0 ||
                                             prefs[PREF_FREEPLAY].int_value == 1};
    }
    const std::uint64_t seed = dice();
    random_seed(seed);
    lamps_update();
    random_seed(seed);
    model.update(game_mode == MODE_OPERATOR, sides,
                 win_show_active(SIDE_LEFT) || win_show_active(SIDE_RIGHT), random_15bit);
    jamma_fake_forget_calls();
    jamma_lamps_tick();
    std::vector<std::pair<int, int>> told;
    for (std::size_t i = 0; i < jamma_fake.call_count; ++i) {
      const JammaFakeCall& call = jamma_fake.calls[i];
      ASSERT_EQ(call.command, JAMMA_SET_LAMP);
      told.emplace_back(static_cast<int>(call.a), static_cast<int>(call.b));
    }
    std::vector<std::pair<int, int>> changes = model.tick();
    if (!jamma_fake.alive) changes.clear();
    ASSERT_EQ(told, changes);
    for (int lamp = 0; lamp < LAMP_COUNT; ++lamp) {
      ASSERT_EQ(lamp_value(static_cast<Lamp>(lamp)), model.lamps[lamp].value) << lamp;
    }
  }

  std::mt19937 dice;
  ModelLamps model;
};

TEST_F(Lamps, FollowTheirModelThroughGamesAndMenus) {
  for (int i = 0; i < 60000; ++i) {
    if (once_in(60)) change_the_game();
    if (once_in(i / 10000 % 2 == 0 ? 40 : 2000)) set_at_random();
    ASSERT_NO_FATAL_FAILURE(tick()) << "tick " << i;
  }
  EXPECT_EQ(lamp_value(static_cast<Lamp>(-1)), 0);
  EXPECT_EQ(lamp_value(LAMP_COUNT), 0);
  lamp_set(LAMP_LEFT_START, LAMP_ON);
  jamma_lamps_init();
  jamma_lamps_tick();
  EXPECT_EQ(lamp_value(LAMP_LEFT_START), 0) << "they start dark";
}

}  // namespace
