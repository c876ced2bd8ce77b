// What all drawing of the game is made of: pictures, cells and shadowed words with their scratch
// fields set, so that nothing depends on who drew before. Main thread only.
#pragma once

#include <cstdint>

#include "gfx/panel_table.h"
#include "gfx/text.h"  // COLOUR_WHITE, COLOUR_BLACK, Font

constexpr int HALF_WIDTH_PX = 680;  // the right half of the screen stands that far to the right

// White with an alpha of 0 to 255, for fades; black for its shadow.
inline std::uint32_t faded(std::uint32_t colour, std::int32_t alpha) {
  return static_cast<std::uint32_t>(alpha & 0xFF) << 24 | (colour & 0x00FFFFFF);
}

// A picture with its top left corner at (x, y), in a colour, mirrored if asked.
void picture_draw(PanelIndex picture, int x, int y, std::uint32_t colour = COLOUR_WHITE,
                  bool flip = false);

// A whole picture at a size of its own.
void picture_draw_scaled(PanelIndex picture, int x, int y, float scale,
                         std::uint32_t colour = COLOUR_WHITE);

// A cell of a sheet. A sheet that is drawn with a scale stays one that can be scaled.
void cell_draw(SheetIndex sheet, int frame, int x, int y, std::uint32_t colour = COLOUR_WHITE,
               bool flip = false);
void cell_draw_scaled(SheetIndex sheet, int frame, int x, int y, float scale,
                      std::uint32_t colour = COLOUR_WHITE);

// A line in white over its black shadow, two pixels right and below.
void text_shadowed(int font, int x, int y, const char* line);

// Characters that a number is reckoned with where it is centred: 1, 2, or `large` from 100 on.
inline int digits_reckoned(std::int32_t value, int large) {
  return value < 10 ? 1 : value < 100 ? 2 : large;
}

// Are there tickets to be shown on the field: "Ticket Use" on and "Fixed Ticket" off?
bool tickets_advertised();

// A value as it is advertised: no higher than "Maximum Tickets".
std::int32_t value_advertised(std::int32_t value);
