// The kit's script: what the playlist tool checks, and rules that it doesn't know.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "sound/game_playlists.h"
#include "tests/sound_kit/kit.h"

namespace {

// The shortest pause of the game between this line and the next.
double gap_after(const std::string& voice) {
  const std::set<std::string> long_gap = {"voxchatter", "voxeatbugsattract", "voxwinticketsattract",
                                          "voxwin", "voxtickets"};
  return long_gap.count(voice) ? 2.5 : 2.0;
}

struct Block {
  std::string head;
  std::vector<std::string> lines;
};
using Blocks = std::map<std::string, Block>;

// Blocks that begin with the keyword, by name.
Blocks blocks(const std::string& keyword) {
  Blocks found;
  Block* open = nullptr;
  bool other = false;
  for (const std::string& line : script_lines()) {
    const bool playlist = line.starts_with("PLAYLIST "), group = line.starts_with("GROUP ");
    if (playlist || group) {
      open = nullptr;
      other = !line.starts_with(keyword);
      if (!other) open = &(found[in_quotes(line).at(0)] = {line, {}});
    } else if (open && !other) {
      open->lines.push_back(line);
    }
    if (line == "END" || line.ends_with("] END")) open = nullptr;
  }
  return found;
}

double seconds_of(const std::string& file) {
  const Heard wave = hear(kit_folder() + "/" + file);
  return wave.rate ? static_cast<double>(wave.frames()) / wave.rate : 0;
}

TEST(Script, PassesPlaylistCheck) {
  const std::string found = testing::TempDir() + "sound-kit-check-" + std::to_string(getpid());
  const std::string command = PLAYLIST_TOOL " check " + kit_folder() + "/mainpls.txt >" + found;
  EXPECT_EQ(std::system(command.c_str()), 0) << bytes_of(found);
  EXPECT_NE(bytes_of(found).find(" 0 errors, 0 unused"), std::string::npos) << bytes_of(found);
  const std::string count = ": " + std::to_string(std::size(GAME_PLAYLISTS)) + " playlists";
  EXPECT_NE(bytes_of(found).find(count), std::string::npos) << "a playlist the game never asks for";
}

TEST(Script, SetsVolumeBeforePlaying) {
  for (const auto& [name, block] : blocks("PLAYLIST")) {
    bool set = false, played = false;
    for (const std::string& line : block.lines) {
      set |= line.starts_with("SETVOL 0, ");
      if (line.find("PLAY") == std::string::npos) continue;
      played = true;
      EXPECT_TRUE(set) << name << ": " << line;
    }
    EXPECT_TRUE(played) << name << " plays nothing";
  }
}

TEST(Script, UnducksMusicBetweenVoices) {
  const Blocks groups = blocks("GROUP");
  for (const auto& [name, block] : blocks("PLAYLIST")) {
    if (!name.starts_with("vox")) continue;
    std::string group;
    double now = 0, up_at = 0, ended = 0;
    std::map<std::string, int> ducked;  // by driver track
    for (const std::string& line : block.lines) {
      std::string command = line;
      if (line[0] == '[') {
        const size_t close = line.find(']');
        ASSERT_NE(close, std::string::npos) << line;
        now = line[1] == '+' ? now + std::stod(line.substr(2)) : std::stod(line.substr(1));
        command = line.substr(line.find_first_not_of(' ', close + 1));
      }
      if (command.starts_with("PLAYGROUP")) group = in_quotes(command).at(0);
      if (command.starts_with("DUCK ")) ducked[command.substr(5, 1)]++;
      if (command.starts_with("UNDUCK ")) {
        ducked[command.substr(7, 1)]--;
        up_at = now;
        ended = std::max(ended, now + std::stod(command.substr(command.rfind(',') + 1)));
      }
      if (command == "END") {
        EXPECT_GE(now, ended) << name << ": the list ends before the music is restored";
      }
    }
    for (const auto& [track, open] : ducked) EXPECT_EQ(open, 0) << name << " on track " << track;
    EXPECT_LT(now, gap_after(name)) << name << " runs into the next line";
    ASSERT_TRUE(groups.count(group)) << name;
    EXPECT_GE(groups.at(group).lines.size(), 3u + 1) << group << ": too few lines to be fun";
    if (ducked.empty()) continue;
    for (const std::string& line : groups.at(group).lines)
      for (const std::string& file : in_quotes(line))
        EXPECT_LE(seconds_of(file), up_at) << file << " is longer than the music is down";
  }
}

TEST(Script, VoiceGroupsDoNotRepeat) {
  for (const auto& [name, block] : blocks("GROUP")) {
    const int no_repeat = std::stoi(block.head.substr(block.head.rfind(',') + 1));
    EXPECT_GE(no_repeat, 1) << name;
    EXPECT_LT(no_repeat, static_cast<int>(block.lines.size()) - 1) << name;
  }
}

// Only music is long.
TEST(Script, StreamsMusicOnly) {
  for (const std::string& line : script_lines()) {
    if (line.find("PLAY") == std::string::npos || line.starts_with("PLAYLIST")) continue;
    for (const std::string& file : in_quotes(line))
      if (file.ends_with(".wav")) {
        EXPECT_EQ(line.find("PLAYS ") != std::string::npos, file.starts_with("music_")) << line;
      }
  }
}

}  // namespace
