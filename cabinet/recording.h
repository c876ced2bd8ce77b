// Records the cabinet's sound and its screen in a file, on threads of its own.
#pragma once

#include <string>

#include "cabinet/page_picture.h"
#include "cabinet/sound_port.h"

struct Recording;

// Begins a file ".wav", or ".avi", which also needs the picture (not null). The file begins with
// the game's first block of sound. Lost sound and the time between two games become silence.
// Returns null with a text in `error`.
Recording* recording_start(const std::string& path, SoundPort& sound, PagePicture* picture,
                           std::string& error);

// Ends and closes the file. Returns a text if it couldn't be written completely, otherwise empty.
// Null does nothing.
std::string recording_stop(Recording* recording);

// Whether a file of this name has pictures in it.
bool recording_has_pictures(const std::string& path);
