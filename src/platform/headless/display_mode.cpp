#include <cstdio>

#include "platform/display.h"
#include "platform/headless/display_record.h"

DisplayModeResult display_set_mode(int width, int height) {
  HeadlessDisplay& display = headless_display;
  display.modes_asked.push_back({width, height});
  if (width <= 0 || height <= 0) return DISPLAY_MODE_BAD_PARAM;
  const std::size_t turn = display.modes_asked.size() - 1;
  return turn < display.mode_results.size() ? display.mode_results[turn] : DISPLAY_MODE_OK;
}

void display_restore_mode() {
  std::fprintf(stderr, "the display mode is put back\n");
}
