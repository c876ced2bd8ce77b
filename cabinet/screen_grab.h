// The picture in the game's window, taken from the X server without the game's help. One thread.
#pragma once

#include <cstdint>
#include <string>

struct ScreenPicture {
  const std::uint8_t* pixels = nullptr;  // blue, green, red and an unused byte
  int width = 0, height = 0;
  int row_bytes = 0;
};

struct ScreenGrab;  // the connection to the server of DISPLAY

// Nothing is opened before the first picture is taken.
ScreenGrab* screen_grab_new();
void screen_grab_delete(ScreenGrab* grab);

// Takes what the window of the process `pid`, or of one in its process group, shows now. The
// picture is valid until the next call. Returns why there is none, empty on success. A later call
// may succeed.
std::string screen_grab_take(ScreenGrab& grab, int pid, ScreenPicture& picture);
