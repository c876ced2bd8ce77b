// The bitmap fonts. Glyphs are white: the game tints them.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "art/catalogue.h"
#include "art/palette.h"
#include "art/relief.h"

namespace art {

namespace {

// The sign "@" stands for the money of the unit Euro.
std::string glyph_text(int glyph) {
  char ch = GLYPH_ORDER[glyph];
  return ch == '@' ? "\u20ac" : std::string(1, ch);
}

bool is_digit(int glyph) {
  return std::strchr("0123456789", GLYPH_ORDER[glyph]) != nullptr;
}

// Small letters are even taller, because they must be readable from the same distance.
constexpr double kBaseline = 0.78, kTaller = 1.22, kSmallBaseline = 0.85, kSmallTaller = 1.40;

// One size and one baseline for all. Glyphs that are too wide are made narrower, digits all to the
// same width. The face is broad and the cells are narrow, so letters are stretched upwards. `over`
// pixels on each side will be trimmed off again. Returns by how much the glyph was narrowed, 1: not
// at all.
double fill_glyph(cairo_t* c, const Cell& cell, const char* text, double over) {
  const bool small = cell.height < 30;
  const double gutter = small ? 0.95 - over : cell.height * 0.03;
  const double room = cell.width - 2 * gutter;
  const double size = cell.height * 0.86;
  const double baseline = cell.height * (small ? kSmallBaseline : kBaseline);
  Ink ink = words_path(c, text, Face::kChunky, size);
  const char mark = GLYPH_ORDER[cell.frame];
  const double k = is_digit(cell.frame) ? room * 0.92 / ink.width
                   : mark == '?'        ? std::min(1.3, room / ink.width)
                                        : std::min(1.0, room / ink.width);
  // A mark that is too high or too low for the cell is moved into it.
  const double taller = small ? kSmallTaller : mark == '$' ? 1.0 : kTaller;
  const double tall = std::min(taller, (cell.height - 2 * gutter) / ink.height);
  const double top = ink.y * tall, foot = (ink.y + ink.height) * tall;
  double low = std::max(0.0, gutter - (baseline + top));
  double high = std::max(0.0, baseline + foot - (cell.height - gutter));
  cairo_translate(c, cell.width / 2.0, baseline + low - high);
  cairo_scale(c, k, tall);
  cairo_translate(c, -ink.x - ink.width / 2, 0);
  words_path(c, text, Face::kChunky, size);
  set(c, kWhite);
  cairo_fill(c);
  return k;
}

// Paints a canvas `fine` times too large, in white, and trims a rim of `pare` of its pixels.
void paint_pared(cairo_t* c, Canvas& big, int fine, double pare) {
  cairo_surface_flush(big.surface);
  const unsigned char* data = cairo_image_surface_get_data(big.surface);
  const int stride = cairo_image_surface_get_stride(big.surface);
  auto inked = [&](int x, int y) {
    return x >= 0 && y >= 0 && x < big.width && y < big.height &&
           data[static_cast<ptrdiff_t>(y) * stride + x * 4 + 3] > 127;
  };
  const int reach = static_cast<int>(pare);
  auto kept = [&](int x, int y) {
    for (int j = -reach; j <= reach; j++)
      for (int i = -reach; i <= reach; i++)
        if (i * i + j * j <= pare * pare && !inked(x + i, y + j)) return false;
    return true;
  };
  for (int y = 0; y < big.height / fine; y++) {
    for (int x = 0; x < big.width / fine; x++) {
      int count = 0;
      for (int j = 0; j < fine; j++)
        for (int i = 0; i < fine; i++) count += kept(x * fine + i, y * fine + j);
      if (count == 0) continue;
      set(c, kWhite, static_cast<double>(count) / (fine * fine));
      cairo_rectangle(c, x, y, 1, 1);
      cairo_fill(c);
    }
  }
}

// Letters that the face's hinting draws badly at this size, row by row, bit 7 at the left.
struct PixelGlyph {
  char letter;
  uint8_t rows[8];
};
constexpr PixelGlyph kPixelGlyphs[] = {
    {'M', {0xC6, 0xEE, 0xFE, 0xD6, 0xC6, 0xC6, 0xC6, 0xC6}},
    {'W', {0xC6, 0xC6, 0xC6, 0xC6, 0xD6, 0xFE, 0xEE, 0xC6}},
    {'?', {0x7C, 0xC6, 0x06, 0x0C, 0x18, 0x00, 0x18, 0x18}},
    {'&', {0x38, 0x6C, 0x38, 0x76, 0xDC, 0xCC, 0xCC, 0x76}},
};

void draw_glyph_8x12(const Cell& cell) {
  // Without shades: everything except the key colour is opaque.
  cairo_t* c = cell.ctx;
  set(c, kWhite);
  for (const PixelGlyph& own : kPixelGlyphs) {
    if (own.letter != GLYPH_ORDER[cell.frame]) continue;
    for (int y = 0; y < 8; y++)
      for (int x = 0; x < 8; x++)
        if (own.rows[y] << x & 0x80) cairo_rectangle(c, x, y + 1, 1, 1);
    cairo_fill(c);
    return;
  }
  std::string text = glyph_text(cell.frame);
  cairo_font_options_t* o = cairo_font_options_create();
  cairo_font_options_set_antialias(o, CAIRO_ANTIALIAS_NONE);
  cairo_font_options_set_hint_style(o, CAIRO_HINT_STYLE_FULL);
  cairo_set_font_options(c, o);
  cairo_font_options_destroy(o);
  cairo_select_font_face(c, "DejaVu Sans Mono", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(c, 11);
  cairo_move_to(c, 0, 9);
  cairo_show_text(c, text.c_str());
}

void draw_credit_digit(const Cell& cell) {
  const char digit = static_cast<char>('0' + cell.frame);
  Cell glyph = cell;
  glyph.frame = static_cast<int>(std::strchr(GLYPH_ORDER, digit) - GLYPH_ORDER);
  draw_glyph_8x12(glyph);
}

void draw_glyph_chunky(const Cell& cell) {
  const std::string text = glyph_text(cell.frame);
  if (text == " ") return;
  if (cell.height >= 60) {
    Canvas glyph(cell.width, cell.height);
    fill_glyph(glyph.ctx, cell, text.c_str(), 0);
    paint_canvas(cell.ctx, glyph, 0, 0);
    return;
  }
  // The face is heavy: in small sizes its holes would close. So the letters are trimmed, most where
  // a broad one was narrowed.
  const int fine = 8;
  Canvas glyph(cell.width * fine, cell.height * fine);
  cairo_scale(glyph.ctx, fine, fine);
  const double squeeze = fill_glyph(glyph.ctx, cell, text.c_str(), 0.4);
  const double pare =
      std::clamp(0.5 + 1.5 * (1 - squeeze), 0.5, 1.15) * (cell.height < 30 ? 1.0 : 1.3);
  paint_pared(cell.ctx, glyph, fine, pare * fine);
}

void draw_jackpot_digit(const Cell& cell, int digit) {
  const std::string text(1, static_cast<char>('0' + digit));
  // 150 pixels from digit to digit.
  const double width = 126, height = 168, depth = 11;
  const Path ink = [=](cairo_t* c) {
    cairo_save(c);
    const Ink own = words_path(c, text.c_str(), Face::kChunky, 236);
    cairo_translate(c, 128, 106 - depth / 2);  // clear of the word below
    cairo_scale(c, std::min(1.0, width / own.width), height / own.height);
    cairo_translate(c, -own.x - own.width / 2, -own.y - own.height / 2);
    words_path(c, text.c_str(), Face::kChunky, 236);
    cairo_restore(c);
  };
  Block style = kGoldLetters;
  style.rim = 9;
  style.depth = depth;
  style.relief.bevel = 17;
  block(cell.ctx, ink, style, 18, 190);
}

// Its glyphs lie at the top left of a picture that may be larger.
constexpr CatalogueRow font(Font index, int width, int height, Draw draw) {
  const FontRow& row = FONTS[index];
  return {row.file,      width,       height,          GLYPH_COLUMNS,
          GLYPH_ROWS,    GLYPH_COUNT, row.glyph_width, row.glyph_height,
          Play::kGlyphs, Twin::kNone, kTouchNone,      draw};
}

constexpr CatalogueRow kRows[] = {
    still(PANEL_JACK_0, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 0); }),
    still(PANEL_JACK_1, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 1); }),
    still(PANEL_JACK_2, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 2); }),
    still(PANEL_JACK_3, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 3); }),
    still(PANEL_JACK_4, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 4); }),
    still(PANEL_JACK_5, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 5); }),
    still(PANEL_JACK_6, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 6); }),
    still(PANEL_JACK_7, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 7); }),
    still(PANEL_JACK_8, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 8); }),
    still(PANEL_JACK_9, 256, 256, [](const Cell& c) { draw_jackpot_digit(c, 9); }),
    font(FONT_8X12, 128, 72, draw_glyph_8x12),
    font(FONT_11X17, 256, 128, draw_glyph_chunky),
    font(FONT_14X22, 256, 256, draw_glyph_chunky),
    font(FONT_29X43, 512, 512, draw_glyph_chunky),
    font(FONT_58X90, 1024, 1024, draw_glyph_chunky),
    font(FONT_78X120, 2048, 1024, draw_glyph_chunky),
    {NUMBER_FONT_FILE, 80, 12, 10, 1, 10, 8, 12, Play::kGlyphs, Twin::kNone, kTouchNone,
     draw_credit_digit},
};

}  // namespace

const Family kFontsFamily{"art/fonts.cpp", kRows};

}  // namespace art
