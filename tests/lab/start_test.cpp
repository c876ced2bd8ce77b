// The whole game's start and end: what is read, what runs, and what is on the disk afterwards.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "books/audits.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_init.h"
#include "frame/game_thread.h"
#include "lab/board.h"
#include "lab/boot.h"
#include "lab/settings.h"
#include "operator/boot_check.h"
#include "operator/menu.h"
#include "platform/files.h"
#include "platform/headless/clock_control.h"
#include "platform/headless/sound_capture.h"
#include "platform/random.h"
#include "playfield/playfield.h"
#include "presentation/volume.h"
#include "sound/driver.h"
#include "sound/jps.h"
#include "tests/playlist/waves.h"
#include "tests/temp_folder.h"

namespace {

// Settings and books of an earlier run, and a script of sounds.
void leave(const TempFolder& drive) {
  settings_reset();
  prefs[PREF_VOLUME].int_value = 7;
  prefs[PREF_ATTRACT_VOLUME].int_value = 3;
  prefs[PREF_CHECK_CRC].int_value = 0;
  std::strcpy(prefs[PREF_BUILD_DATE].text_value, build_stamp.date);
  std::strcpy(prefs[PREF_BUILD_TIME].text_value, build_stamp.time);
  prefs_save();
  audits_reset();
  audits[AUDIT_BOOT_COUNT].count = 41;
  audits[AUDIT_COIN_DROPS].count = 9;
  audits_save();
  std::filesystem::create_directory(drive.file("sounds"));
  drive.write("sounds/a.wav", flat_wave(60, 9000));
  drive.write("sounds/mainpls.txt",
              "PLAYLIST 1, 'bgm', 1, 1\nSETVOL 0, 255, 0\nPLAY 0, 'a.wav', 0\nEND\n");
}

int loudness() {
  std::int16_t block[2 * 512];
  sound_capture_render(512, block, jpsdrvr_transition);
  return block[2 * 511];
}

bool lanes_are(bool made) {
  return std::ranges::all_of(lanes, [&](const Lane& l) { return (l.slots != nullptr) == made; });
}

// The next numbers stand somewhere in the seed's stream, of which the game has taken the beginning.
bool chance_came_from(std::uint64_t seed) {
  std::vector<int> next(5);
  std::ranges::generate(next, random_15bit);
  random_seed(seed);
  std::vector<int> stream(2'000'000);
  std::ranges::generate(stream, random_15bit);
  return !std::ranges::search(stream, next).empty();
}

std::atomic<bool> hang = false;  // the game thread, in the middle of a tick
std::atomic<bool> hangs = false;

void hang_after_inputs() {
  while (hang) {
    hangs = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

TEST(GameInit, ReadsTheDiskAndStartsWhatShutdownEndsAndStores) {
  const TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  build_stamp = {"May 17 2012", "10:20:53", "1.2.3"};
  leave(drive);
  settings_reset();
  audits_reset();
  board_reset();
  playfield_free();
  headless_calendar_set(1'300'000'000);
  // A sleep only moves this clock, so free threads may be a day ahead at the first look.
  hang = true;
  board_after_inputs = hang_after_inputs;
  ASSERT_EQ(Game_Init(), 1);
  EXPECT_TRUE(lanes_are(true));
  EXPECT_EQ((std::array{audit_count(AUDIT_BOOT_COUNT), audit_count(AUDIT_COIN_DROPS),
                        pref_int(PREF_VOLUME), volume_step.get(), attract_flag.get()}),
            (std::array{42, 9, 7, 3, 1}));
  EXPECT_NE(jps_bank_play_name("bgm"), 0U) << "the script is loaded";
  EXPECT_GT(loudness(), 0);
  journal_put(JOURNAL_LINK_LOST);
  const auto noted = [&] { return drive.read("journal").find("link-lost") != std::string::npos; };
  for (int i = 0; i < 3000 && !noted(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_TRUE(noted()) << "the journal's thread; no books are stored meanwhile";
  const auto begun = now_ms();
  constexpr std::int32_t NO_FRAME = -1;
  signs[0].frame = NO_FRAME;
  hang = false;
  // On this clock the game may reboot for its day at once: then it takes no further time, and
  // frames stand.
  const auto run = [&] { return now_ms() != begun && signs[0].frame != NO_FRAME; };
  for (int i = 0; i < 3000 && !run(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_TRUE(run()) << "the threads of the game and of its workers";

  prefs[PREF_COINS_TO_PLAY].int_value = 5;
  bool ended = false;  // a busy machine may need more than the bound of one try
  for (int i = 0; i < 15 && !ended; ++i) ended = Game_Shutdown() == 1;
  EXPECT_TRUE(ended);
  board_after_inputs = nullptr;
  EXPECT_TRUE(chance_came_from(1'300'000'000));
  EXPECT_FALSE(sound_capture_is_open());
  const std::string journal = drive.read("journal");
  EXPECT_NE(journal.find(" 42 start version=1.2.3 "), std::string::npos) << journal;
  EXPECT_NE(journal.find(" books side=left coins=9 "), std::string::npos) << journal;
  EXPECT_TRUE(journal.ends_with(" 42 stop\n")) << journal;
  const auto stopped = now_ms();
  settings_reset();
  audits_reset();
  prefs_load();
  audits_load();
  EXPECT_EQ(pref_int(PREF_COINS_TO_PLAY), 5);
  EXPECT_EQ(audit_count(AUDIT_BOOT_COUNT), 43);
  EXPECT_EQ(now_ms(), stopped);
  files_use_roots("", "");
}

TEST(GameShutdown, FreesAndStoresNothingWhileThreadRuns) {
  const TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  settings_reset();
  board_after_inputs = hang_after_inputs;
  boot_switch_on(77);
  hangs = false;
  hang = true;
  ASSERT_TRUE(game_threads_start());
  while (!hangs) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_EQ(Game_Shutdown(), 0);
  EXPECT_TRUE(lanes_are(true));
  EXPECT_FALSE(drive.has("audits"))
      << "nor is a store begun that could meet one of the thread's own";
  hang = false;
  EXPECT_TRUE(game_threads_stop()) << "it ends when it can";
  EXPECT_EQ(Game_Shutdown(), 1);
  EXPECT_TRUE(drive.has("audits"));
  EXPECT_TRUE(lanes_are(false));
  board_after_inputs = nullptr;
  files_use_roots("", "");
}

}  // namespace
