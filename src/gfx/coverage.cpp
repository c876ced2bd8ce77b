#include "gfx/coverage.h"

#include <algorithm>
#include <array>

namespace {

constexpr int TILE = COVERAGE_TILE_PX;
constexpr int WORD_BITS = 64;
constexpr std::uint32_t ALPHA_OPAQUE = 255;

// The bits from `first` up to, but not including, `end` of word number `word` of a row.
std::uint64_t word_mask(std::int32_t word, std::int32_t first, std::int32_t end) {
  const std::int32_t low = std::max(first - word * WORD_BITS, 0);
  const std::int32_t high = std::min(end - word * WORD_BITS, WORD_BITS);
  if (low >= high) return 0;
  const std::uint64_t up_to_high = high == WORD_BITS ? ~0ULL : (1ULL << high) - 1;
  return up_to_high & (~0ULL << low);
}

bool bit_at(const std::vector<std::uint64_t>& bits, std::size_t row_start, std::int32_t column) {
  return (bits[row_start + column / WORD_BITS] >> (column % WORD_BITS) & 1) != 0;
}

PixelRect united(const PixelRect& a, const PixelRect& b) {
  if (a.width == 0) return b;
  if (b.width == 0) return a;
  const std::int32_t x = std::min(a.x, b.x);
  const std::int32_t y = std::min(a.y, b.y);
  return {x, y, std::max(a.x + a.width, b.x + b.width) - x,
          std::max(a.y + a.height, b.y + b.height) - y};
}

// The same for a span that may lie one pixel outside of the texture: GL goes round there.
PixelRect seen_box_wrapped(const Coverage& coverage, const PixelRect& rect) {
  const std::int32_t dx = rect.x < 0                 ? coverage.width
                          : rect.x >= coverage.width ? -coverage.width
                                                     : 0;
  const std::int32_t dy = rect.y < 0                  ? coverage.height
                          : rect.y >= coverage.height ? -coverage.height
                                                      : 0;
  PixelRect box = coverage_seen_box(coverage, {rect.x + dx, rect.y + dy, rect.width, rect.height});
  box.x -= dx;
  box.y -= dy;
  return box;
}

}  // namespace

Coverage coverage_make(std::int32_t width, std::int32_t height, const std::uint8_t* alpha,
                       std::size_t step) {
  Coverage made{width, height, (width + TILE - 1) / TILE, (height + TILE - 1) / TILE, 0, {}, {}};
  made.words_per_row = (made.tiles_across + WORD_BITS - 1) / WORD_BITS;
  made.seen.resize(made.words_per_row * made.tiles_down);
  made.opaque.resize(made.seen.size());
  std::vector<std::uint8_t> most(made.tiles_across);
  std::vector<std::uint8_t> least(made.tiles_across);
  for (std::int32_t ty = 0; ty < made.tiles_down; ++ty) {
    std::fill(most.begin(), most.end(), 0);
    std::fill(least.begin(), least.end(), ALPHA_OPAQUE);
    for (std::int32_t y = ty * TILE; y < std::min((ty + 1) * TILE, height); ++y) {
      for (std::int32_t x = 0; x < width; ++x, alpha += step) {
        most[x / TILE] |= *alpha;
        least[x / TILE] &= *alpha;
      }
    }
    for (std::int32_t tx = 0; tx < made.tiles_across; ++tx) {
      const std::size_t word = ty * made.words_per_row + tx / WORD_BITS;
      const std::uint64_t bit = 1ULL << (tx % WORD_BITS);
      if (most[tx] != 0) made.seen[word] |= bit;
      if (least[tx] == ALPHA_OPAQUE) made.opaque[word] |= bit;
    }
  }
  return made;
}

bool coverage_holds(const Coverage& coverage, const PixelRect& rect) {
  return rect.x >= 0 && rect.y >= 0 && rect.width > 0 && rect.height > 0 &&
         rect.x <= coverage.width - rect.width && rect.y <= coverage.height - rect.height;
}

