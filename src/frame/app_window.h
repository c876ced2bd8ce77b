// The one window of the program and the display mode. Main thread.
#pragma once

#include <cstdint>

struct DisplayEvents;

struct AppWindow {
  std::int32_t screen_width, screen_height;  // asked of the display
  std::int32_t fullscreen;
  bool quit = false;                               // somebody ended the program
  std::int32_t asked_width = 0, asked_height = 0;  // before the fallback
};

extern AppWindow app_window;

// Chooses the display mode: "-fullscreen", "-fs" and the sizes; anything else is ignored, a later
// word overrides an earlier one.
void app_parse_command_line(const char* line);

// Display mode and window. False if there can be none, the operator says No, or nobody is there to
// be asked.
bool app_create_window();

// The window alone, in the mode that the display has.
bool app_open_window();

// Handles the events of the window: a quit, and a new size.
void app_window_proc(const DisplayEvents& events);

// Gives a window with a frame its size, 80 x 80 at least. Nothing when the game owns the screen.
void app_resize_window();
