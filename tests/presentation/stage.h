// The game on a headless display: what was drawn, by name, place and words.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/temp_folder.h"

struct Drawn {
  std::string what;  // a picture's file name without folder and ending, or the words of a line
  int x, y;
  std::uint32_t colour;
  int width;                       // of a picture, or of a line's first glyph
  bool mirrored;                   // left to right
  int cell;                        // of a sheet
  float middle_x, middle_y, turn;  // degrees
  int height;
  std::uint32_t last_colour;  // of the lower corners
  float scale;                // across; 1 for a line
};

class Stage : public testing::Test {
 protected:
  Stage();
  ~Stage() override;

  // Draws by `draw` and returns all pictures and lines in their order. Glyphs that follow each
  // other are one line.
  static std::vector<Drawn> seen(void (*draw)());

  TempFolder drive;  // of what is stored and of the program, which has no files
};

// The places of a picture or line as "x,y x,y", "" if there is none.
std::string places(const std::vector<Drawn>& drawn, const std::string& what);
// The first of that name; fails the test if there is none.
Drawn first(const std::vector<Drawn>& drawn, const std::string& what);
bool has(const std::vector<Drawn>& drawn, const std::string& what);
