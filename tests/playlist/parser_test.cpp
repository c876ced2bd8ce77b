#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sound/playlist_expressions.h"
#include "sound/playlist_lines.h"
#include "tests/playlist/stage.h"

namespace {

std::string error(int line, const std::string& message) {
  return "[" + std::to_string(line) + "]: ERROR! " + message + "\n";
}

struct Refusal {
  std::string message;  // of each line; "": it is taken
  std::vector<std::string> lines;
};

class Parser : public Stage {
 protected:
  // What is printed for these lines behind `head`, without what the first pass says.
  void expect_refused(const std::vector<Refusal>& rows, const std::string& head,
                      const std::string& foot) {
    int number = static_cast<int>(std::ranges::count(head, '\n'));
    std::string script = head, expected;
    for (const auto& [message, lines] : rows) {
      for (const std::string& line : lines) {
        script += line + "\n";
        ++number;
        if (!message.empty()) expected += error(number, message);
      }
    }
    ASSERT_NE(parse(script + foot), nullptr);
    std::istringstream all(printed);
    std::string later;
    for (std::string line; std::getline(all, line);) {
      if (line.find("bad quote string") == std::string::npos) later += line + "\n";
    }
    EXPECT_EQ(later, expected);
  }

  // Everything that a command holds and isn't 0.
  std::string text_of(const JpsCommand& command) const {
    const std::pair<const char*, std::int64_t> words[] = {
        {"if", command.condition},
        {"track", command.track},
        {"value", command.value},
        {"ms", std::lround(command.seconds * 1000)},
        {"sound", command.sound == nullptr ? 0 : command.sound - bank->sounds + 1},
        {"group", command.group == nullptr ? 0 : command.group - bank->groups + 1},
        {"loop", command.loop},
        {"count", command.count},
        {"key", command.key.low | command.key.high},
        {"number", command.number}};
    std::string text =
        std::to_string(command.opcode) + " at " + std::to_string(std::lround(command.time * 1000));
    for (const auto& [name, value] : words) {
      if (value != 0) text += std::string(", ") + name + " " + std::to_string(value);
    }
    return text;
  }
};

}  // namespace

TEST_F(Parser, KeepsEveryCommandWithItsOperands) {
  const JpsKey label = jps_key("a, b; c");
  const std::string key = ", key " + std::to_string(label.low | label.high);
  const std::pair<const char*, std::string> rows[] = {
      {"  PLAY 2, \x91loud.wav', 1", "2 at 0, track 2, sound 2, loop 1"},
      {"\tPLAYS 0x3 , 'soft.wav' ,-1 ; for ever, 'loud'", "2 at 0, track 3, sound 3, loop -1"},
      {"[1.5] SETVOL 2, VOL + 100, 0.25", "4 at 1500, track 2, value 116, ms 250"},
      {"[+.5]\tLOOPSTART 0", "5 at 2000, count -1"},
      {"LOOPEND", "6 at 2000"},
      {"DUCK 010, 30, 1", "7 at 2000, track 8, value 30, ms 1000"},  // may be octal
      {"UNDUCK 8, 2", "8 at 2000, track 8, ms 2000"},
      {"SETPAN 1, -100, 0", "10 at 2000, track 1, value 65436"},
      {"SETFREQ 1, 22050, 0", "11 at 2000, track 1, value 22050"},
      {"SIGNAL 65535", "12 at 2000, number 65535"},
      {"GOTO 'a, b; c'", "13 at 2000" + key},
      {"LABEL 'a, b; c'", "15 at 2000" + key},
      {"ONMARKER 3 MARKER 2047", "16 at 2000, if 196609, number 2047"},  // 0x30001
      {"ONSMARKER 2047 PLAYGROUP 1, 'g', 0", "17 at 2000, if 134152194, track 1, group 1"},
      {"SETPRI 1, VOL", "18 at 2000, track 1, value 16"},
      {"DUCK 1, 0, 0", "7 at 2000, track 1"},
      {"SETVOL 1, 0, 0", "4 at 2000, track 1"},
      {"SETPRI 1, 0", "18 at 2000, track 1"},
      {"STOP 15", "3 at 2000, track 15"},
      {"END of it", "1 at 2000"},
  };
  std::string script =
      "CONSTANT VOL 0x10\nGROUP 'g', 0\n SOUND 'short.wav', 1\nEND\nVOL_ATTEN\n"
      "PLAYLIST 7, 'seven', VOL+4-1, 0X3\n";
  for (const auto& [line, text] : rows) script += std::string(line) + "\n";
  ASSERT_NE(parse(script), nullptr);
  EXPECT_EQ(printed, "");
  ASSERT_EQ(bank->command_count, std::size(rows));
  const JpsCommand* command = bank->commands;
  for (const auto& [line, text] : rows) EXPECT_EQ(text_of(*command++), text) << line;
  EXPECT_TRUE(bank->volume_attenuation);
  ASSERT_EQ(bank->playlist_count, 1U);
  const JpsPlaylist& playlist = bank->playlists[0];
  EXPECT_EQ(playlist.first_command, bank->commands);
  EXPECT_EQ(playlist.command_count, std::size(rows));
  EXPECT_EQ(playlist.number, 7);
  EXPECT_EQ(playlist.key, jps_key("seven"));
  EXPECT_EQ(playlist.priority, 19);
  EXPECT_EQ(playlist.track_mask, 3);
  EXPECT_EQ(playlist.tracks_needed, 4U) << "STOP and SETPAN need no track";
  EXPECT_EQ(bank->sounds[1].key, jps_key("loud.wav"));
  EXPECT_EQ(bank->sounds[1].streamed, 0);
  EXPECT_EQ(bank->sounds[1].file, nullptr);
  EXPECT_EQ(bank->sounds[2].streamed, 1);
  EXPECT_EQ(bank->sounds[2].length, 882000U);
}

