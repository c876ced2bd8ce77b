#include "sound/player.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "sound/jps.h"
#include "sound/markers.h"
#include "tests/playlist/stage.h"

namespace {

struct Row {
  std::string lines;
  int ms;
  std::string told;
  std::string cues = "";  // "9 set": at 9 ms plays that; "volume" and "level" tell those of track 0
};

class Player : public Stage {
 protected:
  // Plays "x" of these lines and tells what happens, with the millisecond: a signal's number, the
  // end of the last player, what cues ask for, and complaints. In scripts whose times are eighths
  // of a second nothing is rounded. The lines may end that playlist and begin others.
  std::string run(const std::string& lines, int ms, const std::string& cues) {
    headless_clock_set(10'000);
    parse("PLAYLIST 1, 'x', 100, 0xFFFF\n" + lines +
          "END\n"
          "PLAYLIST 2, 'set', 1, 1\nMARKER 2047\nEND\n"
          "PLAYLIST 3, 'test', 1, 1\nONMARKER 2047 SIGNAL 7\nEND\n"
          "PLAYLIST 4, 'other', 1, 1\nONMARKER 0 SIGNAL 8\nEND\n");
    testing::internal::CaptureStdout();
    play("x");
    bool running = true;
    std::istringstream rest(cues + " -1 none");
    int cue_at = 0;
    rest >> cue_at;
    for (int now = 0; now <= ms; ++now) {
      for (std::string cue; cue_at == now; rest >> cue_at) {
        rest >> cue;
        follow(now, cue);
      }
      running = tell_signals_and_end(now, running);
      pass_ms(1);
    }
    return testing::internal::GetCapturedStdout();
  }

  void expect_told(const std::vector<Row>& rows) {
    for (const Row& row : rows) EXPECT_EQ(run(row.lines, row.ms, row.cues), row.told) << row.lines;
  }

  // What standard output, captured to a file, holds by now.
  static long capture_size() {
    std::fflush(stdout);
    struct stat status{};
    return fstat(STDOUT_FILENO, &status) == 0 ? static_cast<long>(status.st_size) : -1;
  }

 private:
  static bool tell_signals_and_end(int now, bool running) {
    const SoundLock lock;
    for (std::uint16_t number; jps_signal_take(number);) std::printf("%i:%i ", now, number);
    if (running && jps_players_running() == 0) std::printf("%i:end ", now);
    return jps_players_running() > 0;
  }
  void follow(int now, const std::string& cue) {
    if (cue == "volume") {
      std::printf("%i:volume %i ", now, volume(0));
    } else if (cue == "level") {
      std::printf("%i:level %i ", now, heard.back());
    } else {
      play(cue);
    }
  }
};

std::string times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

}  // namespace

// Those at time 0 run within the call; END waits for the next update.
TEST_F(Player, CommandsRunAtTheirTimeInLoopsAndAfterJumps) {
  const std::string none =
      "jps_opcode_func_loopend(): ERROR! LOOPEND without matching LOOPSTART... ignoring\n";
  expect_told({
      {"SIGNAL 1\n[0.125] SIGNAL 2\n[+0.125] SIGNAL 3\nSIGNAL 4\n[1] SIGNAL 5\n", 1100,
       "0:1 125:2 250:3 250:4 1000:5 1001:end "},
      {"LOOPSTART 2\nSIGNAL 1\n[0.125] SIGNAL 2\n[0.25] LOOPEND\nSIGNAL 3\n", 1000,
       "0:1 125:2 250:1 375:2 500:1 625:2 ERROR! Couldn't find matching loop struct\n"
       "750:3 751:end "},
      {"LOOPSTART 1\nSIGNAL 1\nLOOPSTART 2\nSIGNAL 2\n[0.125] LOOPEND\nSIGNAL 3\nLOOPEND\n", 1000,
       "0:1 0:2 125:2 250:2 ERROR! Couldn't find matching loop struct\n"
       "375:3 375:1 375:2 500:2 625:2 ERROR! Couldn't find matching loop struct\n"
       "ERROR! Couldn't find matching loop struct\n750:3 751:end "},
      {"LOOPSTART 0\n[0.125] SIGNAL 1\nLOOPEND\n", 1000,
       "125:1 250:1 375:1 500:1 625:1 750:1 875:1 1000:1 "},
      {"LOOPEND\nSIGNAL 1\n", 1, none + "0:1 1:end "},
      {"LOOPEND\nLOOPEND\nSIGNAL 1\n", 1,
       none + "jps_opcode_func_loopend(): ERROR! non-matching loops, ignoring\n0:1 1:end "},
      {times(JPS_LOOPS + 1, "LOOPSTART 1\n"), 1,
       "jps_opcode_func_loopstart(): ERROR! Loop overflow\n1:end "},
      {"SIGNAL 1\n[0.25] GOTO 'none'\n[0.5] LABEL 'here'\nSIGNAL 2\n[1] SIGNAL 3\n"
       "[1.5] GOTO 'here'\nSIGNAL 4\n",
       3600, "0:1 500:2 1000:3 1500:2 2000:3 2500:2 3000:3 3500:2 "},
      // An endless jump ends after a hundred commands in one go.
      {"LABEL 'a'\nSIGNAL 1\nGOTO 'a'\n", 1, times(50, "0:1 ") + times(50, "1:1 ")},
      {"SETPAN 0, 0, 0\n", 1, "jps_player_exec(): ERROR! Invalid opcode '0xa'\n1:end "},
      {"SIGNAL 1\nfoo\n", 1,
       "jps_player_update(): ERROR! Premature end of playlist encountered\n0:1 0:end "},
      {"foo\n", 1, "jps_player_update(): ERROR! Exceeded end of list\n0:end "},
  });
  run("PLAY 0, 'loud.wav', 0\nLOOPSTART 0\n[0.125] LOOPEND\n", 1000, "");
  EXPECT_EQ(owner(0)->loops[0].remaining, -1) << "no count that could overflow";
}

TEST_F(Player, MarkerIsSeenOnceWithinTwoSeconds) {
  expect_told({
      {"[5] SIGNAL 1\n", 4002, "2000:7 4001:7 ",
       "0 set 2000 other 2000 test 2000 test 2000 set 4001 test 4001 set 4001 test 4002 set"},
      // When all players are stopped, markers are cleared.
      {"[5] SIGNAL 1\n", 1, "", "0 test"},
  });
  const SoundLock lock;
  jps_marker_set(JPS_MARKERS, 1);
  EXPECT_FALSE(jps_marker_test(JPS_MARKERS, 1));
  EXPECT_FALSE(jps_marker_test(-1, 1));
}

TEST_F(Player, ArmedCommandRunsOnMarkerAndSkipsTheNext) {
  expect_told({
      // The commands behind it go on. 4 is next when the marker comes and is skipped; 5 is due at
      // once. After that it isn't armed any more.
      {"ONSMARKER 2047 SIGNAL 1\nSIGNAL 2\n[1] SIGNAL 3\n[9] SIGNAL 4\n[20] SIGNAL 5\n"
       "[30] SIGNAL 6\n",
       1700, "0:2 1000:3 1501:1 1501:5 ", "1500 set 1600 set"},
      // A later one replaces the first.
      {"ONSMARKER 4 SIGNAL 1\nONSMARKER 2047 SIGNAL 2\n[9] SIGNAL 3\nSIGNAL 4\n", 2, "1:2 1:4 ",
       "0 set"},
      // END is not skipped.
      {"SETVOL 0, 255, 0\nPLAY 0, 'loud.wav', 0\nONSMARKER 2047 PLAY 0, 'soft.wav', 0\n", 200,
       "200:level 2000 ", "100 set 200 level"},
      // A jump sets the time to that of its label.
      {"LABEL 'a'\nONSMARKER 2047 GOTO 'a'\n[1] SIGNAL 1\n", 1600, "1500:1 1501:end ", "499 set"},
  });
}

TEST_F(Player, PlaylistEndsWithItsSound) {
  expect_told({
      {"SETVOL 0, 255, 0\nPLAY 0, 'short.wav', 1\n", 220, "190:level 8000 201:end 210:level 0 ",
       "190 level 210 level"},
      // Any loop but 1 repeats.
      {"SETVOL 0, 255, 0\nPLAY 0, 'short.wav', 0\n[0.5] STOP 0\n[1] PLAY 0, 'short.wav', 1\n", 1300,
       "490:level 8000 600:level 0 1100:level 8000 1201:end ", "490 level 600 level 1100 level"},
  });
  EXPECT_EQ(owner(0), nullptr);
}

// Each step of the volume below 255 is a third of a decibel: 250 is 6608 of 8000.
TEST_F(Player, VolumeIsSetByRampDuckAndUnduck) {
  jpsdrvr_set_volume(5, 200);
  expect_told({
      {"SETVOL 0, 255, 0\nPLAY 0, 'loud.wav', 1\nSETVOL 0, 55, 1\n[2] SETVOL 0, 100, 0\n", 2010,
       "125:volume 230 500:volume 155 875:volume 80 1100:volume 55 1100:level 4 "
       "2010:volume 100 2010:level 21 ",
       "125 volume 500 volume 875 volume 1100 volume 1100 level 2010 volume 2010 level"},
      {"SETVOL 0, 250, 0\nPLAY 0, 'loud.wav', 0\nEND\n"
       "PLAYLIST 5, 'voice', 10, 0x0100\nSETVOL 0, 255, 0\nPLAY 0, 'soft.wav', 0\n"
       "DUCK 0, 100, 0.5\n[0.75] UNDUCK 0, 0.25\n[1.25] STOP 0\n",
       1400,
       "125:level 6608 375:volume 200 800:volume 150 800:level 2142 1000:volume 200 "
       "1200:volume 250 1200:level 8608 1400:level 6608 ",
       "125 level 125 voice 375 volume 800 volume 800 level 1000 volume 1200 volume 1200 level "
       "1400 level"},
      // No lower than 0 and no higher than 255. An unduck without a length is over at once, a duck
      // without one does nothing, nor does one of a track without an owner.
      {"SETVOL 0, 250, 0\nPLAY 0, 'loud.wav', 0\nDUCK 0, 255, 0.125\n[0.25] UNDUCK 0, 0\n"
       "[0.375] DUCK 0, 255, 0\n[0.5] SETVOL 0, 0, 0\nUNDUCK 0, 0.125\n[0.625] DUCK 5, 9, 0.125\n",
       800, "200:volume 0 300:volume 255 450:volume 255 500:volume 0 800:volume 255 ",
       "200 volume 300 volume 450 volume 500 volume 800 volume"},
      {"UNDUCK 0, 1\n", 1,
       "jps_opcode_func_unduck(): ERROR! Couldn't find matching duck call\n1:end "},
  });
  EXPECT_EQ(volume(5), 200);
}

TEST_F(Player, StreamPlaysWithoutGapAndEnds) {
  wave("stream", 2, SOFT);
  parse_lines("SETVOL 0, 255, 0\nPLAYS 0, 'stream.wav', 1\n");
  play("x");
  EXPECT_NEAR(level_after_ms(1950), SOFT, 2);
  EXPECT_NEAR(*std::min_element(heard.begin() + 1000, heard.end()), SOFT, 2) << "without a gap";
  pass_ms(900);
  EXPECT_EQ(heard.back(), 0);
  EXPECT_EQ(jps_players_running(), 0);
}

TEST_F(Player, QuieterRequestCountsTwiceAtOnceAndOnceByRamp) {
  parse_lines("SETVOL 0, 255, 0\nPLAY 0, 'loud.wav', 1\nSETVOL 0, 55, 1\n");
  play("x", 0x1FF);
  EXPECT_EQ(volume(0), 255) << "of the volume the low 8 bits count";
  jps_stop_all();
  play("x", 155);
  EXPECT_EQ(volume(0), 155 - 255 + 155);
  pass_ms(1010);
  EXPECT_EQ(volume(0), 55 * 155 / 255);
}

TEST_F(Player, ZeroLengthRampEndsWithoutClockStep) {
  parse_lines("PLAY 0, 'loud.wav', 1\nSETVOL 0, 100, 0\nDUCK 0, 50, 9\nUNDUCK 0, 0\n");
  play("x");
  jps_update_all();
  EXPECT_EQ(volume(0), 150);
}

TEST_F(Player, LimitsRampsToTenAndLatestWins) {
  std::string lines = "PLAY 0, 'loud.wav', 1\nSETVOL 0, 0, 1\n";
  for (int i = 1; i < 10; ++i) lines += "SETVOL 0, " + std::to_string(i * 10) + ", 1\n";
  parse_lines(lines + "SETVOL 0, 200, 1\n");
  play("x");
  EXPECT_EQ(volume(0), 200) << "without a free ramp it acts at once";
  pass_ms(1010);
  EXPECT_EQ(volume(0), 90);
}

TEST_F(Player, GroupPicksByWeightWithoutRepeating) {
  parse(
      "GROUP 'g', 2\nSOUND 'loud.wav', 1\nSOUND 'soft.wav', 1\nSOUND 'short.wav', 1\nEND\n"
      "GROUP 'w', 0\nSOUND 'loud.wav', 3\nSOUND 'soft.wav', 1\nEND\n"
      "PLAYLIST 1, 'x', 1, 1\nPLAYGROUP 0, 'g', 1\nEND\n"
      "PLAYLIST 2, 'w', 1, 1\nPLAYGROUP 0, 'w', 1\nEND\n"
      "PLAYLIST 3, 'armed', 1, 1\nONSMARKER 1 SIGNAL 1\nPLAYGROUP 0, 'w', 1\nEND\n");
  const auto pick = [this](const char* playlist) {
    play(playlist);
    const SoundLock lock;
    return jpsdrvr_track(0).sound;
  };
  std::vector<const JpsSound*> picks{pick("x"), pick("x")};
  for (int i = 2; i < 60; ++i) {
    picks.push_back(pick("x"));
    // None of three twice in three picks.
    EXPECT_EQ(std::set(picks.end() - 3, picks.end()).size(), 3U) << i;
  }
  std::map<const JpsSound*, int> counts;
  for (int i = 0; i < 2000; ++i) ++counts[pick("w")];
  EXPECT_NEAR(counts[&bank->sounds[0]], 1500, 100);
  EXPECT_NEAR(counts[&bank->sounds[1]], 500, 100);
  EXPECT_EQ(pick("armed"), nullptr) << "no pick while a command is armed";
}

TEST_F(Player, MessagesArePrintedOutsideTheLockAndLimited) {
  parse_lines(times(30, "UNDUCK 0, 1\n") + "[0.9] SIGNAL 1\n");
  const std::string twenty =
      times(20, "jps_opcode_func_unduck(): ERROR! Couldn't find matching duck call\n");
  testing::internal::CaptureStdout();
  {
    const SoundLock lock;
    play("x");
    EXPECT_EQ(capture_size(), 0) << "no output while the lock is held";
  }
  pass_ms(500);
  EXPECT_EQ(capture_size(), static_cast<long>(twenty.size())) << "within one second";
  pass_ms(600);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            twenty + "jps_complain(): Warning! 10 more messages were dropped\n");
}

