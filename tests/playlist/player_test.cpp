#include "sound/player.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "sound/jps.h"
#include "sound/markers.h"
#include "tests/playlist/stage.h"

namespace {

class Player : public Stage {
 protected:
  // Plays "x" of these lines and returns what was printed meanwhile.
  std::string run_lines(const std::string& lines, int ms, std::uint32_t tracks = 1) {
    parse_lines(lines);
    EXPECT_EQ(printed, "");
    testing::internal::CaptureStdout();
    EXPECT_EQ(play("x"), tracks);
    pass_ms(ms);
    return testing::internal::GetCapturedStdout();
  }

  // What standard output, captured to a file, holds by now.
  static long capture_size() {
    struct stat status{};
    return fstat(STDOUT_FILENO, &status) == 0 ? static_cast<long>(status.st_size) : -1;
  }

  // The signals posted since the last call.
  static std::string signals() {
    const SoundLock lock;
    std::string all;
    for (std::uint16_t number; jps_signal_take(number);) all += std::to_string(number) + " ";
    return all;
  }
};

// The gain that a volume stands for, in a third of a decibel a step.
double gain(int volume) {
  return std::pow(10, (volume - 255) / 3.0 / 20);
}

}  // namespace

TEST_F(Player, CommandsRunAtTheirTime) {
  parse_lines("SIGNAL 1\n[0.010] SIGNAL 2\n[+0.005] SIGNAL 3\nSIGNAL 4\n[1] SIGNAL 5\n");
  EXPECT_EQ(play("x"), 0U) << "it needs no track";
  EXPECT_EQ(signals(), "1 ") << "time 0 is done when the call returns";
  pass_ms(9);
  EXPECT_EQ(signals(), "");
  pass_ms(2);
  EXPECT_EQ(signals(), "2 ");
  pass_ms(5);
  EXPECT_EQ(signals(), "3 4 ");
  pass_ms(900);
  EXPECT_EQ(jps_players_running(), 1);
  pass_ms(100);
  EXPECT_EQ(signals(), "5 ");
  EXPECT_EQ(jps_players_running(), 0);
  EXPECT_EQ(play("y"), 0U) << "an unknown name";
  parse_lines("SIGNAL 6\n");
  play("x");
  EXPECT_EQ(jps_players_running(), 1) << "END waits for the next update";
  jps_update_all();
  EXPECT_EQ(jps_players_running(), 0);
}