TEST_F(Parser, CommandTimesIncludeOffsetsAndWaits) {
  folder.write("sounds/stereo.wav", riff(wave_chunk("fmt ", wave_format(2)) +
                                         wave_chunk("data", std::string(44100, '\0'))));
  ASSERT_NE(parse_lines("[2.0] SIGNAL 1\n"
                        "[1.5] SIGNAL 2\n"
                        "[+1.5] SIGNAL 3\n"
                        "[4] PLAY 0, 'short.wav', 1\n"
                        "WAITFOR 0\n"
                        "SETVOL 0, 10, 2\n"
                        "WAITFOR 0\n"
                        "SIGNAL 4\n"
                        "DUCK 5, 10, 1.5\n"
                        "[+1] WAITFOR 5\n"
                        "SIGNAL 5\n"
                        "PLAY 1, 'stereo.wav', 1\n"
                        "WAITFOR 1\n"
                        "SIGNAL 6\n"),
            nullptr);
  EXPECT_EQ(printed, error(3, "time is less than previous command, ignoring command"));
  const float expected[] = {2,    3.5F, 4,    4,    4.2F, 4.2F,  6.2F,
                            6.2F, 7.2F, 7.7F, 7.7F, 7.7F, 7.95F, 7.95F};
  ASSERT_EQ(bank->command_count, std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_FLOAT_EQ(bank->commands[i].time, expected[i]) << i;
  }
}

