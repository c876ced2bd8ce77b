#include "frame/monitor_note.h"

#include <cstdint>
#include <cstdio>

#include "frame/app_window.h"
#include "gfx/frame.h"  // LAYOUT_WIDTH, gfx_context_create
#include "gfx/text.h"
#include "platform/display.h"

namespace {

constexpr int X = 64, Y = 160, LINE_PX = 64;
constexpr float SCALE = 2.0F;  // to be read on a small screen too
constexpr std::uint32_t RED = 0xFFFF0000;

void line(int number, std::uint32_t colour, const char* text) {
  text_draw_scaled(FONT_11X17, colour, X, Y + number * LINE_PX, SCALE, SCALE, "%s", text);
}

void line_of_size(int number, const char* words, int width, int height) {
  char text[64];
  std::snprintf(text, sizeof text, "%s %d x %d.", words, width, height);
  line(number, COLOUR_WHITE, text);
}

}  // namespace

bool monitor_note_open() {
  if (display_can_ask() || !display_is_seen() || !app_open_window()) return false;
  gfx_context_create(LAYOUT_WIDTH, LAYOUT_HEIGHT);
  text_fonts_load();
  return true;
}

void monitor_note_draw() {
  const DisplaySize has = display_window_size();
  line(0, RED, "WRONG MONITOR");
  line_of_size(2, "The game asked for", app_window.asked_width, app_window.asked_height);
  line_of_size(3, "It can also use", app_window.screen_width, app_window.screen_height);
  line_of_size(4, "This monitor shows", has.width, has.height);
  line(6, COLOUR_WHITE, "Connect another one and switch the machine off and on,");
  line(7, COLOUR_WHITE, "or set LILYHOP_SCREEN to a size that this one has.");
}