TEST_F(Player, PlaylistEndsWithItsSound) {
  parse_lines("SETVOL 0, 255, 0\nPLAY 0, 'short.wav', 1\n");
  EXPECT_EQ(play("x"), 1U);
  EXPECT_NEAR(level_after_ms(190), LOUD, 2);
  EXPECT_EQ(jps_players_running(), 1);
  EXPECT_EQ(level_after_ms(30), 0);
  EXPECT_EQ(jps_players_running(), 0);
  EXPECT_EQ(owner(0), nullptr);

  parse_lines("PLAY 0, 'short.wav', 0\n[0.5] STOP 0\n[1] PLAY 0, 'short.wav', 1\n");
  play("x");
  EXPECT_NEAR(level_after_ms(490), LOUD, 2) << "any loop but 1 repeats";
  EXPECT_EQ(level_after_ms(100), 0);
  EXPECT_NEAR(level_after_ms(500), LOUD, 2);
  pass_ms(300);
  EXPECT_EQ(jps_players_running(), 0);
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

TEST_F(Player, SetsVolumeAtOnceAndByRamp) {
  parse_lines("SETVOL 0, 255, 0\nPLAY 0, 'loud.wav', 1\nSETVOL 0, 55, 1\n[2] SETVOL 0, 100, 0\n");
  play("x");
  pass_ms(20);
  for (int ms = 20; ms < 1000; ms += 70) {
    const int expected = static_cast<int>(255 - 200 * (static_cast<float>(ms) / 1000));
    EXPECT_NEAR(volume(0), expected, 1) << ms;
    EXPECT_NEAR(heard.back(), LOUD * gain(expected), LOUD * gain(expected) * 0.12) << ms;
    pass_ms(70);
  }
  pass_ms(100);
  EXPECT_EQ(volume(0), 55);
  EXPECT_NEAR(heard.back(), LOUD * gain(55), 2);
  pass_ms(1000);
  EXPECT_EQ(volume(0), 100);
  EXPECT_NEAR(heard.back(), LOUD * gain(100), 2);
  jps_stop_all();

  play("x", 0x1FF);
  EXPECT_EQ(volume(0), 255) << "of the volume the low 8 bits count";
  jps_stop_all();
  play("x", 155);
  EXPECT_EQ(volume(0), 155 - 255 + 155) << "at once, a quieter request counts twice";
  pass_ms(1010);
  EXPECT_EQ(volume(0), 55 * 155 / 255) << "at the end of a ramp it counts once";
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

TEST_F(Player, DuckLowersOtherTracksUntilUnduck) {
  parse(
      "PLAYLIST 1, 'music', 10, 0x0001\nSETVOL 0, 250, 0\nPLAY 0, 'loud.wav', 0\nEND\n"
      "PLAYLIST 2, 'voice', 10, 0x0100\nSETVOL 0, 255, 0\nPLAY 0, 'soft.wav', 0\n"
      "DUCK 0, 100, 0.5\n[0.7] UNDUCK 0, 0.25\n[1.2] STOP 0\nEND\n"
      "PLAYLIST 3, 'deep', 10, 0x0100\nPLAY 0, 'short.wav', 0\nDUCK 0, 255, 0.1\n"
      "[0.2] UNDUCK 0, 0\n[0.3] DUCK 0, 255, 0\n[0.4] UNDUCK 0, 0.1\n[0.6] DUCK 5, 9, 1\nEND\n");
  play("music");
  EXPECT_NEAR(level_after_ms(20), LOUD * gain(250), 10);
  EXPECT_EQ(play("voice"), 0x100U);
  pass_ms(250);
  EXPECT_NEAR(volume(0), 200, 1);
  pass_ms(400);
  EXPECT_EQ(volume(0), 150);
  EXPECT_NEAR(heard.back(), SOFT + LOUD * gain(150), 3);
  pass_ms(175);
  EXPECT_NEAR(volume(0), 200, 2);
  pass_ms(275);
  EXPECT_EQ(volume(0), 250);
  EXPECT_NEAR(heard.back(), SOFT + LOUD * gain(250), 10);
  pass_ms(200);
  EXPECT_EQ(jps_players_running(), 1);

  jpsdrvr_set_volume(5, 200);
  play("deep");
  pass_ms(150);
  EXPECT_EQ(volume(0), 0) << "no lower than 0";
  pass_ms(100);
  EXPECT_EQ(volume(0), 255) << "no higher than 255, and a ramp of no length is over at once";
  pass_ms(100);
  EXPECT_EQ(volume(0), 255) << "a duck of no length does nothing";
  jpsdrvr_set_volume(0, 0);
  pass_ms(200);
  EXPECT_EQ(volume(0), 255) << "but an unduck raises it";
  pass_ms(200);
  EXPECT_EQ(volume(5), 200) << "a track without an owner is not ducked";
  jps_stop_all();
  EXPECT_EQ(run_lines("UNDUCK 0, 1\n", 1, 0),
            "jps_opcode_func_unduck(): ERROR! Couldn't find matching duck call\n");
}

TEST_F(Player, LoopsRunTheirCountAndNest) {
  EXPECT_EQ(run_lines("LOOPSTART 2\nSIGNAL 1\n[0.1] SIGNAL 2\n[0.2] LOOPEND\nSIGNAL 3\n", 590, 0),
            "");
  EXPECT_EQ(signals(), "1 2 1 2 1 2 ");
  testing::internal::CaptureStdout();
  pass_ms(40);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "ERROR! Couldn't find matching loop struct\n");
  EXPECT_EQ(signals(), "3 ");
  EXPECT_EQ(jps_players_running(), 0);

  const std::string nested =
      "LOOPSTART 1\nSIGNAL 1\nLOOPSTART 2\nSIGNAL 2\n[0.01] LOOPEND\nSIGNAL 3\nLOOPEND\n";
  run_lines(nested, 200, 0);
  EXPECT_EQ(signals(), "1 2 2 2 3 1 2 2 2 3 ");

  EXPECT_EQ(run_lines("LOOPSTART 0\n[0.1] SIGNAL 1\nLOOPEND\n", 10'050, 0), "");
  EXPECT_GE(signals().size(), 2U * 95) << "0 has no end";
  jps_stop_all();
  run_lines("PLAY 0, 'loud.wav', 0\nLOOPSTART 0\n[0.01] LOOPEND\n", 1000);
  EXPECT_EQ(owner(0)->loops[0].remaining, -1) << "no count that could overflow";
  jps_stop_all();
  EXPECT_EQ(run_lines("LOOPEND\nSIGNAL 1\n", 1, 0),
            "jps_opcode_func_loopend(): ERROR! LOOPEND without matching LOOPSTART... ignoring\n");
  EXPECT_EQ(run_lines("LOOPEND\nLOOPEND\nSIGNAL 1\n", 1, 0),
            "jps_opcode_func_loopend(): ERROR! LOOPEND without matching LOOPSTART... ignoring\n"
            "jps_opcode_func_loopend(): ERROR! non-matching loops, ignoring\n");
  std::string many;
  for (int i = 0; i < JPS_LOOPS + 1; ++i) many += "LOOPSTART 1\n";
  EXPECT_EQ(run_lines(many, 1, 0), "jps_opcode_func_loopstart(): ERROR! Loop overflow\n");
}

TEST_F(Player, GotoReturnsToTheTimeOfItsLabel) {
  run_lines(
      "SIGNAL 1\n[1] GOTO 'none'\n[2] LABEL 'here'\nSIGNAL 2\n[3.5] SIGNAL 3\n"
      "[5] GOTO 'here'\nSIGNAL 4\n",
      1990, 0);
  EXPECT_EQ(signals(), "1 ");
  for (int round = 0; round < 5; ++round) {
    pass_ms(30);
    EXPECT_EQ(signals(), "2 ") << round;
    pass_ms(1450);
    EXPECT_EQ(signals(), "") << round;
    pass_ms(50);
    EXPECT_EQ(signals(), "3 ") << round;
    pass_ms(1470);
    EXPECT_EQ(signals(), "") << round;
  }
}

TEST_F(Player, EndlessJumpIsLimitedPerUpdate) {
  run_lines("LABEL 'a'\nSIGNAL 1\nGOTO 'a'\n", 0, 0);
  EXPECT_EQ(signals().size(), 2U * 50) << "a hundred commands in one go";
  pass_ms(1);
  EXPECT_EQ(signals().size(), 2U * 50);
  jps_stop_all();
  const std::string printed_now = run_lines("LABEL 'a'\nSETPAN 0, 0, 0\nGOTO 'a'\n", 2000, 0);
  EXPECT_EQ(printed_now.find("jps_player_exec(): ERROR! Invalid opcode '0xa'\n"), 0U);
  EXPECT_LE(std::count(printed_now.begin(), printed_now.end(), '\n'), 63) << "messages are limited";
}

TEST_F(Player, MarkerIsSeenOnceWithinTwoSeconds) {
  parse(
      "PLAYLIST 1, 'set', 1, 1\nMARKER 2047\nEND\n"
      "PLAYLIST 2, 'test', 1, 1\nONMARKER 2047 SIGNAL 1\nEND\n"
      "PLAYLIST 3, 'other', 1, 1\nONMARKER 0 SIGNAL 2\nEND\n");
  play("set");
  pass_ms(1990);
  play("other");
  play("test");
  play("test");
  EXPECT_EQ(signals(), "1 ") << "one test only";
  play("set");
  pass_ms(2010);
  play("test");
  EXPECT_EQ(signals(), "") << "dead after two seconds";
  play("set");
  play("test");
  EXPECT_EQ(signals(), "1 ") << "set again";
  play("set");
  jps_stop_all();
  play("test");
  EXPECT_EQ(signals(), "");
  const SoundLock lock;
  jps_marker_set(JPS_MARKERS, 1);
  EXPECT_FALSE(jps_marker_test(JPS_MARKERS, 1));
  EXPECT_FALSE(jps_marker_test(-1, 1));
}

TEST_F(Player, ArmedCommandRunsOnMarkerAndSkipsTheNext) {
  const std::string set = "PLAYLIST 2, 'set', 1, 1\nMARKER 5\nEND\n";
  parse(set +
        "PLAYLIST 1, 'x', 1, 1\nONSMARKER 5 SIGNAL 1\nSIGNAL 2\n[1] SIGNAL 3\n[9] SIGNAL 4\n"
        "[20] SIGNAL 5\n[30] SIGNAL 6\nEND\n");
  play("x");
  EXPECT_EQ(signals(), "2 ") << "the commands behind it go on";
  pass_ms(1500);
  EXPECT_EQ(signals(), "3 ");
  play("set");
  pass_ms(1);
  EXPECT_EQ(signals(), "1 5 ") << "4 was next and is skipped; 5 is due at once";
  play("set");
  pass_ms(100);
  EXPECT_EQ(signals(), "") << "no longer armed";
  jps_stop_all();

  parse(set +
        "PLAYLIST 1, 'x', 1, 1\nONSMARKER 4 SIGNAL 1\nONSMARKER 5 SIGNAL 2\n[9] SIGNAL 3\n"
        "SIGNAL 4\n[10] END\n");
  play("x");
  play("set");
  pass_ms(1);
  EXPECT_EQ(signals(), "2 4 ") << "the later one replaces the first";
  jps_stop_all();

  parse(set +
        "PLAYLIST 1, 'x', 1, 1\nSETVOL 0, 255, 0\nPLAY 0, 'loud.wav', 0\nONSMARKER 5 PLAY 0, "
        "'soft.wav', 0\n"
        "END\n");
  play("x");
  pass_ms(100);
  play("set");
  EXPECT_NEAR(level_after_ms(100), SOFT, 2) << "END is not skipped";
  EXPECT_EQ(jps_players_running(), 1);
  jps_stop_all();

  parse(set + "PLAYLIST 1, 'x', 1, 1\nLABEL 'a'\nONSMARKER 5 GOTO 'a'\n[1] SIGNAL 1\n[2] END\n");
  play("x");
  pass_ms(500);
  play("set");
  pass_ms(900);
  EXPECT_EQ(signals(), "") << "the jump has set the time to 0";
  pass_ms(150);
  EXPECT_EQ(signals(), "1 ");
}

TEST_F(Player, GroupPicksByWeightWithoutRepeating) {
  parse(
      "GROUP 'g', 2\nSOUND 'loud.wav', 1\nSOUND 'soft.wav', 1\nSOUND 'short.wav', 1\nEND\n"
      "GROUP 'w', 0\nSOUND 'loud.wav', 3\nSOUND 'soft.wav', 1\nEND\n"
      "PLAYLIST 1, 'x', 1, 1\nPLAYGROUP 0, 'g', 1\nEND\n"
      "PLAYLIST 2, 'w', 1, 1\nPLAYGROUP 0, 'w', 1\nEND\n"
      "PLAYLIST 3, 'armed', 1, 1\nONSMARKER 1 SIGNAL 1\nPLAYGROUP 0, 'w', 1\nEND\n");
  const auto picked = [](int track) {
    const SoundLock lock;
    return jpsdrvr_track(track).sound;
  };
  std::vector<const JpsSound*> picks;
  for (int i = 0; i < 60; ++i) {
    play("x");
    picks.push_back(picked(0));
    ASSERT_NE(picks.back(), nullptr);
    if (i >= 2) {
      EXPECT_NE(picks[i], picks[i - 1]);
      EXPECT_NE(picks[i], picks[i - 2]);
    }
  }
  std::map<const JpsSound*, int> counts;
  for (int i = 0; i < 2000; ++i) {
    play("w");
    ++counts[picked(0)];
  }
  EXPECT_NEAR(counts[&bank->sounds[0]], 1500, 100);
  EXPECT_NEAR(counts[&bank->sounds[1]], 500, 100);
  play("armed");
  EXPECT_EQ(picked(0), nullptr) << "no pick while a command is armed";
}

TEST_F(Player, PlaylistWithoutEndStopsWithMessage) {
  parse("PLAYLIST 1, 'x', 1, 1\nSIGNAL 1\nfoo\n");
  testing::internal::CaptureStdout();
  play("x");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "jps_player_update(): ERROR! Premature end of playlist encountered\n");
  EXPECT_EQ(jps_players_running(), 0);
  parse("PLAYLIST 1, 'x', 1, 1\nfoo\n");
  testing::internal::CaptureStdout();
  play("x");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "jps_player_update(): ERROR! Exceeded end of list\n");
  EXPECT_EQ(jps_players_running(), 0);
}

TEST_F(Player, MessagesArePrintedOutsideTheLockAndLimited) {
  const std::string line = "jps_opcode_func_unduck(): ERROR! Couldn't find matching duck call\n";
  std::string lines;
  for (int i = 0; i < 30; ++i) lines += "UNDUCK 0, 1\n";
  parse_lines(lines + "[0.9] SIGNAL 1\n");
  std::string twenty;
  for (int i = 0; i < 20; ++i) twenty += line;
  testing::internal::CaptureStdout();
  {
    const SoundLock lock;
    EXPECT_EQ(play("x"), 0U);
    std::fflush(stdout);
    EXPECT_EQ(capture_size(), 0) << "no output while the lock is held";
  }
  pass_ms(500);
  std::fflush(stdout);
  EXPECT_EQ(capture_size(), static_cast<long>(twenty.size())) << "within one second";
  pass_ms(600);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            twenty + "jps_complain(): Warning! 10 more messages were dropped\n");
}

