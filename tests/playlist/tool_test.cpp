#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "sound/game_playlists.h"
#include "tests/plain_user.h"
#include "tests/playlist/stage.h"
#include "tools/playlist/check.h"
#include "tools/playlist/render.h"

namespace {

class Tool : public testing::Test {
 protected:
  void SetUp() override {
    folder.write("loud.wav", flat_wave(0.5, LOUD));
    std::filesystem::create_directory(folder.file("vox"));
    folder.write("vox/soft.wav", flat_wave(5, SOFT));
  }

  // Every playlist that the game asks for, silent.
  static std::string whole_game() {
    std::string script;
    int number = 100;
    for (const char* name : GAME_PLAYLISTS) {
      script += "PLAYLIST " + std::to_string(number++) + ", '" + name + "', 1, 1\nEND\n";
    }
    return script;
  }

  // The number of a line after whole_game().
  static std::string line(std::size_t n) {
    return std::to_string(2 * std::size(GAME_PLAYLISTS) + n);
  }

  bool check(const std::string& script) {
    folder.write("pls.txt", script);
    testing::internal::CaptureStdout();
    const bool good = check_playlist_file(folder.file("pls.txt"));
    printed = testing::internal::GetCapturedStdout();
    return good;
  }

  TempFolder folder;
  std::string printed;
};

}  // namespace

TEST_F(Tool, CheckReportsUnusedMissingAndWrongEntries) {
  const std::string sounds =
      "PLAYLIST 1, 'all', 1, 1\nPLAY 0, 'loud.wav', 1\nPLAY 0, 'vox\\soft.wav', 1\nEND\n";
  EXPECT_TRUE(check(whole_game() + sounds)) << printed;
  EXPECT_EQ(printed, folder.file("pls.txt") + ": " + std::to_string(std::size(GAME_PLAYLISTS) + 1) +
                         " playlists, 2 sounds, 0 groups; 0 errors, 0 unused\n");

  EXPECT_TRUE(check(whole_game() + "GROUP 'g', 0\nSOUND 'VOX/Soft.wav', 1\nEND\n"));
  EXPECT_NE(printed.find("unused: line " + line(1) + ": group 'g'\nunused: loud.wav\n"),
            std::string::npos);

  std::string lacking = whole_game();
  lacking.replace(lacking.find("'bgm'"), 5, "'bgn'");
  EXPECT_FALSE(check(lacking + sounds));
  EXPECT_NE(printed.find("missing: the game asks for a playlist 'bgm'\n"), std::string::npos);

  EXPECT_FALSE(check(whole_game() + "PLAYLIST 1, 'x', 300, 1\n"));
  EXPECT_NE(printed.find("'" + folder.file("pls.txt") + "'[" + line(1) +
                         "]: ERROR! priority must be in the range 0-255\n"),
            std::string::npos);

  folder.write("take00011.wav", flat_wave(0.1, LOUD));
  EXPECT_FALSE(check(whole_game() + "PLAYLIST 1, 'x', 1, 1\nPLAY 0, 'take00011.wav', 1\n"
                                    "PLAY 1, 'take11000.wav', 1\nEND\n"));
  EXPECT_NE(printed.find("line " + line(3) +
                         ": 'take11000.wav' can't be distinguished from 'take00011.wav' in line " +
                         line(2)),
            std::string::npos)
      << "the parser confuses the two silently";

  EXPECT_FALSE(check(whole_game() + "PLAYLIST 1, 'x', 1, 1\nLABEL 'here'\nGOTO 'there'\nEND\n"));
  EXPECT_NE(
      printed.find("line " + line(3) + ": GOTO 'there', but its playlist has no such LABEL\n"),
      std::string::npos);
}

