#include "operator/info_pane.h"

#include <cstdarg>
#include <cstdint>

#include "gfx/panel.h"  // gfx_rect_draw
#include "gfx/text.h"
#include "operator/row_text.h"
#include "platform/shared_text.h"

namespace {

constexpr int LINE_HEIGHT_PX = 16;
constexpr int MARGIN_PX = 8;
constexpr int CAPACITY = 44;
constexpr std::uint32_t HEADING_COLOUR = 0xFF00C000;

struct PaneLine {
  SharedText<120> text;
  std::uint32_t colour;  // 0xAARRGGBB
};

struct InfoPane {
  std::int32_t x, y, width, height;  // of the text, layout pixels
  Shared<std::int32_t> visible;
  std::uint32_t default_colour, back_colour;
  std::uint32_t head, tail;  // the first line, and one past the last
  PaneLine lines[CAPACITY];
};

InfoPane pane_built() {
  InfoPane pane{712, 32,         616, LINE_HEIGHT_PX * CAPACITY, 0, COLOUR_WHITE, 0x80000000,
                0,   PANE_LINES, {}};
  for (PaneLine& line : pane.lines) line.colour = pane.default_colour;
  pane.lines[0].colour = HEADING_COLOUR;
  return pane;
}
InfoPane pane = pane_built();

}  // namespace

void pane_page(const char* heading, ...) {
  for (PaneLine& line : pane.lines) line.text.set("");
  std::va_list arguments;
  va_start(arguments, heading);
  pane.lines[0].text.format(heading, arguments);
  va_end(arguments);
}

void pane_set_line(int line_number, const char* format, ...) {
  if (line_number < 0 || line_number >= PANE_LINES) return;
  std::va_list arguments;
  va_start(arguments, format);
  pane.lines[line_number].text.format(format, arguments);
  va_end(arguments);
}

void pane_show(bool visible) {
  pane.visible = visible ? 1 : 0;
}

void pane_draw_all() {
  if (pane.visible == 0) return;
  gfx_rect_draw(pane.x - MARGIN_PX, pane.y - MARGIN_PX, pane.width + 2 * MARGIN_PX,
                pane.height + 2 * MARGIN_PX, pane.back_colour, pane.back_colour);
  int y = pane.y;
  for (std::uint32_t n = pane.head; n != pane.tail; ++n, y += LINE_HEIGHT_PX) {
    const PaneLine& line = pane.lines[n];
    row_text_draw(line.colour, pane.x, y, line.text.copy().text);
  }
}

void pane_reset() {
  pane_show(false);
  pane_page("%s", "");
}
