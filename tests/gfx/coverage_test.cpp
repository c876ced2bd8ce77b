#include "gfx/coverage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "gfx/fill_plan.h"

namespace {

struct Picture {
  int width, height;
  std::vector<std::uint8_t> alphas;

  Picture(int w, int h) : width(w), height(h), alphas(static_cast<std::size_t>(w) * h) {}
  void fill(int x, int y, int w, int h, std::uint8_t value) {
    for (int row = y; row < y + h; ++row) {
      for (int column = x; column < x + w; ++column) alphas[row * width + column] = value;
    }
  }
  [[nodiscard]] Coverage coverage() const { return coverage_make(width, height, alphas.data(), 1); }
};

std::string shown(const PixelRect& r) {
  if (r.width == 0) return "nothing";
  return std::to_string(r.x) + "," + std::to_string(r.y) + " " + std::to_string(r.width) + "x" +
         std::to_string(r.height);
}

TEST(Coverage, BoxHasTheTilesInUseOfRectangleAndItsEdge) {
  Picture spots(256, 128);
  spots.fill(70, 33, 1, 1, 1);
  spots.fill(100, 50, 1, 1, 200);
  const Coverage spotted = spots.coverage();
  Picture foot(64, 64);
  foot.fill(0, 56, 64, 8, 255);
  const Coverage footed = foot.coverage();
  struct Case {
    const Coverage& coverage;
    PixelRect rect;
    std::string box;
  };
  const Case cases[] = {
      {spotted, {0, 0, 256, 128}, "64,32 40x24"},
      {spotted, {98, 0, 158, 128}, "97,48 7x8"},  // cuts a tile, and leaves the other out
      {spotted, {128, 0, 64, 64}, "nothing"},
      {footed, {16, 16, 16, 32}, "nothing"},
      {footed, {16, 16, 16, 40}, "15,56 18x1"},  // the edge alone is seen
      {footed, {16, 0, 16, 16}, "15,-1 18x1"},   // the last row wraps to above the first
      {footed, {40, 0, 32, 8}, "40,0 32x8"},     // those that leave the texture
      {footed, {-1, 0, 8, 8}, "-1,0 8x8"},
      {footed, {0, 64, 8, 8}, "0,64 8x8"},
      {footed, {0, 0, 65, 1}, "0,0 65x1"},
      {footed, {8, 8, 8, 0}, "8,8 8x0"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(shown(coverage_box_with_edge(c.coverage, c.rect)), c.box) << shown(c.rect);
    const std::uint32_t texture = 5000 + c.coverage.width;  // a name of no other test
    EXPECT_EQ(fill_plan_recall(texture, c.coverage, c.rect).pieced, c.box != shown(c.rect));
  }
}

// Compared with all rectangles of tiles.
TEST(Coverage, OpaqueCoreIsTheLargestOfOpaqueTiles) {
  std::mt19937 random(7);
  const auto below = [&random](int n) { return static_cast<int>(random() % n); };
  constexpr int SIDE = 10 * COVERAGE_TILE_PX;
  for (int round = 0; round < 300; ++round) {
    Picture picture(SIDE, SIDE);
    picture.fill(0, 0, SIDE, SIDE, 255);
    for (int hole = below(25); hole > 0; --hole) picture.fill(below(SIDE), below(SIDE), 1, 1, 254);
    const int x = below(SIDE), y = below(SIDE);
    const PixelRect rect{x, y, 1 + below(SIDE - x), 1 + below(SIDE - y)};
    const auto tile = [](int pixel) { return pixel / COVERAGE_TILE_PX; };
    const int right = tile(x + rect.width - 1), bottom = tile(y + rect.height - 1);
    const auto opaque = [&](int tx, int ty) {
      for (int i = 0; i < COVERAGE_TILE_PX * COVERAGE_TILE_PX; ++i) {
        const int at =
            (ty * COVERAGE_TILE_PX + tile(i)) * SIDE + tx * COVERAGE_TILE_PX + i % COVERAGE_TILE_PX;
        if (picture.alphas[at] != 255) return false;
      }
      return true;
    };
    int most = 0;
    for (int top = tile(y); top <= bottom; ++top) {
      for (int left = tile(x); left <= right; ++left) {
        int widest = right + 1 - left;
        for (int row = top; row <= bottom; ++row) {
          int width = 0;
          while (width < widest && opaque(left + width, row)) ++width;
          widest = width;
          most = std::max(most, width * (row + 1 - top));
        }
      }
    }
    const PixelRect core = coverage_opaque_core(picture.coverage(), rect);
    if (most == 0) {
      EXPECT_EQ(shown(core), "nothing");
      continue;
    }
    ASSERT_GT(core.width, 0) << shown(rect);
    const int tiles = (tile(core.x + core.width - 1) + 1 - tile(core.x)) *
                      (tile(core.y + core.height - 1) + 1 - tile(core.y));
    ASSERT_EQ(tiles, most) << shown(core) << " of " << shown(rect);
    for (int ty = tile(core.y); ty <= tile(core.y + core.height - 1); ++ty) {
      for (int tx = tile(core.x); tx <= tile(core.x + core.width - 1); ++tx) {
        EXPECT_TRUE(opaque(tx, ty)) << shown(core);
      }
    }
    // What lies in the rectangle of its tiles, and no more.
    for (const auto& [first, length, from, whole] :
         {std::tuple{core.x, core.width, rect.x, rect.width},
          {core.y, core.height, rect.y, rect.height}}) {
      EXPECT_TRUE(first == from || first % COVERAGE_TILE_PX == 0) << shown(core);
      const int end = first + length;
      EXPECT_TRUE(end == from + whole || end % COVERAGE_TILE_PX == 0) << shown(core);
      EXPECT_TRUE(first >= from && end <= from + whole) << shown(core);
    }
  }
}

// On random pictures.
TEST(Coverage, FillPlanDrawsEachVisiblePixelOnce) {
  std::mt19937 random(7);
  const auto below = [&random](int n) { return static_cast<int>(random() % n); };
  for (int round = 0; round < 1200; ++round) {
    Picture picture(8 << below(6), 8 << below(6));
    const auto part = [&] {
      const int x = below(picture.width);
      const int y = below(picture.height);
      return PixelRect{x, y, 1 + below(picture.width - x), 1 + below(picture.height - y)};
    };
    for (int patch = 0; patch < 12; ++patch) {
      const PixelRect r = part();
      const std::uint8_t alphas[] = {0, 1, 254, 255, 255, 255};
      picture.fill(r.x, r.y, r.width, r.height, alphas[below(6)]);
    }
    const PixelRect rect = part();
    const FillPlan& plan = fill_plan_recall(10000 + round, picture.coverage(), rect);
    ASSERT_TRUE(plan.pieced);
    Picture drawn(picture.width, picture.height);  // how often
    for (const FillPiece& piece : plan.pieces) {
      for (int y = piece.y; y < piece.y + piece.height; ++y) {
        for (int x = piece.x; x < piece.x + piece.width; ++x) {
          const int at = y * picture.width + x;
          ASSERT_EQ(++drawn.alphas[at], 1) << x << ',' << y;
          ASSERT_TRUE(!piece.opaque || picture.alphas[at] == 255) << x << ',' << y;
        }
      }
    }
    for (int y = rect.y; y < rect.y + rect.height; ++y) {
      for (int x = rect.x; x < rect.x + rect.width; ++x) {
        const int at = y * picture.width + x;
        const PixelRect& box = plan.box;
        const bool boxed =
            x >= box.x && x < box.x + box.width && y >= box.y && y < box.y + box.height;
        ASSERT_TRUE(picture.alphas[at] == 0 || (drawn.alphas[at] == 1 && boxed)) << x << ',' << y;
      }
    }
  }
}

TEST(FillPlan, LeavesOutWhatLiesBetweenTwoSpots) {
  for (const PixelRect other : {PixelRect{240, 0, 8, 8}, {0, 240, 8, 8}}) {
    Picture picture(256, 256);
    picture.fill(0, 0, 8, 8, 254);
    picture.fill(other.x, other.y, 8, 8, 254);
    std::string pieces;
    const auto texture = static_cast<std::uint32_t>(6000 + other.x);
    const FillPlan& plan = fill_plan_recall(texture, picture.coverage(), {0, 0, 256, 256});
    for (const FillPiece& piece : plan.pieces) {
      pieces += shown({piece.x, piece.y, piece.width, piece.height}) + " ";
    }
    EXPECT_EQ(pieces, "0,0 8x8 " + shown(other) + " ");
  }
}

// More cells than the game's sheets have. A plan that is made anew lies elsewhere.
TEST(FillPlan, KeepsCellsWithCollidingHashes) {
  Picture picture(1024, 1024);
  picture.fill(0, 0, 1024, 1024, 255);
  const Coverage coverage = picture.coverage();
  const auto all_cells = [&] {
    std::vector<const FillPiece*> pieces;
    for (int cell = 0; cell < 20 * 64; ++cell) {
      const PixelRect rect{cell % 8 * 128, cell / 8 % 8 * 128, 128, 128};
      pieces.push_back(fill_plan_recall(2000 + cell / 64, coverage, rect).pieces.data());
    }
    return pieces;
  };
  EXPECT_EQ(all_cells(), all_cells());
}

// More plans than places in the table, and more pieces than the pool has.
TEST(FillPlan, FullTableIsClearedAndReused) {
  Picture picture(1024, 1024);
  picture.fill(0, 0, 512, 512, 255);
  const Coverage coverage = picture.coverage();
  for (std::int32_t round = 0; round < 40000; ++round) {
    const PixelRect rect{round % 200, round / 200, 300, 300};
    const FillPlan& plan = fill_plan_recall(3000, coverage, rect);
    ASSERT_FALSE(plan.pieces.empty()) << round;
    const FillPiece& piece = plan.pieces[0];
    ASSERT_TRUE(piece.opaque && piece.x == rect.x && piece.y == rect.y) << round;
  }
}

}  // namespace
