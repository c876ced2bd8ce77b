#include "gfx/panel_table.h"

#include <cstdint>

#include "platform/memory.h"  // memory_keep_freed

namespace {

#define IN_FOLDER(symbol, file, ...) "images\\" file,
constexpr PanelName panel_names[PANEL_COUNT] = {PICTURE_LIST(IN_FOLDER) SHEET_LIST(IN_FOLDER)};
#undef IN_FOLDER

constexpr PanelName number_font_names[1] = {"images\\fonts\\" NUMBER_FONT_FILE};

}  // namespace

Panel panels[PANEL_COUNT];
SpriteSheet sheets[SHEET_COUNT];
NumberFont number_font;

void panel_table_load() {
  gfx_numbers_load(&number_font, 1, number_font_names);
  memory_keep_freed(true);
  gfx_panels_load(panels, PANEL_COUNT, panel_names);
  memory_keep_freed(false);
}

void panel_table_free() {
  gfx_panels_free(panels, PANEL_COUNT);
  gfx_numbers_free(&number_font, 1);
}

void sheet_table_fill() {
  for (int i = 0; i < SHEET_COUNT; ++i) {
    const SheetRow& row = SHEETS[i];
    Panel& panel = panels[int{PANEL_FIRST_SHEET} + i];
    sheets[i] = {&panel, row.columns, row.rows, row.frames};
    panel.flags |= PANEL_SOURCE_RECT;
    panel.src_w = panel.width / row.columns;
    panel.src_h = panel.height / row.rows;
    if (row.scaled) {
      panel.flags |= PANEL_SCALED;
      panel.scale_x = panel.scale_y = 1.0F;
    }
  }
}

float sheet_half_width(const SpriteSheet& sheet) {
  const std::int32_t cell = sheet.panel->width / sheet.columns;  // whole pixels, as a cell is drawn
  return static_cast<float>(cell) * 0.5F;
}

float sheet_half_height(const SpriteSheet& sheet) {
  const std::int32_t cell = sheet.panel->height / sheet.rows;  // whole pixels, as a cell is drawn
  return static_cast<float>(cell) * 0.5F;
}
