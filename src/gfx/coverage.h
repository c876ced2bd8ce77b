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

// Looks at the alpha of a whole texture of `width` by `height` pixels, 4 bytes each, alpha last.
Coverage coverage_make(std::int32_t width, std::int32_t height, const std::uint8_t* pixels);

struct CoverageParts {
  PixelRect box;   // outside it nothing of the rectangle is seen
  PixelRect core;  // inside it all pixels are opaque; the largest there is
};

// What a source rectangle shows. The box takes in what lies one pixel beside the rectangle too, and
// may then reach out of it by that one: a scaled picture's edge may come from there. A rectangle
// that leaves the texture is its own box.
CoverageParts coverage_parts(const Coverage& coverage, const PixelRect& rect);

// The same from a table of the rectangles asked for lately. `texture` is the name that the coverage
// belongs to, which is never used again for another one.
const CoverageParts& coverage_recall(std::uint32_t texture, const Coverage& coverage,
                                     const PixelRect& rect);
