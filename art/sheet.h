// For looking at pictures: frames side by side on a ground, or in motion as an animated PNG.
#pragma once

#include <string>

#include "art/catalogue.h"

namespace art {

enum class Ground { kGrass, kWater, kGrey };

// A picture's frames side by side: at most 20 of them, evenly chosen, or all glyphs of a font.
// Small cells are enlarged, large ones reduced. Any thread. False if the file could not be written.
bool contact_sheet_write(const CatalogueRow& row, Ground ground, const std::string& path);

// All pictures of a family on one sheet, each with one frame and its name.
bool family_sheet_write(const Family& family, Ground ground, const std::string& path);

// All frames in motion, at 17 ms a frame (a tick) or at another pace. A loop runs for ever; a sheet
// that is played once stops for a second at its end. False if the file could not be written.
bool motion_write(const CatalogueRow& row, Ground ground, int frame_ms, const std::string& path);

}  // namespace art
