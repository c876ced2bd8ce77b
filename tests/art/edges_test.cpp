// Colours of transparent pixels, which filters and compression mix into the edges.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "tests/art/picture_files.h"

using namespace art;

namespace {

// The largest difference between a transparent pixel's colour and the mean of the visible ones that
// it touches, within one cell.
int worst_rim(const Picture& p, const CatalogueRow& row, int frame) {
  const int x0 = frame % row.columns * row.cell_width, y0 = frame / row.columns * row.cell_height;
  int worst = 0;
  for (int y = 1; y < row.cell_height - 1; y++) {
    for (int x = 1; x < row.cell_width - 1; x++) {
      const uint8_t* q = p.at(x0 + x, y0 + y);
      if (q[3]) continue;
      int sum[3] = {}, weight = 0;
      for (int n = 0; n < 9; n++) {
        const uint8_t* near = p.at(x0 + x + n % 3 - 1, y0 + y + n / 3 - 1);
        weight += near[3];
        for (int k = 0; k < 3; k++) sum[k] += near[k] * near[3];
      }
      if (weight == 0) continue;
      for (int k = 0; k < 3; k++) worst = std::max(worst, std::abs(q[k] - sum[k] / weight));
    }
  }
  return worst;
}

}  // namespace

TEST(Edges, TransparentPixelsHaveTheColourOfTheirNeighbours) {
  ASSERT_FALSE(pictures_folder().empty()) << "could not be rendered";
  for (const CatalogueEntry& entry : catalogue()) {
    const CatalogueRow& row = *entry.row;
    if (std::strstr(row.name, ".bmp")) continue;
    std::optional<Picture> p = read_picture(row);
    ASSERT_TRUE(p) << row.name;
    int worst = 0;
    for (int frame = 0; frame < row.frames; frame++)
      worst = std::max(worst, worst_rim(*p, row, frame));
    EXPECT_LE(worst, 12) << row.name;
  }
}
