// A moving picture of the game for people who have not seen it yet.
#pragma once

#include <string>

namespace art {

// Writes an animated PNG: a frog climbs over the meadow and the near lanes of the river, in a loop.
// False if it could not be written.
bool preview_write(const std::string& path);

}  // namespace art
