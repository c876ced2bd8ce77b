#include <sstream>
#include <string>

#include "sound/jps.h"

#include "tests/playlist/stage.h"

namespace {

class Tracks : public Stage {
 protected:
  // A playlist that repeats `sound` on so many tracks.
  void add(const std::string& name, int tracks, int priority, const std::string& mask,
           const std::string& sound = "loud") {
    script_ += "PLAYLIST " + std::to_string(++count_) + ", '" + name + "', " +
               std::to_string(priority) + ", " + mask + "\n";
    for (int i = 0; i < tracks; ++i) {
      const std::string track = std::to_string(i);
      script_ += "SETVOL " + track + ", 255, 0\nPLAY " + track + ", '" + sound + ".wav', 0\n";
    }
    script_ += "END\n";
  }
  void load() {
    parse(script_);
    ASSERT_EQ(printed, "");
  }
  // The masks of the tracks that these playlists get one after the other; "." lets 10 ms pass.
  std::string plays(const std::string& names) {
    std::istringstream in(names);
    std::ostringstream taken;
    for (std::string name; in >> name;) {
      if (name == ".") {
        pass_ms(10);
      } else {
        taken << std::hex << play(name) << " ";
      }
    }
    return taken.str();
  }

 private:
  std::string script_;
  int count_ = 0;
};

}  // namespace

TEST_F(Tracks, TakesFreeThenLowerPriorityThenOldestEqual) {
  add("one", 1, 100, "0x0007");
  add("two", 1, 99, "0x0007");
  add("low", 1, 98, "0xFFFF");
  add("high", 1, 101, "0x0007");
  load();
  // Free ones, then the one of lower priority, though others are as old.
  EXPECT_EQ(plays("two . one . one low one"), "1 2 4 8 1 ");
  EXPECT_EQ(jps_players_running(), 4);
  // The oldest of equals, and the first of equally old ones. For "two" all of them are higher.
  EXPECT_EQ(plays(". one one two high"), "2 1 0 1 ");
}

TEST_F(Tracks, LowPriorityRequestTakesNoTrack) {
  add("all", 16, 50, "1");
  add("low", 1, 49, "0xFFFF");
  add("pair", 2, 49, "0xFFFF");
  add("equal", 16, 50, "1");
  load();
  EXPECT_EQ(play("all"), 0xFFFFU);
  const JpsPlayer* const holder = owner(0);
  EXPECT_EQ(play("low"), 0U);
  EXPECT_EQ(play("pair"), 0U);
  for (int track = 0; track < JPS_TRACKS; ++track) EXPECT_EQ(owner(track), holder);
  EXPECT_EQ(jps_players_running(), 1);
  EXPECT_EQ(play("equal"), 0xFFFFU);
  EXPECT_NE(owner(0), holder);
  EXPECT_EQ(jps_players_running(), 1);
}

TEST_F(Tracks, RunIsAdjacentAndMaskLimitsItsFirstTrack) {
  add("three", 3, 10, "0x0001");
  add("middle", 1, 20, "0x0002");
  add("pair", 2, 10, "0xFFFF");
  add("tail", 2, 10, "0x8000");
  add("over", 2, 30, "0x0001");
  load();
  // A run can't reach beyond the last track. "three" may only begin at track 0, and one of its
  // tracks is higher. Track 0 is free for "pair", but not its neighbour. "over" may go beyond its
  // mask.
  EXPECT_EQ(plays("tail middle three pair over"), "0 2 0 c 3 ");
}

TEST_F(Tracks, StolenTrackPlaysTheNewSound) {
  add("pair", 2, 10, "0x0001");
  add("taker", 1, 20, "0x0001", "soft");
  add("second", 1, 20, "0x0002", "soft");
  load();
  EXPECT_EQ(play("pair"), 3U);
  EXPECT_NEAR(level_after_ms(50), 2 * LOUD, 3);
  EXPECT_EQ(play("taker"), 1U);
  EXPECT_NEAR(level_after_ms(50), LOUD + SOFT, 3) << "the pair goes on with one track";
  EXPECT_EQ(jps_players_running(), 2);
  EXPECT_EQ(play("second"), 2U);
  EXPECT_NEAR(level_after_ms(50), 2 * SOFT, 3);
  EXPECT_EQ(jps_players_running(), 2) << "a player without tracks has stopped";
  jps_stop_all();
  EXPECT_EQ(level_after_ms(50), 0);
}

TEST_F(Tracks, StolenTrackIgnoresItsFormerOwner) {
  parse(
      "PLAYLIST 1, 'x', 10, 1\nSETVOL 0, 255, 0\nSETVOL 1, 255, 0\nPLAY 0, 'loud.wav', 0\n"
      "PLAY 1, 'soft.wav', 0\nSETVOL 0, 0, 1\n[0.3] STOP 0\nSETVOL 0, 10, 0\nSETPRI 0, 255\n"
      "PLAY 0, 'short.wav', 0\nEND\n"
      "PLAYLIST 2, 'taker', 11, 1\n[0.1] SETVOL 0, 255, 0\nPLAY 0, 'loud.wav', 0\nEND\n");
  play("x");
  pass_ms(100);
  EXPECT_EQ(play("taker"), 1U);
  EXPECT_NEAR(level_after_ms(50), SOFT, 2) << "the old sound ends though no new one begins";
  pass_ms(600);
  EXPECT_EQ(volume(0), 255) << "neither ramps nor commands of the former owner";
  EXPECT_NEAR(heard.back(), LOUD + SOFT, 3);
  const SoundLock lock;
  EXPECT_EQ(jpsdrvr_track(0).priority, 11);
}

TEST_F(Tracks, SetpriProtectsATrack) {
  parse(
      "PLAYLIST 1, 'x', 10, 1\nPLAY 0, 'loud.wav', 0\nSETPRI 0, 200\nEND\n"
      "PLAYLIST 2, 'y', 100, 1\nPLAY 0, 'loud.wav', 0\nEND\n");
  EXPECT_EQ(plays("x y"), "1 0 ");
}

TEST_F(Tracks, LimitsPlayersTo32) {
  parse(
      "PLAYLIST 1, 'x', 1, 1\n[1] SIGNAL 1\nEND\n"
      "PLAYLIST 2, 'y', 1, 1\nPLAY 0, 'loud.wav', 0\nEND\n");
  EXPECT_EQ(play("z"), 0U) << "an unknown name";
  for (int i = 0; i < JPS_PLAYERS; ++i) EXPECT_EQ(play("x"), 0U) << "it needs no track";
  EXPECT_EQ(jps_players_running(), JPS_PLAYERS);
  EXPECT_EQ(play("y"), 0U) << "the 33rd";
  EXPECT_EQ(owner(0), nullptr);
  pass_ms(1010);
  EXPECT_EQ(jps_players_running(), 0);
  EXPECT_EQ(play("y"), 1U);
}