TEST_F(Parser, RefusedCommandsAreReportedWithLineAndReason) {
  const std::string track = "Track number too high! Must be less than 16";
  const std::string loop =
      "the loop operand is missing: 1 plays the sound once, any other value repeats it";
  const std::string string = "Syntax error: string must surrounded by single quotes";
  const std::vector<Refusal> rows = {
      {"Syntax error after '['", {"[", "[ 1] STOP 1", "[\t1] STOP 1"}},
      {"invalid time value, ignoring command", {"[x] STOP 1", "[1e99] STOP 1"}},
      {"missing closing ']' after time, ignoring command", {"[1 STOP 1"}},
      {"time is less than previous command, ignoring command", {"[-1] STOP 1"}},
      {"PLAY requires arguments", {"PLAY"}},
      {"Too few arguments to PLAY", {"PLAY 1", "PLAYS 1,"}},
      {"'x' is not a whole number", {"PLAY x, 'loud.wav', 1"}},
      {track, {"PLAY 16, 'loud.wav', 1", "PLAY 99999999999999999999, 'loud.wav', 1"}},
      {string, {"PLAY 1, loud.wav, 1", "PLAY 1, 'loud.wav' 1", "PLAY 1, 'loud.wav, 1"}},
      {loop, {"PLAY 1, 'loud.wav'"}},
      {"couldn't open sound file 'none.wav'", {"PLAY 1, 'none.wav', 1"}},
      {R"(couldn't open sound file '..\sounds\loud.wav')", {R"(PLAY 1, '..\sounds\loud.wav', 1)"}},
      {"Too few arguments to PLAYGROUP", {"PLAYGROUP", "PLAYGROUP 1"}},
      {"PLAYGROUP: invalid group name 'g'", {"PLAYGROUP 1, 'g', 1"}},
      {"Too few arguments to STOP", {"STOP", "STOP ;1"}},
      {"Too few arguments to WAITFOR", {"WAITFOR"}},
      {"'WAITFOR' without 'PLAY'", {"WAITFOR 1"}},
      {"No arguments!", {"LOOPSTART", "SETVOL", "SETPRI"}},
      {"Loop count must be 0 or more; 0 runs for ever", {"LOOPSTART -2"}},
      {"Not enough arguments!", {"SETVOL 1", "SETPRI 1"}},
      {"Volume must be in the range 0-255",
       {"SETVOL 1, 256, 0", "SETVOL 1, 1-2, 0", "DUCK 1, 256, 0"}},
      {"Ramp time must be positive", {"SETVOL 1, 5, -0.1"}},
      {"'soon' is not a number of seconds", {"SETVOL 1, 5, soon"}},
      {"'inf' is not a number of seconds", {"SETVOL 1, 5, inf"}},
      {"Priority must be in the range 0-255", {"SETPRI 1, 256"}},
      {"Too few arguments to SETPAN", {"SETPAN 1, 0"}},
      {"Too few arguments to SETFREQ", {"SETFREQ 1"}},
      {"Value must be in the range -32768 to 65535", {"SETFREQ 1, 70000, 0"}},
      {"Too few arguments to DUCK", {"DUCK"}},
      {"NOT ENOUGH ARGUMENTS", {"UNDUCK 1"}},
      {"Too few arguments to SIGNAL", {"SIGNAL"}},
      {"Signal number too high! Must be less than 65536", {"SIGNAL 65536"}},
      {"Too few arguments to MARKER", {"MARKER"}},
      {"Marker number too high! Must be less than 2048", {"MARKER 2048"}},
      {"ONSMARKER needs a marker number, not 'STOP'", {"ONSMARKER STOP 1"}},
      {"Too few arguments to GOTO", {"GOTO"}},
  };
  expect_refused(rows, "PLAYLIST 1, 'x', 1, 1\nLABEL 'GROUP'\n", "END\n");
  EXPECT_EQ(bank->command_count, 2U) << "refused lines leave no command";
  EXPECT_EQ(bank->playlists[0].tracks_needed, 0U);
  EXPECT_EQ(bank->sound_count, 0U) << "and no sound";
}

TEST_F(Parser, RefusedStatementsAreReportedWithLineAndReason) {
  const std::string name = "Syntax error: string must surrounded by single quotes";
  const std::string long_name(53, 'N');
  const std::string bad_name =
      "A constant's name must not begin with a digit or contain '+', '-' or ','";
  const std::vector<Refusal> rows = {
      {"not enough args to PLAYLIST", {"PLAYLIST", "PLAYLIST ;1, 'a', 1, 1"}},
      {"'x' is not a whole number", {"PLAYLIST x, 'a', 1, 1"}},
      {name, {"PLAYLIST 1"}},
      {"priority must be in the range 0-255",
       {"PLAYLIST 1, 'a', 256, 1", "PLAYLIST 1, 'a', 0-1, 1"}},
      {"trackmask must be non-zero", {"PLAYLIST 1, 'a', 1, 2-2"}},
      {"trackmask must be in the range 0x1-0xFFFF", {"PLAYLIST 1, 'a', 1, 0x10000"}},
      {name, {"GROUP"}},
      {"Couldn't get repeat number", {"GROUP 'g'"}},
      {"no-repeat count must not be negative", {"GROUP 'g', -1"}},
      {"No arguments to CONSTANT!", {"CONSTANT"}},
      {"CONSTANT needs a value after its name", {"CONSTANT A"}},
      {"A constant's name must not be longer than 52 characters", {"CONSTANT " + long_name + " 1"}},
      {bad_name, {"CONSTANT 5A 1", "CONSTANT A-B 1"}},
      {"", {"CONSTANT TWICE 1"}},
      {"constant 'TWICE' has a value already", {"CONSTANT TWICE 2"}},
      {"", {"[0] VOL_GAIN", "[0.5] VOL_GAIN"}},
      {"nonzero time before playlist call!", {"PLAYLIST 1, 'a', 1, 1"}},
  };
  expect_refused(rows, "", "");
  EXPECT_EQ(bank->playlist_count, 0U);
  EXPECT_EQ(bank->group_count, 0U);
}

