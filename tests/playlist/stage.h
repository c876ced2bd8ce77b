// A folder of sounds, a driver that renders to memory, and a clock that is set by hand.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/headless/clock_control.h"
#include "platform/headless/sound_capture.h"
#include "sound/bank.h"
#include "sound/driver.h"
#include "sound/jps.h"
#include "sound/player.h"
#include "sound/playlist_parser.h"
#include "tests/playlist/waves.h"
#include "tests/temp_folder.h"

constexpr const char* BANK = R"(sounds\mainpls.txt)";
constexpr int LOUD = 8000;
constexpr int SOFT = 2000;

class Stage : public testing::Test {
 protected:
  void SetUp() override {
    files_use_roots(folder.path() + "/d", folder.path());
    std::filesystem::create_directory(folder.file("sounds"));
    wave("loud", 10, LOUD);
    wave("soft", 10, SOFT);
    wave("short", 0.2, LOUD);
    headless_clock_set(10'000);
    jps_players_reset();
    ASSERT_EQ(jpsdrvr_init(), 0);
  }
  void TearDown() override {
    jps_banks_free();
    jpsdrvr_shutdown();
    headless_clock_reset();
  }

  void wave(const std::string& name, double seconds, int level) const {
    folder.write("sounds/" + name + ".wav", flat_wave(seconds, level));
  }

  // The bank of this script, alone; what was printed is in `printed`, without the path.
  JpsBank* parse(const std::string& script) {
    jps_banks_free();
    return parse_beside(script);
  }
  // The same beside the banks that are there.
  JpsBank* parse_beside(const std::string& script, const char* path = BANK) {
    folder.write("sounds/mainpls.txt", script);
    testing::internal::CaptureStdout();
    bank = playlist_parse(path, &messages);
    printed = testing::internal::GetCapturedStdout();
    const std::string head = "'" + std::string(path) + "'";
    for (std::size_t at; (at = printed.find(head)) != std::string::npos;) {
      printed.erase(at, head.size());
    }
    return bank;
  }

  // A playlist 1 called "x" on any track, with these lines.
  JpsBank* parse_lines(const std::string& lines) {
    return parse("PLAYLIST 1, 'x', 100, 0xFFFF\n" + lines + "END\n");
  }

  std::uint32_t play(const std::string& name, int volume = 255) {
    return jps_bank_play_name(BANK, name.c_str(), volume);
  }

  // Lets time pass, a millisecond at a time, and records the sound.
  void pass_ms(int ms) {
    std::int16_t block[2 * 45];
    for (int i = 0; i < ms; ++i) {
      const std::int64_t now = clock_ms();
      const int frames = static_cast<int>((now + 1) * 441 / 10 - now * 441 / 10);
      sound_capture_render(frames, block, jpsdrvr_transition);
      for (int frame = 0; frame < frames; ++frame) heard.push_back(block[2 * frame]);
      headless_clock_advance(1);
      jps_update_all();
    }
  }

  // The level that is heard at the end of so many milliseconds.
  int level_after_ms(int ms) {
    pass_ms(ms);
    return heard.back();
  }

  static int volume(int track) {
    const SoundLock lock;
    return jpsdrvr_track(track).volume;
  }
  static const JpsPlayer* owner(int track) {
    const SoundLock lock;
    return jpsdrvr_track(track).owner;
  }

  TempFolder folder;
  JpsBank* bank = nullptr;
  std::string printed;
  int messages = 0;
  std::vector<std::int16_t> heard;
};
