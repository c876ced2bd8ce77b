// For looking at pictures: frames side by side on a ground, or in motion as an animated PNG.
#pragma once

#include <string>

#include "art/catalogue.h"

namespace art {

enum class Ground { kGrass, kWater, kGrey };

// A picture's frames side by side, at most 20 of them, evenly chosen, or all glyphs of a font.
// Small cells are enlarged, large ones made smaller. Any thread. False if the file could not be
// written.
bool contact_sheet_write(const CatalogueRow& row, Ground ground, const std::string& path);

// All of a family on one sheet, each picture by one frame with its name.
bool family_sheet_write(const Family& family, Ground ground, const std::string& path);

// All frames in motion, at a tick's 17 ms a frame or at another pace; a loop runs for ever, and
// what is played once stands for a second at its end. False if the file could not be written.
bool motion_write(const CatalogueRow& row, Ground ground, int frame_ms, const std::string& path);

}  // namespace art