TEST_F(Player, FullSignalQueueDropsTheOldest) {
  const SoundLock lock;
  for (int i = 0; i <= JPS_SIGNALS; ++i) jps_signal_post(static_cast<std::uint16_t>(i));
  std::uint16_t number = 0;
  ASSERT_TRUE(jps_signal_take(number));
  EXPECT_EQ(number, 1);
  int rest = 0;
  while (jps_signal_take(number)) ++rest;
  EXPECT_EQ(rest, JPS_SIGNALS - 1);
  EXPECT_EQ(number, JPS_SIGNALS);
}

TEST_F(Player, PitchIsScaledWithinTheDriversRange) {
  wave("pulse", 1, LOUD);
  parse_lines("PLAY 0, 'pulse.wav', 1\n");
  const std::uint32_t tracks = play("x");
  sound_pitch_scale(tracks, 2.0);
  pass_ms(490);
  EXPECT_EQ(jpsdrvr_is_playing(0), 1);
  pass_ms(30);
  EXPECT_EQ(jpsdrvr_is_playing(0), 0) << "twice the pitch, half the time";
  for (const double factor : {2.3, 0.002, -1.0}) {
    play("x");
    sound_pitch_scale(0xFFFF, factor);
    pass_ms(980);
    EXPECT_EQ(jpsdrvr_is_playing(0), 1) << factor << " leaves the track alone";
    pass_ms(50);
    EXPECT_EQ(jpsdrvr_is_playing(0), 0) << factor;
  }
  folder.write("sounds/slow.wav", flat_wave(1, LOUD, 100));
  parse_lines("PLAY 0, 'slow.wav', 1\n");
  sound_pitch_scale(play("x"), 1.009);
  pass_ms(995);
  EXPECT_EQ(jpsdrvr_is_playing(0), 0) << "100.9 Hz are 101, in which it takes 990 ms";
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
  EXPECT_NE(testing::internal::GetCapturedStdout().find(
                "jps_init(): ERROR! Could not init sound hardware!\n"),
            std::string::npos);
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
  EXPECT_EQ(signals(), "1 ");
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