TEST_F(Parser, PlaylistHasDefaultPriorityAndMask) {
  parse("PLAYLIST 1, 'a'\nEND\nPLAYLIST 2, 'b', 3\nEND\n");
  EXPECT_EQ(printed, error(1, "no priority arg") + error(3, "no trackmask arg"));
  ASSERT_EQ(bank->playlist_count, 2U);
  EXPECT_EQ(bank->playlists[0].priority, 0x80);
  EXPECT_EQ(bank->playlists[0].track_mask, 0xFF);
  EXPECT_EQ(bank->playlists[1].priority, 3);
  EXPECT_EQ(bank->playlists[1].track_mask, 0xFF);
}

TEST_F(Parser, UnknownKeywordEndsParsing) {
  parse(
      "PLAYLIST 1, 'a', 1, 1\nSIGNAL 1\nPLAYLIST 9, 'in', 1, 1\nEND\n"
      "PLAYLIST 2, 'b', 1, 1\nEND\n");
  EXPECT_EQ(printed, error(3, "invalid opcode 'PLAYLIST'") +
                         error(3, "Last command must be 'END' and must end with EOL") +
                         error(4, "invalid opcode 'END'"));
  EXPECT_EQ(bank->playlist_count, 1U);
  EXPECT_EQ(messages, 3);

  parse("PLAYLIST 1, 'a', 1, 1\nEND\nPLAYLIST 1, 'b', 1, 1\nSIGNAL 1\nEND\nVOL_ATTEN\n");
  EXPECT_EQ(printed,
            error(3, "duplicate playlist number, ignoring") + error(4, "invalid opcode 'SIGNAL'"));
  EXPECT_FALSE(bank->volume_attenuation);

  parse("PLAYLIST 1, 'a', 1, 1\nEND\nPLAYLIST 2, 'a', 1, 1\nEND\n[1]\n");
  EXPECT_EQ(printed, error(3, "duplicate playlist name 'a', only the first is used") +
                         error(5, "invalid opcode ''"));
  EXPECT_EQ(jps_find_playlist(*bank, jps_key("a"))->number, 1);
}

TEST_F(Parser, ReadsBlankCommentLongAndUnterminatedLines) {
  const std::string fits = "SIGNAL 1 ;" + std::string(244, '-');
  ASSERT_EQ(fits.size(), PLAYLIST_LINE_MAX);
  parse("\n \t \n; PLAY\n  ;\nPLAYLIST 1, 'a', 1, 1\r\n" + fits + "\n" + fits + "-\r\nEND\r\n");
  EXPECT_EQ(printed, error(7, "line is longer than 254 characters, ignoring it"));
  EXPECT_EQ(bank->command_count, 2U);
  EXPECT_EQ(bank->command_capacity, 4U) << "blank lines and comments are not counted";

  parse("PLAYLIST 1, 'a', 1, 1\nSIGNAL 1\nEND");
  EXPECT_EQ(printed, error(2, "Last command must be 'END' and must end with EOL") +
                         error(3, "the last line has no end of line and is not read"));
  parse("");
  EXPECT_EQ(printed, "");
  parse(std::string("\0PLAY\n[\0]\n", 10));
  EXPECT_EQ(messages, 2) << "the first line is lost, and the rest with it";
  EXPECT_EQ(parse(std::string(PLAYLIST_FILE_MAX + 1, '\n')), nullptr);
  EXPECT_EQ(playlist_parse(R"(sounds\none.txt)"), nullptr);
}

TEST_F(Parser, FirstPassCountsKeywordsAndReportsSoundsWithoutTwoQuotes) {
  parse(
      "PLAYLIST 1, 'PLAY'\n"       // a playlist
      "PLAY 1, 'x', 1\n"           // a sound
      "PLAY 1, 'x', 1\n"           // the same again counts
      "; PLAY 'not'\n\n"           // nothing
      "STOP 1 ; after the PLAY\n"  // counts as a sound, and lacks a string
      "SOUND 'PLAYLIST', 1\n"      // a playlist and a sound of a group
      "SOUND 'y, 1 ; GROUP\n"      // a sound with one quote, also of a group
      "GROUP 'g', 1\n"             // a group
      "PLAYGROUP 1, 'g', 1\n"      // a sound, since it begins with PLAY
      "CONSTANT GROUPS 1\n");      // a group
  const std::string bad = error(6, "bad quote string") + error(8, "bad quote string");
  EXPECT_EQ(printed.substr(0, bad.size()), bad);
  EXPECT_EQ(bank->command_capacity, 9U);
  EXPECT_EQ(bank->playlist_capacity, 2U);
  EXPECT_EQ(bank->sound_capacity, 5U);
  EXPECT_EQ(bank->group_capacity, 2U);
  EXPECT_EQ(bank->group_sound_capacity, 2U);
  std::string many;
  for (int i = 0; i < 2100; ++i) many += "PLAY 1, 'x', 1\n";
  parse(many);
  EXPECT_EQ(bank->sound_capacity, JPS_MAX_SOUND_NAMES);
}

