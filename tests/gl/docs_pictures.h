// The pictures of the documents, drawn by the game itself: a moment of play, an animation, and the
// operator's screens. The clock is set by hand and chance begins at a fixed seed, so each run draws
// the same.
#pragma once

#include <functional>
#include <string>

#include "tests/gl/screen.h"

constexpr const char* DOCS_PICTURES = "--docs-pictures";  // first argument; then a folder

// Takes a picture's name and what it shows. The frames of an animation come one after the other
// under one name.
using PictureTaken = std::function<void(const std::string& name, const Shot& shot)>;

// False without a screen or the installation's pictures. Before the first drawing.
bool docs_pictures_open();
// Draws all of them in a fixed order. False if the window doesn't get its size.
bool docs_pictures_draw(const PictureTaken& taken);

// Writes all of them into a folder as PPM files, the frames of an animation numbered. Returns the
// process's exit code.
int docs_pictures_write(const std::string& folder);