TEST_F(Tool, NamesFilesItCannotRead) {
  const std::string sounds = "PLAYLIST 1, 'all', 1, 1\nPLAY 0, 'loud.wav', 1\nEND\n";
  std::filesystem::create_directory(folder.file("vox/shut"));
  folder.write("secret.txt", sounds);
  for (const char* name : {"vox/shut", "secret.txt"}) chmod(folder.file(name).c_str(), 0);
  const auto complaint = [this](const std::string& name) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(check_playlist_file(folder.file(name)));
    EXPECT_FALSE(render_playlists({folder.file(name), {{"all", 0}}, 1, folder.file("never.wav")}));
    return testing::internal::GetCapturedStderr();
  };
  const auto twice = [this](const std::string& name, const std::string& why) {
    const std::string line = "playlist: " + folder.file(name) + ": " + why + "\n";
    return line + line;
  };
  const PlainUser user(folder.path());
  ASSERT_TRUE(user.changed());
  EXPECT_EQ(complaint("none.txt"), twice("none.txt", "No such file or directory"));
  EXPECT_EQ(complaint("vox"), twice("vox", "Is a directory"));
  EXPECT_EQ(complaint("secret.txt"), twice("secret.txt", "Permission denied"));
  EXPECT_TRUE(check(whole_game() + sounds)) << printed;
  EXPECT_NE(printed.find("not read: " + folder.file("vox/shut") +
                         ": Permission denied\nunused: vox/soft.wav\n"),
            std::string::npos)
      << printed;
}

TEST_F(Tool, RendersPlaylistsToWaveFile) {
  folder.write("pls.txt",
               "PLAYLIST 1, 'loud', 1, 1\nSETVOL 0, 255, 0\nPLAY 0, 'loud.wav', 1\nEND\n"
               "PLAYLIST 2, 'soft', 1, 2\nSETVOL 0, 255, 0\nPLAYS 0, 'vox\\soft.wav', 1\nEND\n");
  const RenderOptions options{
      folder.file("pls.txt"), {{"loud", 0}, {"soft", 0.25}}, 2, folder.file("out.wav")};
  testing::internal::CaptureStdout();
  EXPECT_TRUE(render_playlists(options));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            folder.file("out.wav") + ": 2.000 s, peak -10.3 dB, 1 playlists still playing\n");
  const std::string wave = folder.read("out.wav");
  ASSERT_EQ(wave.size(), 44U + 2 * 44100 * 4);
  EXPECT_EQ(wave.substr(0, 12), "RIFF" + le32(36 + 2 * 44100 * 4) + "WAVE");
  EXPECT_EQ(wave.substr(20, 16), wave_format(2));
  const auto level = [&wave](double second) {
    const std::size_t at = 44 + 4 * static_cast<std::size_t>(second * 44100);
    return static_cast<std::int16_t>(static_cast<unsigned char>(wave[at]) |
                                     static_cast<unsigned char>(wave[at + 1]) << 8);
  };
  EXPECT_NEAR(level(0.2), LOUD, 2);
  EXPECT_NEAR(level(0.4), LOUD + SOFT, 2);
  EXPECT_NEAR(level(0.6), SOFT, 2);
  EXPECT_NEAR(level(1.9), SOFT, 2);
  EXPECT_FALSE(render_playlists({options.script, {{"none", 0}}, 1, folder.file("x.wav")}));
  testing::internal::CaptureStdout();
  EXPECT_FALSE(render_playlists({options.script, {{"loud", 20}}, 1, folder.file("x.wav")}));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "'loud' at 20.000 s would never start: --for ends at 1.000 s\n");
  EXPECT_FALSE(std::filesystem::exists(folder.file("x.wav")));
  EXPECT_FALSE(render_playlists({options.script, {{"loud", 0}}, 1, folder.file("no/x.wav")}));
}

// Calls like cue_play("name") and jps_bank_play_name("name").
TEST(GamePlaylists, ContainEveryNameUsedInSources) {
  int found = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator("src")) {
    if (entry.path().extension() != ".cpp" || entry.path().parent_path() == "src/sound") continue;
    std::ifstream stream(entry.path());
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    for (std::size_t at = 1; (at = text.find("play", at)) != std::string::npos; ++at) {
      const std::size_t quote = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz_(", at);
      if (quote == std::string::npos || text[quote] != '"' || text[quote - 1] != '(' ||
          std::isalpha(static_cast<unsigned char>(text[at - 1])) != 0) {
        continue;
      }
      const std::string name = text.substr(quote + 1, text.find('"', quote + 1) - quote - 1);
      EXPECT_NE(std::ranges::find(GAME_PLAYLISTS, name), std::end(GAME_PLAYLISTS))
          << name << " in " << entry.path();
      ++found;
    }
  }
  EXPECT_GT(found, 20);
}