TEST_F(Parser, GroupsNormalizeWeightsAndLimitNoRepeat) {
  wave("third", 0.1, 1);
  parse(
      "GROUP 'two', 5\nSOUND 'loud.wav', 1\nSOUND 'soft.wav', 1\nEND\n"
      "GROUP 'three', 3\nSOUND 'loud.wav', 1\nSOUND 'soft.wav', 1\nSOUND 'none.wav', 1\n"
      "SOUND 'third.wav', 2\nEND\n"
      "GROUP 'two', 0\nSOUND 'loud.wav', 0\nSOUND 'loud.wav', -1\nSOUND 'loud.wav'\nEND\n"
      "GROUP 'none', 3\nEND\n"
      "GROUP 'open', 0\nPLAY 1, 'loud.wav', 1\n");
  EXPECT_EQ(printed,
            error(8, "couldn't open sound file 'none.wav'") +
                error(11, "duplicate group name 'two', only the first is used") +
                error(13, "Weight must not be negative") + error(14, "Too few arguments to SOUND") +
                error(15, "group has no sound to pick") + error(17, "group has no sound to pick") +
                error(19, "invalid opcode 'PLAY'") +
                error(19, "A group must end with 'END' and EOL") +
                error(19, "group has no sound to pick"));
  EXPECT_EQ(bank->groups[0].no_repeat, 1U);
  EXPECT_EQ(bank->groups[3].no_repeat, 0U);
  const JpsGroup& three = bank->groups[1];
  ASSERT_EQ(three.sound_count, 3U);
  EXPECT_EQ(three.no_repeat, 2U);
  EXPECT_EQ(three.sounds[0].weight, 0.25F);
  EXPECT_EQ(three.sounds[1].weight, 0.25F);
  EXPECT_EQ(three.sounds[2].weight, 0.5F);
  EXPECT_EQ(three.sounds[0].sound, bank->groups[0].sounds[0].sound) << "loaded once";
  EXPECT_EQ(bank->sound_count, 3U);

  std::string twelve = "GROUP 'twelve', 11\n";
  for (int i = 0; i < 12; ++i) twelve += "SOUND 'loud.wav', 1\n";
  parse(twelve + "END\nGROUP 'PLAYERS', 0\n");
  EXPECT_NE(printed.find("at most 10 picks are kept from repeating"), std::string::npos);
  EXPECT_NE(printed.find("too many groups"), std::string::npos);
  EXPECT_EQ(bank->groups[0].no_repeat, 10U);
}

TEST_F(Parser, EvaluatesConstantsAndSums) {
  JpsConstants constants;
  constants.rows[constants.count++] = {"A", 5};
  constants.rows[constants.count++] = {"B C", -7};
  struct Row {
    const char* text;
    std::int32_t value;
    const char* unknown;
  };
  for (const Row& row :
       {Row{"12", 12, ""}, Row{"010", 10, ""}, Row{"0x1f", 31, ""}, Row{"0X1F-1", 30, ""},
        Row{"A+A", 10, ""}, Row{" A - 1 ", 4, ""}, Row{"-A", -5, ""}, Row{"B C+1", -6, ""},
        Row{"a", 4096, "a"}, Row{"", 4096, ""}, Row{"1+", 4096, ""}, Row{"1--1", 4096, ""},
        Row{"0x", 4096, "0x"}, Row{"12x+1", 4096, "12x"}, Row{"99999999999", 2147483647, ""},
        Row{"99999999999999999999999999", 2147483647, ""},
        Row{"0-0xFFFFFFFFFFFFFFFFFF-1", -2147483647 - 1, ""}}) {
    std::int32_t value = 0;
    std::string_view unknown;
    const bool known = playlist_expression(row.text, constants, value, unknown);
    EXPECT_EQ(value, row.value) << row.text;
    EXPECT_EQ(unknown, row.unknown) << row.text;
    EXPECT_EQ(known, row.value != 4096) << row.text;
  }
  parse(
      "CONSTANT A 100\nCONSTANT B A+0x10 ; more\nPLAYLIST 1, 'x', B, A\n"
      "SETVOL 0, B-A, 0\nSETVOL 0, LOUD, 0\nEND\n");
  EXPECT_EQ(printed, "INVALID SYMBOL: 'LOUD'\n" + error(5, "Volume must be in the range 0-255"));
  EXPECT_EQ(bank->playlists[0].priority, 116);
  EXPECT_EQ(bank->playlists[0].track_mask, 100);
  EXPECT_EQ(bank->commands[0].value, 16);

  std::string many;
  for (int i = 0; i < 65; ++i) many += "CONSTANT N" + std::to_string(i) + " 1\n";
  parse(many);
  EXPECT_EQ(printed, error(65, "Too many constants (must not be greater than 64)"));
  parse("CONSTANT C A\nPLAYLIST 1, 'x', 1, C+D\nEND\n");
  EXPECT_EQ(printed, "INVALID SYMBOL: 'A'\n" +
                         error(1, "constant 'C' has an unknown name in its value") +
                         "INVALID SYMBOL: 'D'\n" + error(2, "trackmask contains an unknown name"));
  parse("PLAYLIST 1, 'x', A, 1\n");
  EXPECT_NE(printed.find("INVALID SYMBOL: 'A'"), std::string::npos)
      << "constants of the last file are gone";
}

