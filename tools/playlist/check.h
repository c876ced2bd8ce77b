#pragma once

#include <string>

// Prints the errors of a playlist file, what the game would miss in it, and unused files in its
// folder. True if there is no error; unused files are not errors.
bool check_playlist_file(const std::string& file);
