#include "frame/app_window.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "gfx/frame.h"  // LAYOUT_WIDTH, gfx_projection_set
#include "platform/display.h"
#include "platform/tokens.h"

AppWindow app_window = {LAYOUT_WIDTH, LAYOUT_HEIGHT, 1};

namespace {

constexpr const char* TITLE = "SlyApp";
constexpr int SMALLEST_WINDOW = 80;  // a side, in pixels
constexpr DisplaySize FALLBACK = {1920, 1080};

constexpr DisplaySize SIZES[] = {{1280, 720}, {1920, 1080}, {640, 480},  {800, 600},
                                 {1024, 768}, {1600, 900},  {1920, 1200}};

const char* mode_question(DisplayModeResult result) {
  switch (result) {
    case DISPLAY_MODE_BAD_PARAM:
      return "The Requested Fullscreen Mode Contained An Invalid Param.\n"
             "Use Windowed Mode Instead?";
    case DISPLAY_MODE_BAD_FLAGS:
      return "The Requested Fullscreen Mode Contained Invalid Flags.\nUse Windowed Mode Instead?";
    case DISPLAY_MODE_BAD_MODE:
      return "The Requested Fullscreen Mode Is Not Supported.\nUse Windowed Mode Instead?";
    default:
      return "The Requested Fullscreen Mode Failed.\nUse Windowed Mode Instead?";
  }
}

// The size asked for, then the size most panels have, then the operator's word.
bool choose_mode() {
  AppWindow& app = app_window;
  app.asked_width = app.screen_width;
  app.asked_height = app.screen_height;
  if (display_set_mode(app.screen_width, app.screen_height) == DISPLAY_MODE_OK) return true;
  app.screen_width = FALLBACK.width;
  app.screen_height = FALLBACK.height;
  const DisplayModeResult result = display_set_mode(app.screen_width, app.screen_height);
  if (result == DISPLAY_MODE_OK) return true;
  if (display_message_box("ERROR", mode_question(result), true)) {
    app.fullscreen = 0;
    return true;
  }
  if (display_can_ask()) display_message_box("ERROR", "Program Will Now Close.", false);
  return false;
}

}  // namespace

void app_parse_command_line(const char* line) {
  const int count = app_tokenize_line(line);
  for (int i = 0; i < count; ++i) {
    const char* token = token_table[i];
    if (std::strcmp(token, "-FULLSCREEN") == 0 || std::strcmp(token, "-FS") == 0) {
      app_window.fullscreen = 1;
    }
    for (const DisplaySize& size : SIZES) {
      char word[32];
      std::snprintf(word, sizeof word, "-%dX%d", size.width, size.height);
      if (std::strcmp(token, word) != 0) continue;
      app_window.screen_width = size.width;
      app_window.screen_height = size.height;
    }
  }
}

bool app_create_window() {
  if (app_window.fullscreen != 0 && !choose_mode()) return false;
  return app_open_window();
}

bool app_open_window() {
  return display_open_window(TITLE, app_window.screen_width, app_window.screen_height,
                             app_window.fullscreen != 0);
}

void app_window_proc(const DisplayEvents& events) {
  if (events.moved) gfx_projection_set(LAYOUT_WIDTH, LAYOUT_HEIGHT);
  if (events.quit) app_window.quit = true;
}

void app_resize_window() {
  if (app_window.fullscreen != 0) return;
  display_resize_window(std::max(app_window.screen_width, SMALLEST_WINDOW),
                        std::max(app_window.screen_height, SMALLEST_WINDOW));
}
