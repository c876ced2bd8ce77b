// Sheets without pictures: cells of 256 x 256, for tests that draw nothing.
#pragma once

#include "gfx/panel_table.h"

inline void plain_sheets() {
  sheet_table_fill();
  for (const SpriteSheet& sheet : sheets) {
    sheet.panel->width = 256 * sheet.columns;
    sheet.panel->height = 256 * sheet.rows;
  }
}