TEST_F(Parser, FindsWavesInAnyCase) {
  std::filesystem::create_directory(folder.file("sounds/Vox"));
  wave("Vox/Deep", 0.1, LOUD);
  parse_lines("PLAY 0, 'LOUD.WAV', 1\nPLAYS 0, 'vox\\deep.Wav', 1\nPLAY 0, 'lou.wav', 1\n");
  EXPECT_EQ(printed, error(4, "couldn't open sound file 'lou.wav'"));
  EXPECT_EQ(bank->sound_count, 2U);
}

TEST_F(Parser, StreamsBySizeAndFirstUse) {
  const auto sized = [this](const std::string& name, std::uint32_t bytes) {
    folder.write("sounds/" + name, riff(wave_chunk("fmt ", wave_format()) +
                                        wave_chunk("data", std::string(bytes, '\0'))));
  };
  sized("whole.wav", 0x400000);
  sized("large.wav", 0x400002);
  parse(
      "GROUP 'g', 0\nSOUND 'large.wav', 1\nEND\nPLAYLIST 1, 'x', 1, 1\n"
      "PLAY 0, 'whole.wav', 1\nPLAYS 0, 'large.wav', 1\nPLAYS 0, 'soft.wav', 1\n"
      "PLAY 0, 'soft.wav', 1\nEND\n");
  EXPECT_EQ(printed, "");
  EXPECT_EQ(bank->sound_count, 3U);
  EXPECT_EQ(bank->commands[0].sound->streamed, 0);
  EXPECT_EQ(bank->commands[1].sound->streamed, 0) << "a group's sound was loaded";
  EXPECT_EQ(bank->commands[3].sound->streamed, 1);
  parse_lines("PLAY 0, 'large.wav', 1\n");
  EXPECT_EQ(bank->commands[0].sound->streamed, 1);
}

TEST_F(Parser, BankIsFoundUntilItIsFreed) {
  EXPECT_EQ(play("a"), 0U);
  parse("PLAYLIST 1, 'a', 1, 1\nPLAY 0, 'loud.wav', 0\nEND\n");
  EXPECT_EQ(play("a"), 1U);
  jps_bank_free(bank);
  EXPECT_EQ(jps_players_running(), 0);
  EXPECT_EQ(play("a"), 0U) << "a freed bank is not found";
  EXPECT_EQ(level_after_ms(50), 0);
  const std::string script = "PLAYLIST 1, 'a', 1, 1\nPLAY 0, 'loud.wav', 0\nEND\n";
  std::vector<JpsBank*> banks;
  for (int i = 0; i < JPS_BANKS; ++i) banks.push_back(parse_beside(script, "sounds/mainpls.txt"));
  JpsBank* const last = parse_beside(script);
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(play("a"), 0U) << "no place in the table";
  EXPECT_EQ(jps_bank_play(*last, 1), 1U) << "but its owner can play it";
  jps_bank_free(banks[7]);
  parse_beside(script);
  EXPECT_EQ(play("a"), 1U) << "in the place that was freed";
  jps_bank_free(last);
}
