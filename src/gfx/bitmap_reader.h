// Windows bitmap files, of every depth, plain or run-length coded, as 24-bit rows. Main thread: a
// failure shows a box.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct BitmapImage {
  std::int32_t width, height;
  std::vector<std::uint8_t> pixels;  // red, green, blue, rows unpadded, bottom row first
};

enum BitmapResult { BITMAP_OK, BITMAP_NO_MEMORY, BITMAP_UNKNOWN_FORMAT, BITMAP_NOT_CONVERTED };

// Reads a bitmap in memory, with or without its file header.
BitmapResult bitmap_decode(const std::uint8_t* data, std::size_t size, BitmapImage& image);

// Reads a bitmap file. False after a message box that names what is wrong.
bool bitmap_read(const char* file_name, BitmapImage& image);
