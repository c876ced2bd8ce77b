// The textured rectangle that all pictures and text are drawn with. Main thread only.
#pragma once

#include <cstdint>

struct GlTexture;

// Draws a source rectangle of a texture, in pixels, onto a destination, in layout pixels; turned
// about the destination's centre by `rotation` degrees, counter-clockwise, tinted with `colour`
// (0xAARRGGBB), mirrored left to right if `flip` isn't 0. Returns 0 for a null texture, else 1.
int gfx_blit(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
             const GlTexture* texture, std::int32_t src_x, std::int32_t src_y, std::int32_t src_w,
             std::int32_t src_h, float rotation, std::uint32_t colour, int flip);

inline int gfx_blit_tinted(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                           const GlTexture* texture, std::int32_t src_x, std::int32_t src_y,
                           std::int32_t src_w, std::int32_t src_h, std::uint32_t colour, int flip) {
  return gfx_blit(x, y, width, height, texture, src_x, src_y, src_w, src_h, 0.0F, colour, flip);
}

inline int gfx_blit_rotated(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                            const GlTexture* texture, std::int32_t src_x, std::int32_t src_y,
                            std::int32_t src_w, std::int32_t src_h, float rotation) {
  return gfx_blit(x, y, width, height, texture, src_x, src_y, src_w, src_h, rotation, 0xFFFFFFFF,
                  0);
}

// True: rectangles are filled whole, also where nothing of them is seen. The picture is the same;
// tests and the benchmark compare the two.
inline constinit bool gfx_blit_whole = false;
