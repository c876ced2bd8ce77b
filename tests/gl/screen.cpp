#include "tests/gl/screen.h"

#include <cstdlib>
#include <memory>

#include "gfx/frame.h"
#include "platform/display.h"
#include "tests/gl/x_server.h"

namespace {

std::unique_ptr<XServer> server;

}  // namespace

bool screen_start() {
  if (std::getenv("DISPLAY") != nullptr) return true;
  server = std::make_unique<XServer>(DisplaySize{1920, 1200});
  if (server->name().empty()) return false;
  setenv("DISPLAY", server->name().c_str(), 1);
  return true;
}

void screen_stop() {
  server = nullptr;
}

bool screen_open() {
  static const bool open = display_open_window("test", LAYOUT_WIDTH, LAYOUT_HEIGHT, false) &&
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
