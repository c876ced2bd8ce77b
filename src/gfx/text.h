// Text from fixed-pitch bitmap fonts. Main thread only.
#pragma once

#include <cstdint>

#include "gfx/picture_list.h"  // Font

constexpr std::uint32_t COLOUR_WHITE = 0xFFFFFFFF;
constexpr std::uint32_t COLOUR_BLACK = 0xFF000000;

int text_fonts_load();  // returns 1
int text_fonts_free();  // returns 1

// Width in pixels, unscaled.
int text_width(int font, const char* string);

// Formats a line by the printf rules, at most 127 characters, and draws it with its top left corner
// at (x, y).
[[gnu::format(printf, 5, 6)]] void text_draw(int font, std::uint32_t colour, int x, int y,
                                             const char* format, ...);
[[gnu::format(printf, 7, 8)]] void text_draw_scaled(int font, std::uint32_t colour, int x, int y,
                                                    float scale_x, float scale_y,
                                                    const char* format, ...);
