// What the files of the real display share. Not for anyone else.
#pragma once

#include <SDL2/SDL.h>

// The one window, or null.
SDL_Window* display_sdl_window();

// True if the window can carry a GL context: its pixel format was found.
bool display_sdl_window_has_gl();

// Brings up SDL's video part on first call. False without a display.
bool display_sdl_video();
