// The pictures of the documents show the game as it is: each is drawn anew and compared with what
// docs/pictures/ has.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/gl/docs_pictures.h"

namespace {

constexpr int BLOCK_PX = 4;

// By how much the mean of a channel over a block may differ. A palette and another release's fonts
// stay below it, a changed letter of the smallest text doesn't. In the two large pictures of the
// scene, whose palettes are small for what they show, it can pass unnoticed.
struct Allowed {
  int difference = 24;
  int blocks = 0;
};

Allowed allowed(const std::string& name, const Shot& drawn) {
  if (name != "play" && name != "hop") return {};
  return {.difference = 40, .blocks = drawn.width * drawn.height / (BLOCK_PX * BLOCK_PX) / 200};
}

using Bytes = std::vector<std::uint8_t>;

std::string file_of(const std::string& name) {
  const std::string path = "docs/pictures/" + name;
  return path + (std::filesystem::exists(path + ".gif") ? ".gif" : ".png");
}

// All frames of a picture, as red, green and blue.
Bytes decoded(const std::string& path) {
  Bytes bytes;
  const std::string command = "convert " + path + " -coalesce -depth 8 rgb:-";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return bytes;
  std::uint8_t part[65536];
  for (std::size_t size; (size = fread(part, 1, sizeof part, pipe)) > 0;) {
    bytes.insert(bytes.end(), part, part + size);
  }
  pclose(pipe);
  return bytes;
}

int block_difference(const Shot& drawn, const std::uint8_t* kept, int left, int top) {
  const int right = std::min(left + BLOCK_PX, drawn.width);
  const int bottom = std::min(top + BLOCK_PX, drawn.height);
  int sum[3] = {};
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) {
      const std::size_t at = (static_cast<std::size_t>(y) * drawn.width + x) * 3;
      for (int channel = 0; channel < 3; ++channel) {
        sum[channel] += drawn.rgb[at + channel] - kept[at + channel];
      }
    }
  }
  int most = 0;
  for (const int channel : sum) most = std::max(most, std::abs(channel));
  return most / ((right - left) * (bottom - top));
}

struct Differing {
  int count = 0, most = 0;  // blocks; the largest difference of any
  int x = 0, y = 0;         // where that is
};

Differing differing_blocks(const Shot& drawn, const std::uint8_t* kept, int allowed) {
  Differing found;
  for (int y = 0; y < drawn.height; y += BLOCK_PX) {
    for (int x = 0; x < drawn.width; x += BLOCK_PX) {
      const int difference = block_difference(drawn, kept, x, y);
      if (difference > allowed) ++found.count;
      if (difference > found.most) found = {found.count, difference, x, y};
    }
  }
  return found;
}

TEST(DocsPictures, ShowWhatTheGameDraws) {
  ASSERT_TRUE(screen_open());
  if (!docs_pictures_open()) GTEST_SKIP() << "no pictures in " INSTALLATION;
  std::map<std::string, Bytes> kept;
  std::map<std::string, std::size_t> seen;  // bytes
  const bool drawn_all = docs_pictures_draw([&](const std::string& name, const Shot& drawn) {
    const std::string file = file_of(name);
    if (!kept.contains(file)) kept[file] = decoded(file);
    std::size_t& at = seen[file];
    ASSERT_FALSE(drawn.rgb.empty()) << file;
    ASSERT_LE(at + drawn.rgb.size(), kept[file].size()) << file;
    const Allowed most = allowed(name, drawn);
    const Differing found = differing_blocks(drawn, &kept[file][at], most.difference);
    EXPECT_LE(found.count, most.blocks)
        << file << ", frame " << at / drawn.rgb.size() << ": most by " << found.most << " at "
        << found.x << ", " << found.y << ". If it is meant to be so: scripts/docs-pictures";
    at += drawn.rgb.size();
  });
  EXPECT_TRUE(drawn_all);
  for (const auto& [file, bytes] : kept) EXPECT_EQ(bytes.size(), seen[file]) << file;
  for (const auto& entry : std::filesystem::directory_iterator("docs/pictures")) {
    EXPECT_TRUE(kept.contains(entry.path())) << entry.path() << " isn't drawn any more";
  }
}

}  // namespace
