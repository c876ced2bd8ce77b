// Shared by the files of the real display only.
#pragma once

#include <SDL2/SDL.h>

// The one window, or null.
SDL_Window* display_sdl_window();

// True if a pixel format was found, so the window can have a GL context.
bool display_sdl_window_has_gl();

// Starts SDL's video part on the first call. False without a display.
bool display_sdl_video();

// False on an X display that no window manager runs on, as in a cabinet.
bool display_sdl_has_window_manager();
