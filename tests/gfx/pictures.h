// Small picture files in a folder of their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "tests/temp_folder.h"

using Bytes = std::vector<std::uint8_t>;

inline void put16(Bytes& out, std::uint32_t value) {
  out.push_back(value & 0xFF);
  out.push_back(value >> 8 & 0xFF);
}
inline void put32(Bytes& out, std::uint32_t value) {
  put16(out, value & 0xFFFF);
  put16(out, value >> 16);
}

// The colour of a pixel as 0xAARRGGBB, by column and row from the top.
using Paint = std::function<std::uint32_t(int x, int y)>;

inline Bytes tga_bytes(int width, int height, const Paint& paint, int depth = 32, int type = 2,
                       const std::string& id = "") {
  Bytes out(12, 0);
  out[0] = static_cast<std::uint8_t>(id.size());
  out[2] = static_cast<std::uint8_t>(type);
  put16(out, width);
  put16(out, height);
  put16(out, depth);
  out.insert(out.end(), id.begin(), id.end());
  for (int y = height - 1; y >= 0; --y) {
    for (int x = 0; x < width; ++x) put32(out, paint(x, y));
  }
  return out;
}

// 24 bits a pixel, with file header, bottom row first.
inline Bytes bmp_bytes(int width, int height, const Paint& paint) {
  const int row = (width * 3 + 3) / 4 * 4;
  Bytes out = {'B', 'M'};
  for (const int value : {54 + row * height, 0, 54, 40, width, height}) put32(out, value);
  put16(out, 1);
  put16(out, 24);
  for (int i = 0; i < 6; ++i) put32(out, 0);
  for (int y = height - 1; y >= 0; --y) {
    const std::size_t start = out.size();
    for (int x = 0; x < width; ++x) {
      const std::uint32_t c = paint(x, y);
      put16(out, c & 0xFFFF);
      out.push_back(c >> 16 & 0xFF);
    }
    out.resize(start + row, 0);
  }
  return out;
}

// An installation's folder while the test lasts.
class PictureFolder {
 public:
  PictureFolder() {
    std::filesystem::create_directories(path() + "/images/fonts");
    files_use_roots(path() + "/d", path());
  }
  // `name` with forward slashes, below the folder.
  void write(const std::string& name, const Bytes& bytes) const {
    folder_.write(name, {bytes.begin(), bytes.end()});
  }
  [[nodiscard]] std::string path() const { return folder_.path(); }

 private:
  TempFolder folder_;
};