TEST_F(Player, FullSignalQueueDropsTheOldest) {
  const SoundLock lock;
  for (int i = 0; i <= JPS_SIGNALS; ++i) jps_signal_post(static_cast<std::uint16_t>(i));
  int expected = 1;
  for (std::uint16_t number; jps_signal_take(number); ++expected) ASSERT_EQ(number, expected);
  EXPECT_EQ(expected, JPS_SIGNALS + 1);
}

TEST_F(Player, PitchIsScaledWithinTheDriversRange) {
  folder.write("sounds/slow.wav", flat_wave(1, LOUD, 100));
  wave("pulse", 1, LOUD);
  struct Scaled {
    const char* sound;
    double factor;
    int ends_ms;
  };
  // Twice the pitch is half the time. 100.9 Hz are 101. What is out of range changes nothing.
  for (const Scaled& row : {Scaled{"pulse", 2, 500},
                            {"pulse", 2.3, 1000},
                            {"pulse", 0.002, 1000},
                            {"pulse", -1, 1000},
                            {"slow", 1.009, 990}}) {
    parse_lines("PLAY 0, '" + std::string(row.sound) + ".wav', 1\n");
    sound_pitch_scale(play("x"), row.factor);
    pass_ms(row.ends_ms - 15);
    EXPECT_EQ(jpsdrvr_is_playing(0), 1) << row.factor;
    pass_ms(20);
    EXPECT_EQ(jpsdrvr_is_playing(0), 0) << row.factor;
  }
}

