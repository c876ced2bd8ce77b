// A picture's frames laid side by side on a mid-green ground, for looking at them.
#pragma once

#include <string>

#include "art/catalogue.h"

namespace art {

// Draws the given row's frames (at most 64 of them, evenly chosen) and writes a PNG file. Small
// cells are enlarged, large ones made smaller. False if the file could not be written.
bool sheet_write(const CatalogueRow& row, const std::string& path);

}  // namespace art
