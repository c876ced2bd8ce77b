#include "tests/gl/screen.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "gfx/frame.h"
#include "platform/display.h"

namespace {

pid_t server = 0;

}  // namespace

bool screen_start() {
  if (std::getenv("DISPLAY") != nullptr) return true;
  int ends[2];
  if (pipe(ends) != 0) return false;
  server = fork();
  if (server == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);  // it goes with a test that dies
    dup2(ends[1], 3);
    execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "1920x1200x24", "-nolisten", "tcp",
           nullptr);
    _exit(127);
  }
  close(ends[1]);
  std::string number;  // the server writes it when it is ready
  char c = 0;
  while (read(ends[0], &c, 1) == 1 && c != '\n') number += c;
  close(ends[0]);
  if (server < 0 || number.empty()) return false;
  setenv("DISPLAY", (":" + number).c_str(), 1);
  return true;
}

void screen_stop() {
  if (server <= 0) return;
  kill(server, SIGTERM);
  waitpid(server, nullptr, 0);
  server = 0;
}

bool screen_open() {
  static const bool open = display_open_window("test", LAYOUT_WIDTH, LAYOUT_HEIGHT, true) &&
                           gfx_context_create(LAYOUT_WIDTH, LAYOUT_HEIGHT) == 1;
  return open;
}

Shot screen_shot(int width, int height, const std::function<void()>& draw) {
  display_resize_window(width, height);
  display_poll_events();
  const DisplaySize size = display_window_size();
  Shot shot{size.width, size.height, {}};
  if (size.width != width || size.height != height) return shot;
  // GL learns of a new size when it shows a frame; the one after it is drawn as all later ones.
  display_begin_frame(0xFF000000);
  display_end_frame();
  const int errors = display_begin_frame(0xFF000000);
  draw();
  shot.rgb.resize(static_cast<std::size_t>(size.width) * size.height * 3);
  if (!display_read_frame(shot.rgb.data()) || errors != 0) shot.rgb.clear();
  display_end_frame();
  return shot;
}
