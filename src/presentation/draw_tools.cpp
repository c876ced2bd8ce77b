#include "presentation/draw_tools.h"

#include <algorithm>

#include "books/prefs.h"
#include "gfx/panel.h"
#include "playfield/paytable.h"  // maximum_value

void picture_draw(PanelIndex picture, int x, int y, std::uint32_t colour, bool flip) {
  Panel panel = panels[picture];
  panel.x = x;
  panel.y = y;
  panel.colour = colour;
  panel.flip = flip ? 1 : 0;
  gfx_panel_draw(panel);
}

// Only a source rectangle can be scaled, so the whole picture is made one.
void picture_draw_scaled(PanelIndex picture, int x, int y, float scale, std::uint32_t colour) {
  Panel panel = panels[picture];
  panel.x = x;
  panel.y = y;
  panel.colour = colour;
  panel.flags |= PANEL_SOURCE_RECT | PANEL_SCALED;
  panel.src_x = panel.src_y = 0;
  panel.src_w = panel.width;
  panel.src_h = panel.height;
  panel.scale_x = panel.scale_y = scale;
  gfx_panel_draw(panel);
}

void cell_draw(SheetIndex sheet, int frame, int x, int y, std::uint32_t colour, bool flip) {
  Panel& panel = *sheets[sheet].panel;
  panel.colour = colour;
  panel.flip = flip ? 1 : 0;
  if ((panel.flags & PANEL_SCALED) != 0) panel.scale_x = panel.scale_y = 1.0F;
  gfx_sheet_draw(sheets[sheet], frame, x, y);
  panel.flip = 0;
}

void cell_draw_scaled(SheetIndex sheet, int frame, int x, int y, float scale,
                      std::uint32_t colour) {
  Panel& panel = *sheets[sheet].panel;
  panel.colour = colour;
  panel.flip = 0;
  panel.flags |= PANEL_SCALED;
  panel.scale_x = panel.scale_y = scale;
  gfx_sheet_draw(sheets[sheet], frame, x, y);
}

void text_shadowed(int font, int x, int y, const char* line) {
  text_draw(font, COLOUR_BLACK, x + 2, y + 2, "%s", line);
  text_draw(font, COLOUR_WHITE, x, y, "%s", line);
}

bool tickets_advertised() {
  return pref_on(PREF_TICKET_USE) && !pref_on(PREF_FIXED_TICKET);
}

std::int32_t value_advertised(std::int32_t value) {
  return std::min(value, maximum_value());
}
