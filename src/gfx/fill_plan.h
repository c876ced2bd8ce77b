// How a source rectangle is filled with least work: as a few pieces where something is seen, those
// that are opaque without blending. Main thread only.
#pragma once

#include <cstdint>
#include <span>

#include "gfx/coverage.h"

struct FillPiece {  // pixels of the texture
  std::int16_t x, y, width, height;
  bool opaque;
};

struct FillPlan {
  PixelRect box;  // outside it nothing is seen, even where a scaled picture's edge errs by a pixel
  bool pieced;    // false: the rectangle leaves the texture, and there are no pieces
  std::span<const FillPiece> pieces;  // disjoint; what they leave out is transparent
};

// The plan for a rectangle of a texture, from a table of those asked for lately. `texture` is the
// name that the coverage belongs to, which is never used again for another one. Valid until the
// next call.
const FillPlan& fill_plan_recall(std::uint32_t texture, const Coverage& coverage,
                                 const PixelRect& rect);
