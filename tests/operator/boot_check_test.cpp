// The boot check with real files: what it accepts and what it rejects.
#include "operator/boot_check.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "books/prefs.h"
#include "frame/game_mode.h"
#include "operator/file_sums.h"
#include "platform/files.h"
#include "platform/headless/display_record.h"
#include "tests/temp_folder.h"

namespace {

int frames = 0;

class BootCheckTest : public testing::Test {
 protected:
  BootCheckTest() {
    files_use_roots(drive.path(), program.path());
    prefs_reset();
    build_stamp = {"May 17 2012", "10:20:53"};
    frames = 0;
  }
  ~BootCheckTest() override { game_mode = MODE_PLAY; }

  void install(const std::string& name, const std::string& bytes) {
    const std::filesystem::path path = program.path() + "/" + name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
  }
  // A line of the list for these bytes, with the CRC computed bit by bit.
  static std::string listed(const std::string& name, const std::string& bytes) {
    std::uint32_t crc = 0x63046310;
    for (const unsigned char byte : bytes) {
      crc ^= byte;
      for (int i = 0; i < 8; ++i) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return name + " " + std::to_string(bytes.size()) + " " +
           std::to_string(static_cast<std::int32_t>(crc)) + "\n";
  }
  FileCheck check() {
    return file_list_check(current, [] { ++frames; });
  }

  TempFolder drive, program;
  std::string current;
};

TEST_F(BootCheckTest, GoodFiles_PassInAnyCaseOfTheirNames) {
  const std::string large(700000, '\x93');
  install("images/Frog.tga", large);
  install("sounds/one.wav", "tone");
  install("Empty.bin", "");
  install("LHPcrc.TXT", listed(R"(images\FROG.TGA)", large) + "; a comment\n" + "two tokens\n" +
                            listed(R"(SOUNDS\One.wav)", "tone") + "empty.bin 0 1661231888\n");
  EXPECT_EQ(check(), FILES_GOOD);
  EXPECT_EQ(frames, 3);
  EXPECT_EQ(current, "EMPTY.BIN");
}

TEST_F(BootCheckTest, MissingListOrFileAndDamage_AreReported) {
  EXPECT_EQ(check(), LIST_MISSING);
  const std::string good = "0123456789";
  for (const char* name : {"a.bin", "b.bin", "extra.bin"}) install(name, good);
  install("lhpcrc.txt", listed("a.bin", good) + listed("b.bin", good) + listed("c.bin", good));
  EXPECT_EQ(check(), FILE_MISSING);
  EXPECT_EQ(current, "C.BIN");
  EXPECT_EQ(frames, 2);
  install("c.bin", good);
  EXPECT_EQ(check(), FILES_GOOD);
  for (const char* damaged : {"012345678", "0123456788"}) {  // cut off, and one bit
    install("b.bin", damaged);
    EXPECT_EQ(check(), FILE_DAMAGED);
    EXPECT_EQ(current, "B.BIN");
  }
  std::filesystem::create_directory(program.path() + "/folder");
  for (const auto& [list, result] :
       {std::pair{listed("a.bin", good) + "b.bin 1 1", FILES_GOOD},  // a line without its end
        {listed("a.bin", good) + "b.bin 10 1 \r\n", FILE_DAMAGED},   // as in a list with columns
        {listed(R"(..\secret)", good), FILE_MISSING},
        {"folder 0 1661231888\n", FILE_MISSING},
        {"folder 9 9\n", FILE_MISSING}}) {
    install("lhpcrc.txt", list);
    EXPECT_EQ(check(), result) << list;
  }
  std::filesystem::remove(program.path() + "/lhpcrc.txt");
  std::filesystem::create_directory(program.path() + "/lhpcrc.txt");
  EXPECT_EQ(check(), LIST_MISSING) << "it is a folder";
}

// /proc/self/mem can be opened, but reading at its start fails.
TEST_F(BootCheckTest, ReadError_IsAMissingListOrADamagedFile) {
  const char* const unreadable = "/proc/self/mem";
  std::filesystem::create_symlink(unreadable, program.path() + "/lhpcrc.txt");
  EXPECT_EQ(check(), LIST_MISSING);
  std::filesystem::remove(program.path() + "/lhpcrc.txt");
  std::filesystem::create_symlink(unreadable, program.path() + "/a.bin");
  install("lhpcrc.txt", "a.bin 0 1661231888\n");  // size and CRC of an empty file
  EXPECT_EQ(check(), FILE_DAMAGED);
}

TEST_F(BootCheckTest, NewBuild_IsCheckedOnce) {
  install("a.bin", "x");
  install("lhpcrc.txt", listed("a.bin", "x"));
  prefs[PREF_CHECK_CRC].int_value = 0;
  const auto draw = [] { ++frames; };
  boot_check_and_version(draw);
  EXPECT_EQ(frames, 1) << "a new build";
  EXPECT_EQ(pref_int(PREF_CHECK_CRC), 0);
  EXPECT_STREQ(prefs[PREF_BUILD_DATE].text_value, "May 17 2012");
  EXPECT_EQ(game_mode, MODE_PLAY);
  std::filesystem::remove(program.path() + "/lhpcrc.txt");
  boot_check_and_version(draw);
  EXPECT_EQ(frames, 1) << "the list isn't opened";
  install("lhpcrc.txt", listed("a.bin", "x"));
  build_stamp.time = "10:20:54";
  boot_check_and_version(draw);
  EXPECT_EQ(frames, 2);
}

TEST_F(BootCheckTest, BadInstallation_StopsUntilASignal) {
  const auto boot = [] {
    std::signal(SIGTERM, SIG_IGN);  // as a window library may do
    headless_display.quit = true;
    boot_check_and_version([] {
      if (++frames == 50) std::raise(SIGTERM);
    });
  };
  EXPECT_EXIT(boot(), testing::KilledBySignal(SIGTERM), "the display mode is put back");
}

TEST_F(BootCheckTest, VersionFile_GivesItsFirstTwoLines) {
  prefs[PREF_CHECK_CRC].int_value = 0;
  std::strcpy(prefs[PREF_BUILD_DATE].text_value, build_stamp.date);
  std::strcpy(prefs[PREF_BUILD_TIME].text_value, build_stamp.time);
  const auto versions = [] {
    boot_check_and_version([] {});
    return std::string(version_record.version) + "|" + version_record.os_version;
  };
  EXPECT_EQ(versions(), "VERSION.TXT MISSING|VERSION.TXT MISSING");
  for (const auto& [file, shown] :
       {std::pair{"1.07\nDEBIAN 12\nmore\n", "1.07\n|DEBIAN 12\n"},
        {"LILY HOP 1.07 EUR\r\nDEBIAN 12\r\n", "LILY HOP 1.07 EUR\n|DEBIAN 12\n"},
        {"EIGHTEEN LETTERS, NO MORE\n", "EIGHTEEN LETTERS, |NO MORE\n"}}) {
    drive.write("version.txt", file);
    EXPECT_EQ(versions(), shown);
  }
}

}  // namespace
