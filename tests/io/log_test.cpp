// Where a channel's lines go, and which it lets through.
#include "io/log.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <string>

#include "tests/temp_folder.h"

namespace {

std::string heard;

std::string told_by(LogChannel channel) {
  heard.clear();
  channel.callback = [](int kind, const char* text) {
    heard += (kind == LOG_ERROR ? "!" : "") + std::string(text) + "\n";
  };
  log_message(channel, "port %d", 3);
  log_error(channel, "code 0x%x", 16);
  return heard;
}

TEST(Log, LetsThroughTheKindsThatAreOn) {
  EXPECT_EQ(told_by({}), "port 3\n!code 0x10\n");
  EXPECT_EQ(told_by({.messages = 0}), "!code 0x10\n");
  EXPECT_EQ(told_by({.errors = 0}), "port 3\n");
  EXPECT_EQ(told_by({.enabled = 0}), "");
}

TEST(Log, WritesTimedLinesOf127BytesToItsFile) {
  const TempFolder folder;
  LogChannel channel;
  channel.file = std::fopen(folder.file("log").c_str(), "w");
  log_message(channel, "its file is not in use");
  channel.use_file = 1;
  log_message(channel, "%s", std::string(200, 'x').c_str());
  log_error(channel, "late");
  std::fclose(channel.file);
  const std::string text = folder.read("log");
  constexpr std::size_t TIME = sizeof "Thu Nov 26 18:44:57 2026" - 1;
  EXPECT_EQ(text.substr(TIME, 138), ": MESSAGE " + std::string(127, 'x') + "\n");
  EXPECT_TRUE(text.ends_with(": ERROR late\n")) << text;
}

}  // namespace
