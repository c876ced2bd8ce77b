// Finished pictures: straight RGBA, top row first, and the three file formats of the game.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "art/canvas.h"

namespace art {

struct Picture {
  int width, height;
  std::vector<uint8_t> rgba;

  Picture(int w, int h);
  uint8_t* at(int x, int y) { return &rgba[(static_cast<size_t>(y) * width + x) * 4]; }
  const uint8_t* at(int x, int y) const { return &rgba[(static_cast<size_t>(y) * width + x) * 4]; }
};

// Copies a canvas into a picture with its top left corner at (x, y). Transparent pixels get the
// colour of a neighbour, so that filtering or compression makes no dark rim.
void picture_take(Picture& picture, const Canvas& canvas, int x, int y);

// Each returns false if the file could not be written completely.
bool picture_write_tga(const Picture& picture,
                       const std::string& path);  // 32 bit, bottom row first
bool picture_write_bmp(const Picture& picture, const std::string& path);  // 24 bit, no alpha
bool picture_write_png(const Picture& picture, const std::string& path);  // RGBA, quick to decode

}  // namespace art
