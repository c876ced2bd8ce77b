// Pictures as records, cells of sprite sheets, digits and plain quads. Main thread only, except for
// the fields that are Shared.
#pragma once

#include <cstdint>

struct GlTexture;  // gfx/texture.h

enum PanelFlags : std::uint32_t {
  PANEL_HALF_SIZE = 0x02,    // half of width and height, truncated, unless PANEL_SOURCE_RECT
  PANEL_SOURCE_RECT = 0x04,  // only the source rectangle, at its own size
  PANEL_SCALED = 0x08,       // with PANEL_SOURCE_RECT: times the scale factors, truncated
  PANEL_ROTATED = 0x10,      // turned about the centre, white, never flipped
};

constexpr int PANEL_NAME_SIZE = 255;
using PanelName = char[PANEL_NAME_SIZE];

struct Panel {
  GlTexture* texture;  // owned
  std::int32_t x, y;   // where the next draw puts its top left corner, layout pixels
  std::int32_t width, height;
  float scale_x, scale_y;
  std::int32_t visible;
  std::uint32_t flags;
  std::uint32_t colour;  // 0xAARRGGBB
  std::int32_t src_x, src_y, src_w, src_h;
  float rotation;  // degrees, counter-clockwise
  PanelName name;
  std::int32_t flip;
};

struct SpriteSheet {
  Panel* panel;  // not owned
  std::int32_t columns, rows;
  std::int32_t frames;  // length of the animation, from cell 0, row by row
};

struct NumberFont {
  GlTexture* texture;
  std::int32_t digit_width, height;
  PanelName name;
};

// Loads `count` pictures from consecutive name slots. A file that can't be read leaves a Panel of
// no size that draws nothing. Returns 0.
int gfx_panels_load(Panel* table, int count, const PanelName* names);
int gfx_panels_free(Panel* table, int count);

// The same for digit strips; the table becomes the one that gfx_number_draw reads.
int gfx_numbers_load(NumberFont* table, int count, const PanelName* names);
int gfx_numbers_free(NumberFont* table, int count);

// Draws a copy of the record as it stands.
void gfx_panel_draw(Panel panel);

// Draws cell `frame` of a sheet at (x, y). Writes the Panel's place and source rectangle. The
// frame isn't held to the sheet: the caller keeps it there.
void gfx_frame_draw(Panel* panel, int columns, int rows, int frames, int frame, int x, int y);
inline void gfx_sheet_draw(const SpriteSheet& sheet, int frame, int x, int y) {
  gfx_frame_draw(sheet.panel, sheet.columns, sheet.rows, sheet.frames, frame, x, y);
}

// Draws a whole number from digit cells. Flags: 1 as many digits as the value has, 2 centred on x,
// 4 ending at x. Returns 0.
int gfx_number_draw(int value, int font, int x, int y, int digit_width, int digit_height,
                    int digits, int flags);

// A quad in the order top left, top right, bottom left, bottom right. Without a texture a gradient
// from colour_a at the left to colour_b at the right.
void gfx_quad_draw(const GlTexture* texture, float x0, float y0, float x1, float y1, float x2,
                   float y2, float x3, float y3, std::uint32_t colour_a, std::uint32_t colour_b);
void gfx_rect_draw(int x, int y, int width, int height, std::uint32_t colour_a,
                   std::uint32_t colour_b);
void gfx_line_draw(const GlTexture* texture, float half_width, int x0, int y0, int x1, int y1,
                   std::uint32_t colour);
void gfx_line_to_quad(float half_width, int x0, int y0, int x1, int y1, float corners[8]);
