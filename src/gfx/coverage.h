// Where a picture has something to show, so that only that needs to be filled.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct PixelRect {  // pixels of a picture; no width: empty
  std::int32_t x, y, width, height;
};

// A texture in square tiles, a bit each in rows of whole words: is any of its pixels seen, are all
// of them opaque?
struct Coverage {
  std::int32_t width, height;  // the texture's, in pixels
  std::int32_t tiles_across, tiles_down;
  std::size_t words_per_row;
  std::vector<std::uint64_t> seen;
  std::vector<std::uint64_t> opaque;
};

constexpr int COVERAGE_TILE_PX = 8;

// Looks at the alpha of a whole texture: a byte for each pixel, `step` bytes apart.
Coverage coverage_make(std::int32_t width, std::int32_t height, const std::uint8_t* alpha,
                       std::size_t step);

// The box of what is seen of a rectangle inside the texture, cut to the rectangle.
PixelRect coverage_seen_box(const Coverage& coverage, const PixelRect& rect);

// The same with what lies one pixel beside the rectangle, where the box may then reach: a scaled
// picture's edge may come from there. A rectangle that leaves the texture is its own box.
PixelRect coverage_box_with_edge(const Coverage& coverage, const PixelRect& rect);

// The largest rectangle of opaque tiles in a rectangle inside the texture, cut to it.
PixelRect coverage_opaque_core(const Coverage& coverage, const PixelRect& rect);

// True if the rectangle has pixels and all of them lie in the texture.
bool coverage_holds(const Coverage& coverage, const PixelRect& rect);
