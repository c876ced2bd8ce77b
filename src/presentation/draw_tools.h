// What all drawing of the game is made of: pictures, cells and shadowed words with their scratch
// fields set, so that nothing depends on who drew before. Main thread only.
#pragma once

#include <cstdint>

#include "gfx/panel_table.h"
#include "gfx/text.h"  // COLOUR_WHITE, COLOUR_BLACK, Font

constexpr int HALF_WIDTH_PX = LAYOUT_WIDTH / 2;  // from a place on the left to that on the right

// Half a glyph of FONT_14X22, by which values and signs are centred.
constexpr int GLYPH_HALF_WIDTH_PX = FONTS[FONT_14X22].glyph_width / 2;
constexpr int GLYPH_HALF_HEIGHT_PX = FONTS[FONT_14X22].glyph_height / 2;

// White with an alpha of 0 to 255, for fades; black for its shadow.
inline std::uint32_t faded(std::uint32_t colour, std::int32_t alpha) {
  return static_cast<std::uint32_t>(alpha & 0xFF) << 24 | (colour & 0x00FFFFFF);
}

// A picture with its top left corner at (x, y), in a colour, mirrored if asked.
void picture_draw(PanelIndex picture, int x, int y, std::uint32_t colour = COLOUR_WHITE,
                  bool flip = false);

// A whole picture, scaled.
void picture_draw_scaled(PanelIndex picture, int x, int y, float scale,
                         std::uint32_t colour = COLOUR_WHITE);

// A cell of a sheet. A sheet that is drawn with a scale stays one that can be scaled.
void cell_draw(SheetIndex sheet, int frame, int x, int y, std::uint32_t colour = COLOUR_WHITE,
               bool flip = false);
void cell_draw_scaled(SheetIndex sheet, int frame, int x, int y, float scale,
                      std::uint32_t colour = COLOUR_WHITE);

// A line in white over its black shadow, two pixels right and below.
void text_shadowed(int font, int x, int y, const char* line);

// How many characters wide a number counts where it is centred: 1, 2, or `large` from 100 on.
inline int digits_counted(std::int32_t value, int large) {
  return value < 10 ? 1 : value < 100 ? 2 : large;
}

// Are there tickets to be shown on the field: "Ticket Use" on and "Fixed Ticket" off?
bool tickets_advertised();

// A value as it is advertised: no higher than "Maximum Tickets".
std::int32_t value_advertised(std::int32_t value);
