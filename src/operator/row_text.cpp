#include "operator/row_text.h"

#include <cstddef>

#include "gfx/text.h"

void row_text_draw(std::uint32_t colour, int x, int y, const char* text) {
  char line[128];  // longer than any row or pane line
  std::size_t length = 0;
  for (const char* c = text; *c != '\0' && length + 1 < sizeof line; ++c) {
    line[length++] = *c;
    if (c[0] == '%' && c[1] == '%') ++c;
  }
  line[length] = '\0';
  text_draw(FONT_8X12, colour, x, y, "%s", line);
}
