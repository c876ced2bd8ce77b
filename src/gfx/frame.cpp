#include "gfx/frame.h"

#include <cstdint>
#include <cstdio>
#include <string>

#include "platform/clock.h"
#include "platform/display.h"

namespace {

constexpr std::uint32_t CLEAR_COLOUR = 0xFF004020;  // dark green

}  // namespace

int gfx_context_create(int width, int height) {
  std::string error;
  if (!display_create_context(error)) {
    display_message_box("ERROR", error.c_str(), false);
    return 0;
  }
  gfx_projection_set(width, height);
  std::printf("OPENGL ACCELERATION ENABLED\n");
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
