// The lab's tick against the game's own threads: what was pressed there, and when, is written down
// and pressed again in the lab.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "frame/game_clock.h"
#include "frame/game_init.h"
#include "frame/game_thread.h"
#include "frame/tick.h"
#include "frame/tick_steps.h"
#include "frame/tick_timers.h"
#include "lab/board.h"
#include "lab/boot.h"
#include "lab/settings.h"
#include "platform/files.h"
#include "platform/random.h"
#include "playfield/looks.h"
#include "tests/temp_folder.h"

namespace {

constexpr int TICKS = 20000;

struct Moment {  // a tick, and what was pressed in it, to be found by the next one
  std::int64_t at_ms;
  std::vector<JammaPress> presses;
};

struct Reel {
  std::vector<Moment> moments;
  std::size_t played = 0;
  std::int64_t demo_next_ms[SIDE_COUNT] = {};  // counted from the moment the thread came up
  std::uint64_t chance = 1;
  std::atomic<bool> done = false;
  Sums at_end{};
  int draw_at_end = 0;
};
Reel* recording = nullptr;  // one of the two turns, or neither
Reel* playing = nullptr;

std::vector<JammaPress> presses_by_chance(std::uint64_t& chance) {
  std::vector<JammaPress> presses;
  for (const JammaPress press : {PRESS_C1, PRESS_C2, PRESS_P1S, PRESS_P2S, PRESS_SRV}) {
    chance = chance * 6364136223846793005U + 1442695040888963407U;
    const unsigned one_in = press == PRESS_SRV                       ? 4096
                            : press == PRESS_C1 || press == PRESS_C2 ? 512
                                                                     : 32;
    if ((chance >> 33U) % one_in == 0) presses.push_back(press);
  }
  return presses;
}

void slots_place() {
  for (Lane& lane : lanes) {
    if (lane.cell_size > 1) gfx_slots_place(&lane, (std::uint64_t{1} << LANE_CELLS) - 1);
  }
}

void demo_next_copy(auto& to, const auto& from) {
  for (int side = 0; side < SIDE_COUNT; ++side) to[side] = std::int64_t{from[side]};
}

// After the inputs of a tick: the next tick finds what is pressed now.
void moment_step(Reel& reel) {
  slots_place();
  if (&reel == recording) {
    reel.moments.push_back({now_ms(), presses_by_chance(reel.chance)});
    if (reel.played == 0) demo_next_copy(reel.demo_next_ms, tick_timers.attract_demo_next);
  }
  for (const JammaPress press : reel.moments[reel.played].presses) board_press(press);
  if (++reel.played < TICKS) return;
  sums_take_books(reel.at_end);
  reel.draw_at_end = random_15bit();
  reel.done = true;
}

std::atomic<bool> hang = false;  // the game thread, in the middle of a tick
std::atomic<bool> hangs = false;

void after_inputs() {
  for (Reel* reel : {recording, playing}) {
    if (reel != nullptr && !reel->done) moment_step(*reel);
  }
  while (hang) {
    hangs = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

// No log in the last lane: nobody crosses, for a jackpot's show is stepped by a thread of its own
// and draws its chance when that comes along.
void switch_on() {
  board_after_inputs = after_inputs;
  boot_switch_on(77);
  for (auto& cell : lane_cells[1]) cell = CELL_EMPTY;
}

TEST(LabThread, PlaysRecordingLikeTheGameThread) {
  settings_reset();
  const auto recorded = std::make_unique<Reel>();
  switch_on();
  looks_set_watched(true);
  recording = recorded.get();
  ASSERT_TRUE(game_threads_start());
  while (!recorded->done) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  game_threads_stop();
  recording = nullptr;
  ASSERT_GT(recorded->at_end.books.count[AUDIT_GAMES_PLAYED], 20);
  ASSERT_GT(recorded->at_end.books.count[AUDIT_BUGS + 1], 20);

  const auto played = std::make_unique<Reel>();
  played->moments = recorded->moments;
  switch_on();
  game_begin();
  demo_next_copy(tick_timers.attract_demo_next, recorded->demo_next_ms);
  playing = played.get();
  for (const Moment& moment : recorded->moments) game_tick(moment.at_ms);
  playing = nullptr;
  ASSERT_TRUE(played->done);
  for (int row = 0; row < AUDIT_COUNT; ++row) {
    EXPECT_EQ(recorded->at_end.books.count[row], played->at_end.books.count[row])
        << audits[row].name;
    EXPECT_EQ(recorded->at_end.books.time_ms[row], played->at_end.books.time_ms[row])
        << audits[row].name;
  }
  EXPECT_EQ(std::memcmp(recorded->at_end.books.histogram, played->at_end.books.histogram,
                        sizeof played->at_end.books.histogram),
            0);
  EXPECT_EQ(recorded->draw_at_end, played->draw_at_end) << "chance has gone the same way";
}

TEST(GameShutdown, FreesAndStoresNothingWhileThreadRuns) {
  const TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  settings_reset();
  switch_on();
  hangs = false;
  hang = true;
  ASSERT_TRUE(game_threads_start());
  while (!hangs) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  const auto has_slots = [](const Lane& lane) { return lane.slots != nullptr; };
  const auto strips = std::count_if(std::begin(lanes), std::end(lanes), has_slots);
  ASSERT_GT(strips, 0);
  EXPECT_EQ(Game_Shutdown(), 0);
  EXPECT_EQ(std::count_if(std::begin(lanes), std::end(lanes), has_slots), strips);
  EXPECT_FALSE(drive.has("audits"))
      << "nor is a store begun that could meet one of the thread's own";
  hang = false;
  EXPECT_TRUE(game_threads_stop()) << "it ends when it can";
  EXPECT_EQ(Game_Shutdown(), 1);
  EXPECT_TRUE(drive.has("audits"));
  files_use_roots("", "");
}

}  // namespace
