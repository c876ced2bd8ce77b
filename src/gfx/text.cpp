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
  panel.flags |= PANEL_SOURCE_RECT | PANEL_SCALED;
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

void line_draw(int font, std::uint32_t colour, int x, int y, float scale_x, float scale_y,
               const char* format, va_list arguments) {
  char line[LINE_SIZE];
  std::vsnprintf(line, sizeof line, format, arguments);
  const FontRow& row = FONTS[font];
  Panel& panel = font_panels[font];
  panel.scale_x = scale_x;
  panel.scale_y = scale_y;
  int pen = x;
  for (const char* c = line; *c != '\0'; ++c) {
    glyph_draw(panel, row, *c, colour, pen, y);
    pen += static_cast<int>(static_cast<float>(row.glyph_width) * scale_x);
  }
  panel.scale_x = panel.scale_y = 1.0F;
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
  va_list arguments;
  va_start(arguments, format);
  line_draw(font, colour, x, y, 1.0F, 1.0F, format, arguments);
  va_end(arguments);
}

void text_draw_scaled(int font, std::uint32_t colour, int x, int y, float scale_x, float scale_y,
                      const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  line_draw(font, colour, x, y, scale_x, scale_y, format, arguments);
  va_end(arguments);
}
