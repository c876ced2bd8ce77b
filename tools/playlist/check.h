#pragma once

#include <string>

// Prints what is wrong with a playlist file, what the game would miss in it, and what lies unused
// in its folder. True if there is no error; what is merely unused is none.
bool check_playlist_file(const std::string& file);
