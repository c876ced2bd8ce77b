#include "tests/gl/own_screen.h"

#include <poll.h>
#include <unistd.h>

#include <cstdio>

#include "frame/app_window.h"
#include "gfx/frame.h"
#include "platform/display.h"

int own_screen(const char* arguments) {
  app_parse_command_line(arguments);
  if (!app_create_window()) return 1;
  app_resize_window();
  gfx_context_create(LAYOUT_WIDTH, LAYOUT_HEIGHT);
  gfx_frame_run([] {});
  std::puts("shown");
  std::fflush(stdout);
  pollfd input{STDIN_FILENO, POLLIN, 0};
  while (poll(&input, 1, 20) == 0) {
    display_poll_events();
    gfx_frame_run([] {});
  }
  return 0;
}
