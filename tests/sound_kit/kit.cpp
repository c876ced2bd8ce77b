#include "tests/sound_kit/kit.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

const std::string& kit_folder() {
  static const std::string folder = [] {
    if (const char* given = std::getenv("LILYHOP_SOUNDS")) return std::string(given);
    const int code = std::system(SOUND_RENDER " " SOUND_FOLDER " >" SOUND_FOLDER ".log 2>&1");
    EXPECT_EQ(code, 0) << "see " SOUND_FOLDER ".log";
    return std::string(SOUND_FOLDER "/sounds");
  }();
  return folder;
}

Heard hear(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  Heard heard;
  if (!file) {
    ADD_FAILURE() << path << ": " << sf_strerror(nullptr);
    return heard;
  }
  heard.rate = info.samplerate;
  heard.channels = info.channels;
  heard.format = info.format;
  heard.samples.resize(static_cast<size_t>(info.frames) * static_cast<size_t>(info.channels));
  EXPECT_EQ(sf_readf_float(file, heard.samples.data(), info.frames), info.frames);
  sf_close(file);
  return heard;
}

std::string bytes_of(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<std::string> script_lines() {
  std::istringstream in(bytes_of(kit_folder() + "/mainpls.txt"));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);)
    if (!line.empty() && line[0] != ';') lines.push_back(line);
  return lines;
}

std::vector<std::string> in_quotes(const std::string& line) {
  std::vector<std::string> found;
  for (size_t at = line.find('\''); at != std::string::npos;) {
    const size_t end = line.find('\'', at + 1);
    if (end == std::string::npos) break;
    found.push_back(line.substr(at + 1, end - at - 1));
    at = line.find('\'', end + 1);
  }
  return found;
}
