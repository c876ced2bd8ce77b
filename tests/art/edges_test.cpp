// What a filter or the compression of a texture finds beside the edges of things.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "tests/art/picture_files.h"

extern "C" {
#include <SOIL/image_DXT.h>
}

using namespace art;

namespace {

// The worst difference between a transparent pixel's colour and the mean of the seen ones that it
// touches, within one cell.
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

struct Block {
  uint8_t rgba[16][4];
};

Block decode_dxt5(const uint8_t* b) {
  Block out{};
  uint64_t alpha_bits = 0;
  for (int i = 7; i >= 2; i--) alpha_bits = alpha_bits << 8 | b[i];
  int ends[2][3];
  for (int e = 0; e < 2; e++) {
    const int v = b[8 + 2 * e] | b[9 + 2 * e] << 8;
    ends[e][0] = (v >> 11) * 255 / 31;
    ends[e][1] = (v >> 5 & 63) * 255 / 63;
    ends[e][2] = (v & 31) * 255 / 31;
  }
  for (int i = 0; i < 16; i++) {
    const int a = static_cast<int>(alpha_bits >> (3 * i) & 7), a0 = b[0], a1 = b[1];
    int alpha = a == 0 ? a0 : a1;
    if (a > 1) {
      if (a0 > a1)
        alpha = ((8 - a) * a0 + (a - 1) * a1) / 7;
      else
        alpha = a == 6 ? 0 : a == 7 ? 255 : ((6 - a) * a0 + (a - 1) * a1) / 5;
    }
    const int c = b[12 + i / 4] >> (2 * (i % 4)) & 3;
    const int second = c == 0 ? 0 : c == 1 ? 3 : c - 1;  // thirds of the second end
    for (int k = 0; k < 3; k++)
      out.rgba[i][k] = static_cast<uint8_t>((ends[0][k] * (3 - second) + ends[1][k] * second) / 3);
    out.rgba[i][3] = static_cast<uint8_t>(alpha);
  }
  return out;
}

struct Loss {
  double rms;         // of colours as they show, over what is seen
  double far_pixels;  // share of what is seen that is off by more than 40 of 255
};

Loss compression_loss(const Picture& p) {
  int size = 0;
  uint8_t* blocks = convert_image_to_DXT5(p.rgba.data(), p.width, p.height, 4, &size);
  double squares = 0, seen = 0, far = 0;
  const uint8_t* b = blocks;
  for (int by = 0; by < p.height; by += 4) {
    for (int bx = 0; bx < p.width; bx += 4, b += 16) {
      const Block block = decode_dxt5(b);
      for (int i = 0; i < 16; i++) {
        const uint8_t *want = p.at(bx + i % 4, by + i / 4), *got = block.rgba[i];
        if (!want[3] && !got[3]) continue;
        int worst = 0;
        for (int k = 0; k < 3; k++) {
          const int off = (want[k] * want[3] - got[k] * got[3]) / 255;
          squares += off * off;
          worst = std::max(worst, std::abs(off));
        }
        seen++;
        far += worst > 40;
      }
    }
  }
  std::free(blocks);
  return {std::sqrt(squares / (3 * seen)), far / seen};
}

}  // namespace

TEST(Edges, TransparentPixelsBesideAThingHaveItsColour) {
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

TEST(Edges, CompressionKeepsThePicturesThatTheGameCompresses) {
  ASSERT_FALSE(pictures_folder().empty()) << "could not be rendered";
  int compressed = 0;
  for (const CatalogueEntry& entry : catalogue()) {
    if (!std::strstr(entry.row->name, ".png")) continue;
    std::optional<Picture> p = read_picture(*entry.row);
    ASSERT_TRUE(p) << entry.row->name;
    const Loss loss = compression_loss(*p);
    RecordProperty(entry.row->name, std::to_string(loss.rms));
    EXPECT_LT(loss.rms, 8) << entry.row->name;
    EXPECT_LT(loss.far_pixels, 0.005) << entry.row->name;
    compressed++;
  }
  EXPECT_GT(compressed, 0);
}