TEST_F(Player, SetsPanOfAllTracks) {
  jps_set_pan_all(-10000);
  jps_set_pan_all(10001);
  const SoundLock lock;
  for (int track = 0; track < JPS_TRACKS; ++track) {
    EXPECT_EQ(jpsdrvr_track(track).pan, -10000) << "out of range: ignored";
  }
}

// With the real thread, which advances the hand-set clock by itself.
TEST_F(Player, TimerThreadRunsPlaylists) {
  jpsdrvr_shutdown();
  sound_capture_plug(false);
  testing::internal::CaptureStdout();
  EXPECT_EQ(jps_init(), -1);
  EXPECT_TRUE(testing::internal::GetCapturedStdout().ends_with(
      "jps_init(): ERROR! Could not init sound hardware!\n"));
  sound_capture_plug(true);
  ASSERT_EQ(jps_init(), 0);
  EXPECT_FALSE(jps_bank_load(R"(sounds\none.txt)"));
  folder.write("sounds/mainpls.txt",
               "PLAYLIST 1, 'x', 1, 1\nPLAY 0, 'loud.wav', 0\n[5] SIGNAL 1\n[6] STOP 0\nEND\n");
  EXPECT_TRUE(jps_bank_load(BANK));
  EXPECT_EQ(jps_bank_play_name("x"), 1U);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (jps_players_running() > 0 && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::yield();
  }
  {
    const SoundLock lock;
    std::uint16_t number = 0;
    EXPECT_TRUE(jps_signal_take(number));
    EXPECT_EQ(number, 1);
  }
  std::set<std::string> threads;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string name;
    std::ifstream comm(thread.path() / "comm");
    std::getline(comm, name);
    threads.insert(name);
  }
  EXPECT_TRUE(threads.contains("sound timer"));
  EXPECT_EQ(jps_bank_play_name("x"), 1U);
  jps_stop_all();
  EXPECT_EQ(jps_players_running(), 0);
  // On a busy machine a player may outlast the bound of one try.
  for (int i = 0; i < 15 && sound_capture_is_open(); ++i) jps_shutdown();
  EXPECT_FALSE(sound_capture_is_open());
  testing::internal::CaptureStdout();
  EXPECT_EQ(jps_bank_play_name("x"), 0U);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << "no second message";
}
