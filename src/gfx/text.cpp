#include "gfx/text.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "gfx/panel.h"

namespace {

constexpr int LINE_SIZE = 128;  // with the ending zero
constexpr int COLUMNS = 16;
constexpr int BLANK = 94;
constexpr int CODES = 128;

constexpr char glyph_order[] =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890"
    "!@#$%^&*()`~-_=+[{]}\\|;:'\",<.>/? ";
static_assert(sizeof glyph_order == BLANK + 2 && glyph_order[BLANK] == ' ');

struct FontRow {
  Font font;
  int glyph_width, glyph_height;
};

constexpr FontRow font_rows[FONT_COUNT] = {{FONT_8X12, 8, 12},   {FONT_11X17, 11, 17},
                                           {FONT_14X22, 14, 22}, {FONT_29X43, 29, 43},
                                           {FONT_58X90, 58, 90}, {FONT_78X120, 78, 120}};

constexpr PanelName font_names[FONT_COUNT] = {
    R"(images\fonts\font8x12.bmp)",    R"(images\fonts\zoinks11x17.tga)",
    R"(images\fonts\zoinks14x22.tga)", R"(images\fonts\zoinks29x43.tga)",
    R"(images\fonts\zoinks58x90.tga)", R"(images\fonts\zoinks78x120.tga)",
};

constexpr bool rows_in_order() {
  for (int i = 0; i < FONT_COUNT; ++i) {
    if (font_rows[i].font != i) return false;
  }
  return true;
}
static_assert(rows_in_order());

constexpr std::array<std::uint8_t, CODES> glyphs_by_code() {
  std::array<std::uint8_t, CODES> map{};
  map.fill(BLANK);
  for (std::uint8_t i = 0; i < BLANK; ++i) map[static_cast<unsigned char>(glyph_order[i])] = i;
  return map;
}
constexpr std::array<std::uint8_t, CODES> glyph_of_code = glyphs_by_code();

constinit Panel font_panels[FONT_COUNT]{};

// Points the font's Panel at a character and draws it at (x, y).
void glyph_draw(Panel& panel, const FontRow& row, char character, std::uint32_t colour, int x,
                int y) {
  const auto code = static_cast<unsigned char>(character);
  const int glyph = code < CODES ? glyph_of_code[code] : BLANK;
  panel.flags |= PANEL_SOURCE_RECT;
  panel.src_w = row.glyph_width;
  panel.src_h = row.glyph_height;
  panel.src_x = row.glyph_width * (glyph % COLUMNS);
  panel.src_y = row.glyph_height * (glyph / COLUMNS);
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
  return font_rows[font].glyph_width * static_cast<int>(std::strlen(string));
}

void text_draw(int font, std::uint32_t colour, int x, int y, const char* format, ...) {
  char line[LINE_SIZE];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  const FontRow& row = font_rows[font];
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
  const FontRow& row = font_rows[font];
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
