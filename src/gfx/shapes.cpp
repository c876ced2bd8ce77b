#include <cmath>
#include <cstdint>
#include <utility>

#include "gfx/panel.h"
#include "gfx/texture.h"
#include "platform/display.h"

void gfx_quad_draw(const GlTexture* texture, float x0, float y0, float x1, float y1, float x2,
                   float y2, float x3, float y3, std::uint32_t colour_a, std::uint32_t colour_b) {
  constexpr std::uint32_t WHITE = 0xFFFFFFFF;
  const bool textured = texture != nullptr;
  if (textured && texture->id == 0) return;
  DisplayQuad quad{};
  quad.texture = textured ? texture->id : 0;
  // Given row by row, drawn round: the last two corners change places.
  const float x[4] = {x0, x1, x3, x2};
  const float y[4] = {y0, y1, y3, y2};
  const float u[4] = {0.0F, 1.0F, 1.0F, 0.0F};
  const float v[4] = {0.0F, 0.0F, 1.0F, 1.0F};
  const std::uint32_t colours[4] = {colour_a, colour_b, colour_b, colour_a};
  for (int i = 0; i < 4; ++i) {
    quad.x[i] = x[i];
    quad.y[i] = y[i];
    quad.u[i] = u[i];
    quad.v[i] = v[i];
    quad.colour[i] = textured ? WHITE : colours[i];
  }
  display_draw_quad(quad);
}

void gfx_rect_draw(int x, int y, int width, int height, std::uint32_t colour_a,
                   std::uint32_t colour_b) {
  const auto left = static_cast<float>(x);
  const auto top = static_cast<float>(y);
  const auto right = static_cast<float>(x + width);
  const auto bottom = static_cast<float>(y + height);
  gfx_quad_draw(nullptr, left, top, right, top, left, bottom, right, bottom, colour_a, colour_b);
}

void gfx_line_to_quad(float half_width, int x0, int y0, int x1, int y1, float corners[8]) {
  float dx = 0.0F;
  float dy = -half_width;
  if (y1 != y0) {
    const float m = static_cast<float>(x0 - x1) / static_cast<float>(y1 - y0);
    const float n = 1.0F / std::sqrt(m * m + 1.0F);
    dx = n * half_width;
    dy = m * half_width * n;
  }
  const auto fx0 = static_cast<float>(x0);
  const auto fy0 = static_cast<float>(y0);
  const auto fx1 = static_cast<float>(x1);
  const auto fy1 = static_cast<float>(y1);
  const float found[8] = {fx0 + dx, fy0 + dy, fx1 + dx, fy1 + dy,
                          fx0 - dx, fy0 - dy, fx1 - dx, fy1 - dy};
  for (int i = 0; i < 8; ++i) corners[i] = found[i];
  if (y1 < y0 || x1 < x0) {
    for (const int i : {0, 1, 4, 5}) std::swap(corners[i], corners[i + 2]);
  }
}

void gfx_line_draw(const GlTexture* texture, float half_width, int x0, int y0, int x1, int y1,
                   std::uint32_t colour) {
  float c[8];
  gfx_line_to_quad(half_width, x0, y0, x1, y1, c);
  gfx_quad_draw(texture, c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], colour, colour);
}
