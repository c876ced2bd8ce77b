#include "gfx/frame.h"

#include <cstdint>
#include <cstdio>
#include <string>

#include "platform/clock.h"
#include "platform/display.h"

namespace {

constexpr std::uint32_t CLEAR_COLOUR = 0xFF004020;  // dark green

// What is asked of a pixel format, in the bits by which the console line is chosen.
constexpr std::uint32_t FORMAT_FLAGS = 0x1025;
constexpr std::uint32_t FORMAT_ACCELERATED = 0x1000;

}  // namespace

int gfx_context_create(int width, int height) {
  std::string error;
  if (!display_create_context(error)) {
    display_message_box("ERROR", error.c_str(), false);
    return 0;
  }
  gfx_projection_set(width, height);
  const bool accelerated = (FORMAT_FLAGS & FORMAT_ACCELERATED) != 0;
  std::printf("OPENGL ACCELERATION %s\n", accelerated ? "ENABLED" : "DISABLED");
  return 1;
}

// The window is all client area, so the layout begins at its corner.
void gfx_projection_set(int width, int height) {
  display_set_projection(0, 0, width, height);
}

void gfx_frame_run(void (*draw)()) {
  clock_sleep_ms(1);
  const int errors = display_begin_frame(CLEAR_COLOUR);
  for (int i = 0; i < errors; ++i) display_message_box("ERROR", "GL Error", false);
  draw();
  display_end_frame();
}
