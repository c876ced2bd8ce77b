#include "gfx/text.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "gfx/panel.h"

namespace {

constexpr int LINE_SIZE = 128;  // with the ending zero
constexpr int CODES = 128;

#define IN_FOLDER(symbol, file, ...) "images\\fonts\\" file,
constexpr PanelName font_names[FONT_COUNT] = {FONT_LIST(IN_FOLDER)};
#undef IN_FOLDER

constexpr std::array<std::uint8_t, CODES> glyphs_by_code() {
  std::array<std::uint8_t, CODES> map{};
  map.fill(GLYPH_BLANK);
  for (std::uint8_t i = 0; i < GLYPH_BLANK; ++i) {
    map[static_cast<unsigned char>(GLYPH_ORDER[i])] = i;
  }
  return map;
}
constexpr std::array<std::uint8_t, CODES> glyph_of_code = glyphs_by_code();

constinit Panel font_panels[FONT_COUNT]{};

// Points the font's Panel at a character and draws it at (x, y).
void glyph_draw(Panel& panel, const FontRow& row, char character, std::uint32_t colour, int x,
                int y) {
  const auto code = static_cast<unsigned char>(character);
  const int glyph = code < CODES ? glyph_of_code[code] : GLYPH_BLANK;
  panel.flags |= PANEL_SOURCE_RECT;
  panel.src_w = row.glyph_width;
  panel.src_h = row.glyph_height;
  panel.src_x = row.glyph_width * (glyph % GLYPH_COLUMNS);
  panel.src_y = row.glyph_height * (glyph / GLYPH_COLUMNS);
  panel.x = x;
  panel.y = y;
  panel.colour = colour;
  gfx_panel_draw(panel);
  panel.colour = COLOUR_WHITE;
}

}  // namespace

int text_fonts_load() {
  gfx_panels_load(font_panels, FONT_COUNT, font_names);
  return 1;
}

int text_fonts_free() {
  gfx_panels_free(font_panels, FONT_COUNT);
  return 1;
}

int text_width(int font, const char* string) {
  return FONTS[font].glyph_width * static_cast<int>(std::strlen(string));
}

void text_draw(int font, std::uint32_t colour, int x, int y, const char* format, ...) {
  char line[LINE_SIZE];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  const FontRow& row = FONTS[font];
  int pen = x;
  for (const char* c = line; *c != '\0'; ++c) {
    glyph_draw(font_panels[font], row, *c, colour, pen, y);
    pen += row.glyph_width;
  }
}

void text_draw_scaled(int font, std::uint32_t colour, int x, int y, float scale_x, float scale_y,
                      const char* format, ...) {
  char line[LINE_SIZE];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  const FontRow& row = FONTS[font];
  Panel& panel = font_panels[font];
  int pen = x;
  for (const char* c = line; *c != '\0'; ++c) {
    panel.flags |= PANEL_SCALED;
    panel.scale_x = scale_x;
    panel.scale_y = scale_y;
    glyph_draw(panel, row, *c, colour, pen, y);
    panel.scale_x = panel.scale_y = 1.0F;  // the flag stays, and does no harm so
    pen += static_cast<int>(static_cast<float>(row.glyph_width) * scale_x);
  }
}
