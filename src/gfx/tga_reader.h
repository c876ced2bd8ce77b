// TGA files: uncompressed, true colour, 32 bits a pixel, bottom row first. Any thread.
#pragma once

#include <cstdint>
#include <vector>

struct TgaImage {
  std::int32_t width, height;
  std::vector<std::uint8_t> pixels;  // blue, green, red, alpha, top row first
};

// Reads a file. False if it can't be used. A file of another kind also prints a line.
bool tga_read(const char* file_name, TgaImage& image);
