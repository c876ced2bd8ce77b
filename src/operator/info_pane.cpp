#include "operator/info_pane.h"

#include <cstdarg>
#include <cstdint>

#include "gfx/panel.h"  // gfx_rect_draw
#include "gfx/text.h"
#include "operator/row_text.h"
#include "platform/shared_text.h"

namespace {

constexpr int X = 712;
constexpr int Y = 32;
constexpr int WIDTH = 616;
constexpr int LINE_HEIGHT_PX = 16;
constexpr int CAPACITY = 44;
constexpr int MARGIN_PX = 8;
constexpr std::uint32_t BACK_COLOUR = 0x80000000;
constexpr std::uint32_t HEADING_COLOUR = 0xFF00C000;

struct InfoPane {
  Shared<std::int32_t> visible;
  SharedText<120> lines[PANE_LINES];
};
constinit InfoPane pane{};

}  // namespace

void pane_page(const char* heading, ...) {
  for (auto& line : pane.lines) line.set("");
  std::va_list arguments;
  va_start(arguments, heading);
  pane.lines[0].format(heading, arguments);
  va_end(arguments);
}

void pane_set_line(int line, const char* format, ...) {
  if (line < 0 || line >= PANE_LINES) return;
  std::va_list arguments;
  va_start(arguments, format);
  pane.lines[line].format(format, arguments);
  va_end(arguments);
}

void pane_show(bool visible) {
  pane.visible = visible ? 1 : 0;
}

void pane_draw_all() {
  if (pane.visible == 0) return;
  gfx_rect_draw(X - MARGIN_PX, Y - MARGIN_PX, WIDTH + 2 * MARGIN_PX,
                LINE_HEIGHT_PX * CAPACITY + 2 * MARGIN_PX, BACK_COLOUR, BACK_COLOUR);
  int y = Y;
  std::uint32_t colour = HEADING_COLOUR;
  for (const auto& line : pane.lines) {
    const auto copy = line.copy();
    if (copy.text[0] != '\0') row_text_draw(colour, X, y, copy.text);
    colour = COLOUR_WHITE;
    y += LINE_HEIGHT_PX;
  }
}

void pane_reset() {
  pane_show(false);
  pane_page("%s", "");
}
