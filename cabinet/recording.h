// Keeps what the cabinet sounds, and what its screen shows, in a file, on threads of its own.
#pragma once

#include <string>

#include "cabinet/page_picture.h"
#include "cabinet/sound_port.h"

struct Recording;

// Begins a file ".wav", or ".avi" with the picture too, which then mustn't be null. The file begins
// with the game's first block of sound. What was lost on the way is silence, as is the time between
// two games. Returns null with a text in `error`.
Recording* recording_start(const std::string& path, SoundPort& sound, PagePicture* picture,
                           std::string& error);

// Ends and closes the file. Returns a text if it couldn't be written whole, else empty. Null does
// nothing.
std::string recording_stop(Recording* recording);

// Whether a file of this name has pictures in it.
bool recording_has_pictures(const std::string& path);
