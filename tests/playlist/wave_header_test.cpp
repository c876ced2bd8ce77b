#include "sound/wave_header.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>

#include "tests/playlist/stage.h"

namespace {

using WaveHeader = Stage;

}  // namespace

TEST_F(WaveHeader, FindsFormatAndSamplesBetweenOtherChunks) {
  // An odd chunk is followed by no byte of padding.
  const std::string before = wave_chunk("bext", "odd") +
                             wave_chunk("fmt ", wave_format(2, 22050, 8) + "xx") +
                             wave_chunk("LIST", std::string(1000, 'd'));
  folder.write("a.wav", riff(before + wave_chunk("data", "12345678")));
  ReadFile* const file = read_open("a.wav");
  WaveInfo info;
  std::uint32_t offset = 0;
  ASSERT_TRUE(read_wav_header(info, file, offset));
  read_close(file);
  EXPECT_EQ(info.data_size, 8U);
  EXPECT_EQ(offset, 12 + before.size() + 8);
  EXPECT_EQ(info.format.format_tag, 1);
  EXPECT_EQ(info.format.channels, 2);
  EXPECT_EQ(info.format.sample_rate, 22050U);
  EXPECT_EQ(info.format.average_bytes, 44100U);
  EXPECT_EQ(info.format.block_align, 2);
  EXPECT_EQ(info.format.bits, 8);
}

TEST_F(WaveHeader, DamagedFilesAreReportedAndRefused) {
  const std::string data = wave_chunk("data", std::string(1000, '\1'));
  const auto with = [&data](const std::string& format) {
    return riff(wave_chunk("fmt ", format) + data);
  };
  const std::pair<std::string, const char*> files[] = {
      {"", "it is not a wave file"},
      {"RIFF", "it is not a wave file"},
      {std::string(100'000, '\0'), "it is not a wave file"},
      {riff(data), "it is not a wave file"},
      {riff(wave_chunk("fmt ", wave_format())), "it is not a wave file"},
      {"RIFF" + le32(0xFFFFFFFF) + "WAVEjunk" + le32(0xFFFFFFFF) + "data", "it is not a wave file"},
      {riff("fmt " + le32(0xFFFFFFFF) + wave_format()), "it is not a wave file"},
      {with(""), "it is not plain PCM"},
      {with(wave_format(1, 44100, 16, 3)), "it is not plain PCM"},
      {with(wave_format(0)), "it has neither 1 nor 2 channels"},
      {with(wave_format(3)), "it has neither 1 nor 2 channels"},
      {with(wave_format(1, 99)), "its sample rate is not in the range 100-100000"},
      {with(wave_format(1, 100001)), "its sample rate is not in the range 100-100000"},
      {with(wave_format(1, 44100, 0)), "its samples have neither 8 nor 16 bits"},
      {with(wave_format(1, 44100, 24)), "its samples have neither 8 nor 16 bits"},
      {riff(wave_chunk("fmt ", wave_format()) + wave_chunk("data", "")), "it has no samples"},
  };
  for (const auto& [bytes, reason] : files) {
    folder.write("sounds/bad.wav", bytes);
    parse("PLAYLIST 1, 'x', 1, 1\nPLAYS 0, 'bad.wav', 1\nPLAY 1, 'bad.wav', 1\nEND\n");
    const std::string lines = std::string(R"(jps_parse_addsound(): ERROR! sounds\bad.wav: )") +
                              reason +
                              "\njps_parse_addsound(): ERROR! Couldn't load sounds\\bad.wav\n";
    EXPECT_EQ(printed, lines + "[2]: ERROR! couldn't open sound file 'bad.wav'\n" + lines +
                           "[3]: ERROR! couldn't open sound file 'bad.wav'\n");
    EXPECT_EQ(bank->sound_count, 0U);
  }
  folder.write("sounds/bad.wav",
               "RIFF" + le32(9) + "AVI " + wave_chunk("fmt ", wave_format()) + data);
  parse_lines("PLAY 0, 'bad.wav', 1\n");
  EXPECT_EQ(printed, "read_wav_header(): Invalid filetype!\n");
  EXPECT_EQ(bank->sound_count, 1U) << "the form is named, and the file is used";
  for (const std::string& format : {wave_format(1, 100), wave_format(2, 100000, 8, 0xFFFE)}) {
    folder.write("sounds/good.wav", with(format));
    parse_lines("PLAY 0, 'good.wav', 1\n");
    EXPECT_EQ(printed, "") << "extensible PCM, too, and the range's ends";
  }
  std::filesystem::create_directory(folder.file("sounds/folder.wav"));
  parse_lines("PLAY 0, 'folder.wav', 1\n");
  EXPECT_EQ(bank->sound_count, 0U);
}

TEST_F(WaveHeader, FileShorterThanItsHeaderPlaysWhatIsThere) {
  const std::string whole = flat_wave(0.1, LOUD);  // 8820 bytes of samples
  const auto warned = [](const char* name, const char* bytes) {
    return "jps_parse_addsound(): Warning! sounds\\" + std::string(name) +
           ": its header promises " + bytes + "\n";
  };
  folder.write("sounds/cut.wav", whole.substr(0, whole.size() - 4421));
  std::string endless = whole;
  endless.replace(40, 4, le32(0xFFFFFFFF));
  folder.write("sounds/endless.wav", endless);
  ASSERT_NE(parse("PLAYLIST 1, 'x', 1, 1\nSETVOL 0, 255, 0\nPLAY 0, 'cut.wav', 1\nEND\n"
                  "PLAYLIST 2, 'y', 1, 1\nSETVOL 0, 255, 0\nPLAYS 0, 'endless.wav', 1\nEND\n"),
            nullptr);
  EXPECT_EQ(printed, warned("cut.wav", "8820 bytes of samples, it has 4399") +
                         warned("endless.wav", "4294967295 bytes of samples, it has 8820"));
  EXPECT_EQ(messages, 0);
  EXPECT_EQ(bank->sounds[0].length, 4398U) << "a byte is no sample";
  EXPECT_EQ(bank->sounds[1].length, 8820U);
  for (const char* name : {"x", "y"}) {
    EXPECT_EQ(play(name), 1U);
    EXPECT_NEAR(level_after_ms(40), LOUD, 2) << name;
    EXPECT_EQ(level_after_ms(100), 0) << name;
  }

  folder.write("sounds/cut.wav", whole.substr(0, 44));
  parse_lines("PLAY 0, 'cut.wav', 1\n");
  EXPECT_TRUE(printed.starts_with(warned("cut.wav", "8820 bytes of samples, it has 0") +
                                  "jps_parse_addsound(): ERROR! sounds\\cut.wav: it has no "
                                  "samples\n"))
      << printed;
}