PixelRect coverage_seen_box(const Coverage& coverage, const PixelRect& rect) {
  const std::int32_t first = rect.x / TILE;
  const std::int32_t end = (rect.x + rect.width - 1) / TILE + 1;
  std::int32_t left = end;
  std::int32_t right = first;
  std::int32_t top = -1;
  std::int32_t bottom = -1;
  for (std::int32_t ty = rect.y / TILE; ty <= (rect.y + rect.height - 1) / TILE; ++ty) {
    const std::uint64_t* row = &coverage.seen[ty * coverage.words_per_row];
    for (std::int32_t w = first / WORD_BITS; w <= (end - 1) / WORD_BITS; ++w) {
      const std::uint64_t bits = row[w] & word_mask(w, first, end);
      if (bits == 0) continue;
      if (top < 0) top = ty;
      bottom = ty;
      left = std::min(left, w * WORD_BITS + __builtin_ctzll(bits));
      right = std::max(right, w * WORD_BITS + WORD_BITS - __builtin_clzll(bits));
    }
  }
  if (top < 0) return {rect.x, rect.y, 0, 0};
  const std::int32_t x0 = std::max(left * TILE, rect.x);
  const std::int32_t y0 = std::max(top * TILE, rect.y);
  const std::int32_t x1 = std::min(right * TILE, rect.x + rect.width);
  const std::int32_t y1 = std::min((bottom + 1) * TILE, rect.y + rect.height);
  return {x0, y0, x1 - x0, y1 - y0};
}

PixelRect coverage_box_with_edge(const Coverage& coverage, const PixelRect& rect) {
  if (!coverage_holds(coverage, rect)) return rect;
  const std::int32_t xs[] = {rect.x - 1, rect.x, rect.x + rect.width};
  const std::int32_t ys[] = {rect.y - 1, rect.y, rect.y + rect.height};
  const std::int32_t widths[] = {1, rect.width, 1};
  const std::int32_t heights[] = {1, rect.height, 1};
  PixelRect box{rect.x, rect.y, 0, 0};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const PixelRect part{xs[column], ys[row], widths[column], heights[row]};
      box = united(box, seen_box_wrapped(coverage, part));
    }
  }
  return box;
}

// By the heights of the columns that end in each row of tiles. A tile that the rectangle cuts
// counts.
PixelRect coverage_opaque_core(const Coverage& coverage, const PixelRect& rect) {
  constexpr std::int32_t MOST_COLUMNS = 1024;
  const std::int32_t first = rect.x / TILE;
  const std::int32_t columns = (rect.x + rect.width - 1) / TILE + 1 - first;
  if (columns > MOST_COLUMNS) return {};
  std::array<std::int32_t, MOST_COLUMNS + 1> heights{};
  std::array<std::int32_t, MOST_COLUMNS + 1> stack{};  // columns of rising height
  PixelRect best{};
  for (std::int32_t ty = rect.y / TILE; ty <= (rect.y + rect.height - 1) / TILE; ++ty) {
    const std::size_t row = ty * coverage.words_per_row;
    for (std::int32_t c = 0; c < columns; ++c) {
      heights[c] = bit_at(coverage.opaque, row, first + c) ? heights[c] + 1 : 0;
    }
    std::int32_t depth = 0;
    for (std::int32_t c = 0; c <= columns; ++c) {
      const std::int32_t height = heights[c];  // 0 behind the last column
      while (depth > 0 && heights[stack[depth - 1]] >= height) {
        const std::int32_t tall = heights[stack[--depth]];
        const std::int32_t from = depth > 0 ? stack[depth - 1] + 1 : 0;
        const PixelRect found{from, ty + 1 - tall, c - from, tall};
        if (found.width * found.height > best.width * best.height) best = found;
      }
      stack[depth++] = c;
    }
  }
  if (best.width == 0) return {};
  const std::int32_t x0 = std::max((first + best.x) * TILE, rect.x);
  const std::int32_t y0 = std::max(best.y * TILE, rect.y);
  const std::int32_t x1 = std::min((first + best.x + best.width) * TILE, rect.x + rect.width);
  const std::int32_t y1 = std::min((best.y + best.height) * TILE, rect.y + rect.height);
  return {x0, y0, x1 - x0, y1 - y0};
}
