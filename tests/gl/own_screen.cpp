#include "tests/gl/own_screen.h"

#include <poll.h>
#include <unistd.h>

#include <cstdio>

#include "frame/app_window.h"
#include "frame/monitor_note.h"
#include "gfx/frame.h"
#include "platform/display.h"
#include "platform/files.h"

int own_screen(const char* arguments) {
  app_parse_command_line(arguments);
  void (*draw)() = [] {};
  if (app_create_window()) {
    app_resize_window();
    gfx_context_create(LAYOUT_WIDTH, LAYOUT_HEIGHT);
  } else {
    files_use_roots("", INSTALLATION);
    if (!monitor_note_open()) return 1;
    draw = monitor_note_draw;
  }
  gfx_frame_run(draw);
  std::puts("shown");
  std::fflush(stdout);
  pollfd input{STDIN_FILENO, POLLIN, 0};
  while (poll(&input, 1, 20) == 0) {
    display_poll_events();
    gfx_frame_run(draw);
  }
  return 0;
}
