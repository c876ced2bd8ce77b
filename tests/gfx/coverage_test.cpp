#include "gfx/coverage.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "gfx/fill_plan.h"

namespace {

constexpr std::uint32_t OUTSIDE = 1000;  // a texture name of no other test

struct Picture {
  int width, height;
  std::vector<std::uint8_t> bytes;

  Picture(int w, int h) : width(w), height(h), bytes(static_cast<std::size_t>(w) * h * 4) {}
  std::uint8_t& alpha(int x, int y) {
    return bytes[(static_cast<std::size_t>(y) * width + x) * 4 + 3];
  }
  void fill(int x, int y, int w, int h, std::uint8_t value) {
    for (int row = y; row < y + h; ++row) {
      for (int column = x; column < x + w; ++column) alpha(column, row) = value;
    }
  }
  [[nodiscard]] Coverage coverage() const {
    return coverage_make(width, height, bytes.data() + 3, 4);
  }
};

bool contains(const PixelRect& r, int x, int y) {
  return x >= r.x && x < r.x + r.width && y >= r.y && y < r.y + r.height;
}

TEST(Coverage, BoxIsUsedTilesCutToRectangle) {
  Picture picture(256, 128);
  picture.alpha(70, 33) = 1;
  picture.alpha(100, 50) = 200;
  const Coverage coverage = picture.coverage();
  PixelRect box = coverage_box_with_edge(coverage, {0, 0, 256, 128});
  EXPECT_TRUE(contains(box, 70, 33) && contains(box, 100, 50));
  EXPECT_LE(box.width, 31 + 2 * COVERAGE_TILE_PX);
  EXPECT_LE(box.height, 18 + 2 * COVERAGE_TILE_PX);
  box = coverage_box_with_edge(coverage, {98, 0, 158, 128});
  EXPECT_GE(box.x, 97);
  EXPECT_FALSE(contains(box, 70, 33)) << "outside the rectangle";
  EXPECT_EQ(coverage_box_with_edge(coverage, {128, 0, 64, 64}).width, 0) << "nothing there";
}

TEST(Coverage, BoxIncludesOnePixelBesideRectangle) {
  Picture picture(64, 64);
  picture.fill(0, 56, 64, 8, 255);
  const Coverage coverage = picture.coverage();
  EXPECT_EQ(coverage_box_with_edge(coverage, {16, 16, 16, 32}).width, 0);
  const PixelRect below = coverage_box_with_edge(coverage, {16, 16, 16, 40});
  EXPECT_TRUE(contains(below, 20, 56));
  const PixelRect round = coverage_box_with_edge(coverage, {16, 0, 16, 16});
  EXPECT_TRUE(contains(round, 20, -1)) << "the last row wraps to above the first";
}

TEST(Coverage, RectangleOutsideTextureIsItsOwnBox) {
  const Coverage coverage = Picture(64, 64).coverage();
  for (const PixelRect& rect : {PixelRect{40, 0, 32, 8}, PixelRect{-1, 0, 8, 8},
                                PixelRect{0, 64, 8, 8}, PixelRect{0, 0, 65, 1}}) {
    EXPECT_EQ(coverage_box_with_edge(coverage, rect).width, rect.width);
    EXPECT_FALSE(fill_plan_recall(OUTSIDE, coverage, rect).pieced);
  }
}

TEST(Coverage, CoreIsLargestOpaqueRectangle) {
  Picture picture(256, 256);
  picture.fill(0, 0, 256, 256, 254);
  picture.fill(16, 32, 64, 64, 255);
  picture.fill(128, 32, 32, 192, 255);
  const Coverage coverage = picture.coverage();
  const PixelRect core = coverage_opaque_core(coverage, {0, 0, 256, 256});
  EXPECT_EQ(core.x, 128);
  EXPECT_EQ(core.y, 32);
  EXPECT_EQ(core.width, 32);
  EXPECT_EQ(core.height, 192);
  const PixelRect cut = coverage_opaque_core(coverage, {20, 35, 60, 60});
  EXPECT_EQ(cut.x, 20) << "an opaque tile counts where the rectangle cuts it";
  EXPECT_EQ(cut.width, 60);
}

// How many pieces fill a pixel; a piece without blending over one that isn't opaque counts as many.
int pieces_at(const FillPlan& plan, int x, int y, int alpha) {
  int pieces = 0;
  for (const FillPiece& piece : plan.pieces) {
    if (!contains({piece.x, piece.y, piece.width, piece.height}, x, y)) continue;
    pieces += piece.opaque && alpha != 255 ? 100 : 1;
  }
  return pieces;
}

// On random pictures.
TEST(Coverage, FillPlanDrawsEachVisiblePixelOnce) {
  std::mt19937 random(7);
  const auto below = [&random](int n) { return static_cast<int>(random() % n); };
  for (int round = 0; round < 60; ++round) {
    Picture picture(8 << below(6), 8 << below(6));
    for (int patch = 0; patch < 12; ++patch) {
      const int x = below(picture.width);
      const int y = below(picture.height);
      const std::uint8_t alphas[] = {0, 1, 254, 255, 255, 255};
      picture.fill(x, y, 1 + below(picture.width - x), 1 + below(picture.height - y),
                   alphas[below(6)]);
    }
    const Coverage coverage = picture.coverage();
    for (int query = 0; query < 20; ++query) {
      const int x = below(picture.width);
      const int y = below(picture.height);
      const PixelRect rect{x, y, 1 + below(picture.width - x), 1 + below(picture.height - y)};
      const FillPlan& plan = fill_plan_recall(round + 1, coverage, rect);
      ASSERT_TRUE(plan.pieced);
      for (int py = rect.y; py < rect.y + rect.height; ++py) {
        for (int px = rect.x; px < rect.x + rect.width; ++px) {
          const int alpha = picture.alpha(px, py);
          ASSERT_TRUE(alpha == 0 || contains(plan.box, px, py));
          const int pieces = pieces_at(plan, px, py, alpha);
          ASSERT_TRUE(pieces == 1 || (pieces == 0 && alpha == 0)) << "drawn " << pieces << " times";
        }
      }
    }
  }
}

// More cells than the game's sheets have. A plan that is made anew lies elsewhere.
TEST(FillPlan, KeepsCellsWithCollidingHashes) {
  constexpr std::uint32_t FIRST = 2000;  // textures of no other test
  Picture picture(1024, 1024);
  picture.fill(0, 0, 1024, 1024, 255);
  const Coverage coverage = picture.coverage();
  const auto each_cell = [&](const auto& see) {
    for (std::uint32_t sheet = FIRST; sheet < FIRST + 20; ++sheet) {
      for (std::int32_t cell = 0; cell < 64; ++cell) {
        see(fill_plan_recall(sheet, coverage, {cell % 8 * 128, cell / 8 * 128, 128, 128}));
      }
    }
  };
  std::vector<const FillPiece*> first;
  each_cell([&](const FillPlan& plan) { first.push_back(plan.pieces.data()); });
  std::size_t kept = 0;
  std::size_t at = 0;
  each_cell([&](const FillPlan& plan) { kept += plan.pieces.data() == first[at++] ? 1 : 0; });
  EXPECT_EQ(kept, first.size());
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
