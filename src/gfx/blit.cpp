#include "gfx/blit.h"

#include <cmath>
#include <initializer_list>
#include <numbers>
#include <utility>

#include "gfx/fill_plan.h"
#include "gfx/texture.h"
#include "platform/display.h"

namespace {

// Below this a clip costs more than it saves, because it splits a batch of quads.
constexpr std::int32_t LEAST_SAVED_PX = 512;

struct Target {  // destination in layout pixels
  std::int32_t x, y, width, height;
};

std::uint32_t alpha_of(std::uint32_t colour) {
  return colour >> 24;
}

// Where a part of the source lands: the least box of whole layout pixels round it.
DisplayBox part_box(const Target& target, const PixelRect& rect, const PixelRect& part, bool flip) {
  const double scale_x = static_cast<double>(target.width) / rect.width;
  const double scale_y = static_cast<double>(target.height) / rect.height;
  const std::int32_t from_left = part.x - rect.x;
  const std::int32_t left = flip ? rect.width - from_left - part.width : from_left;
  const std::int32_t top = part.y - rect.y;
  const int x0 = static_cast<int>(std::floor(left * scale_x));
  const int y0 = static_cast<int>(std::floor(top * scale_y));
  const int x1 = static_cast<int>(std::ceil((left + part.width) * scale_x));
  const int y1 = static_cast<int>(std::ceil((top + part.height) * scale_y));
  return {target.x + x0, target.y + y0, x1 - x0, y1 - y0};
}

// Corners relative to the centre, turned. y runs downward here and upward in the angle's sense.
void corners_turn(const Target& target, float rotation, DisplayQuad& quad) {
  const float half_w = 0.5F * static_cast<float>(target.width);
  const float half_h = 0.5F * static_cast<float>(target.height);
  const float centre_x = static_cast<float>(target.x) + half_w;
  const float centre_y = static_cast<float>(target.y) + half_h;
  const float angle = rotation * std::numbers::pi_v<float> / 180.0F;
  const float cosine = std::cos(angle);
  const float sine = std::sin(angle);
  const float dx[4] = {-half_w, half_w, half_w, -half_w};
  const float dy[4] = {-half_h, -half_h, half_h, half_h};
  for (int i = 0; i < 4; ++i) {
    quad.x[i] = centre_x + dx[i] * cosine + dy[i] * sine;
    quad.y[i] = centre_y - dx[i] * sine + dy[i] * cosine;
  }
}

void corners_set(const Target& target, DisplayQuad& quad) {
  const auto x0 = static_cast<float>(target.x);
  const auto y0 = static_cast<float>(target.y);
  const auto x1 = static_cast<float>(target.x + target.width);
  const auto y1 = static_cast<float>(target.y + target.height);
  quad.x[0] = quad.x[3] = x0;
  quad.x[1] = quad.x[2] = x1;
  quad.y[0] = quad.y[1] = y0;
  quad.y[2] = quad.y[3] = y1;
}

void source_set(const GlTexture& texture, const PixelRect& rect, bool flip, DisplayQuad& quad) {
  const auto padded_w = static_cast<float>(gfx_padded_size(texture.width));
  const auto padded_h = static_cast<float>(gfx_padded_size(texture.height));
  float tex_u0 = static_cast<float>(rect.x) / padded_w;
  float tex_u1 = static_cast<float>(rect.x + rect.width) / padded_w;
  const float tex_v0 = static_cast<float>(rect.y) / padded_h;
  const float tex_v1 = static_cast<float>(rect.y + rect.height) / padded_h;
  if (flip) std::swap(tex_u0, tex_u1);
  quad.u[0] = quad.u[3] = tex_u0;
  quad.u[1] = quad.u[2] = tex_u1;
  quad.v[0] = quad.v[1] = tex_v0;
  quad.v[2] = quad.v[3] = tex_v1;
}

// Each texel falls on the middle of one window pixel: pieces of the picture can be drawn as quads
// of their own: no pixel lies between two texels, where rounding would decide.
void pieces_draw(const Target& target, const GlTexture& texture, const PixelRect& rect, bool flip,
                 const FillPlan& plan, DisplayQuad& quad) {
  const bool fading = alpha_of(quad.colour[0]) != 0xFF;
  for (const bool opaque : {true, false}) {  // in two batches
    quad.opaque = opaque && !fading;
    for (const FillPiece& piece : plan.pieces) {
      if (piece.opaque != opaque) continue;
      const PixelRect part{piece.x, piece.y, piece.width, piece.height};
      const std::int32_t from_left = part.x - rect.x;
      const std::int32_t left = flip ? rect.width - from_left - part.width : from_left;
      source_set(texture, part, flip, quad);
      corners_set({target.x + left, target.y + part.y - rect.y, part.width, part.height}, quad);
      display_draw_quad(quad);
    }
  }
}

// Elsewhere the picture is drawn as one quad, so that each pixel finds the texel that it would find
// without any saving, and only the fill outside of its box is cut off.
void box_draw(const Target& target, const GlTexture& texture, const PixelRect& rect, bool flip,
              const FillPlan& plan, DisplayQuad& quad) {
  const DisplayBox box = part_box(target, rect, plan.box, flip);
  if (target.width * target.height - box.width * box.height >= LEAST_SAVED_PX) {
    quad.clipped = true;
    quad.clip = box;
  }
  source_set(texture, rect, flip, quad);
  corners_set(target, quad);
  display_draw_quad(quad);
}

void upright_draw(const Target& target, const GlTexture& texture, const PixelRect& rect, bool flip,
                  DisplayQuad& quad) {
  const bool sound = rect.width > 0 && rect.height > 0 && target.width > 0 && target.height > 0;
  if (texture.coverage == nullptr || gfx_blit_whole || !sound) {
    source_set(texture, rect, flip, quad);
    corners_set(target, quad);
    display_draw_quad(quad);
    return;
  }
  const FillPlan& plan = fill_plan_recall(texture.id, *texture.coverage, rect);
  const bool unscaled = target.width == rect.width && target.height == rect.height;
  if (plan.pieced && unscaled && display_is_unscaled()) {
    pieces_draw(target, texture, rect, flip, plan, quad);
  } else if (plan.box.width > 0) {
    box_draw(target, texture, rect, flip, plan, quad);
  }
}

}  // namespace

int gfx_blit(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
             const GlTexture* texture, std::int32_t src_x, std::int32_t src_y, std::int32_t src_w,
             std::int32_t src_h, float rotation, std::uint32_t colour, int flip) {
  if (texture == nullptr) return 0;
  // A file that couldn't be read has no texture, and with alpha 0 nothing is seen.
  if (texture->id == 0 || alpha_of(colour) == 0) return 1;
  const Target target{x, y, width, height};
  const PixelRect rect{src_x, src_y, src_w, src_h};
  DisplayQuad quad{};
  quad.texture = texture->id;
  for (std::uint32_t& corner : quad.colour) corner = colour;
  if (rotation != 0.0F) {
    source_set(*texture, rect, flip != 0, quad);
    corners_turn(target, rotation, quad);
    display_draw_quad(quad);
  } else {
    upright_draw(target, *texture, rect, flip != 0, quad);
  }
  return 1;
}
