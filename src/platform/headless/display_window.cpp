#include <cstdio>
#include <string>

#include "platform/display.h"
#include "platform/headless/display_record.h"

HeadlessDisplay headless_display;

bool display_open_window(const char* /*title*/, int width, int height, bool fullscreen) {
  headless_display.window = {width, height};
  headless_display.fullscreen = fullscreen;
  return true;
}

DisplaySize display_window_size() {
  return headless_display.window;
}

void display_resize_window(int width, int height) {
  headless_display.window = {width, height};
}

DisplayEvents display_poll_events() {
  return {headless_display.quit, false};
}

bool display_is_seen() {
  return true;
}

bool display_can_ask() {
  return headless_display.can_ask;
}

bool display_message_box(const char* title, const char* text, bool yes_no) {
  headless_display.boxes.push_back(std::string(title) + ": " + text);
  std::fprintf(stderr, "%s: %s\n", title, text);
  return yes_no && headless_display.answer_yes;
}
