// A real window and GL context for tests, on a virtual screen if there is no display.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

// Starts a virtual X server for this process and its like if DISPLAY is not set. False if that
// fails. `screen_stop` ends it.
bool screen_start();
void screen_stop();

// The one window, opened and given a context on first call.
bool screen_open();

struct Shot {
  int width, height;
  std::vector<std::uint8_t> rgb;

  [[nodiscard]] std::uint32_t at(int x, int y) const {  // 0xRRGGBB; all ones outside
    if (rgb.empty() || x < 0 || x >= width || y < 0 || y >= height) return ~0U;
    const std::uint8_t* p = &rgb[(static_cast<std::size_t>(y) * width + x) * 3];
    return p[0] << 16 | p[1] << 8 | p[2];
  }
};

// One frame in a window of that size on black, read back. Without pixels if anything failed.
Shot screen_shot(int width, int height, const std::function<void()>& draw);
