#include "gfx/bitmap_runs.h"

namespace {

constexpr std::size_t LONGEST_RUN = 255;

enum Escape : std::uint8_t { END_OF_ROW = 0, END_OF_PICTURE = 1, MOVE = 2 };  // more: plain pixels

struct Code {
  const std::uint8_t* data;
  std::size_t left;

  bool take(std::size_t count, const std::uint8_t*& bytes) {
    if (count > left) return false;
    bytes = data;
    data += count;
    left -= count;
    return true;
  }
};

struct Pen {
  std::size_t width, height;
  std::uint8_t* indexes;
  std::size_t x, y;

  void put(std::uint8_t index) {
    if (x < width && y < height) indexes[y * width + x] = index;
    ++x;
  }
};

// Pixel `i` of bytes that hold two each, the first in the high half.
std::uint8_t half(const std::uint8_t* bytes, std::size_t i) {
  return i % 2 == 0 ? bytes[i / 2] >> 4 : bytes[i / 2] & 0x0F;
}

void run_put(Pen& pen, std::size_t count, std::uint8_t value, bool four_bits) {
  for (std::size_t i = 0; i < count; ++i) pen.put(four_bits ? half(&value, i % 2) : value);
}

// Plain pixels fill whole words of two bytes.
bool pixels_put(Pen& pen, Code& code, std::size_t count, bool four_bits) {
  const std::size_t size = four_bits ? (count + 1) / 2 : count;
  const std::uint8_t* bytes = nullptr;
  if (!code.take((size + 1) / 2 * 2, bytes)) return false;
  for (std::size_t i = 0; i < count; ++i) pen.put(four_bits ? half(bytes, i) : bytes[i]);
  return true;
}

bool move(Pen& pen, Code& code) {
  const std::uint8_t* by = nullptr;
  if (!code.take(2, by)) return false;
  pen.x += by[0];
  pen.y += by[1];
  return true;
}

}  // namespace

bool bitmap_runs_unpack(const std::uint8_t* code_data, std::size_t size, bool four_bits,
                        std::size_t width, std::size_t height, std::uint8_t* indexes) {
  Code code{code_data, size};
  Pen pen{width, height, indexes, 0, 0};
  for (const std::uint8_t* pair = nullptr; code.take(2, pair);) {
    const std::uint8_t value = pair[1];
    if (pair[0] != 0) {
      run_put(pen, pair[0], value, four_bits);
    } else if (value == END_OF_ROW) {
      pen.x = 0;
      ++pen.y;
    } else if (value == END_OF_PICTURE) {
      return true;
    } else if (!(value == MOVE ? move(pen, code) : pixels_put(pen, code, value, four_bits))) {
      return false;
    }
  }
  return false;
}

std::size_t bitmap_runs_most_pixels(std::size_t size) {
  return size / 2 * LONGEST_RUN;
}
