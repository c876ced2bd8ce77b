// Every picture as the game uses it: sizes, cells, borders, loops, glyphs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/art/picture_files.h"

using namespace art;

namespace {

struct Box {
  int x, y;  // a cell's top left corner
};

Box cell_at(const CatalogueRow& row, int frame) {
  return {frame % row.columns * row.cell_width, frame / row.columns * row.cell_height};
}

int alpha_at(const Picture& p, const CatalogueRow& row, int frame, int x, int y) {
  Box b = cell_at(row, frame);
  return p.at(b.x + x, b.y + y)[3];
}

// Visible pixels.
int inked(const Picture& p, const CatalogueRow& row, int frame) {
  int count = 0;
  for (int y = 0; y < row.cell_height; y++)
    for (int x = 0; x < row.cell_width; x++) count += alpha_at(p, row, frame, x, y) >= 16;
  return count;
}

// The first side, of those that have to stay clear, with a pixel less than two from the cell's
// border, where rounding would show it beside a neighbour.
const char* touched_side(const Picture& p, const CatalogueRow& row, int frame) {
  const int w = row.cell_width, h = row.cell_height;
  for (int i = 0; i < 2; i++) {
    for (int y = 0; y < h; y++) {
      if (!(row.touch & kTouchLeft) && alpha_at(p, row, frame, i, y)) return "left";
      if (!(row.touch & kTouchRight) && alpha_at(p, row, frame, w - 1 - i, y)) return "right";
    }
    for (int x = 0; x < w; x++) {
      if (!(row.touch & kTouchTop) && alpha_at(p, row, frame, x, i)) return "top";
      if (!(row.touch & kTouchBottom) && alpha_at(p, row, frame, x, h - 1 - i)) return "bottom";
    }
  }
  return nullptr;
}

// How much two cells differ: the sum of differences of alpha and of colour times alpha.
double step(const Picture& p, const CatalogueRow& row, int a, int b) {
  Box ba = cell_at(row, a), bb = cell_at(row, b);
  double sum = 0;
  for (int y = 0; y < row.cell_height; y++) {
    const uint8_t *qa = p.at(ba.x, ba.y + y), *qb = p.at(bb.x, bb.y + y);
    for (int x = 0; x < row.cell_width; x++, qa += 4, qb += 4) {
      sum += std::abs(qa[3] - qb[3]);
      for (int k = 0; k < 3; k++) sum += std::abs(qa[k] * qa[3] - qb[k] * qb[3]) / 255.0;
    }
  }
  return sum;
}

bool is_font(const CatalogueRow& row) {
  return row.play == Play::kGlyphs;
}
// As small as can be: it is loaded and never shown.
bool is_blank(const CatalogueRow& row) {
  return row.cell_width == 1;
}
bool power_of_two(int v) {
  return v > 0 && (v & (v - 1)) == 0;
}

class Pictures : public testing::TestWithParam<const CatalogueRow*> {};

std::vector<const CatalogueRow*> all_rows() {
  std::vector<const CatalogueRow*> rows;
  for (const CatalogueEntry& entry : catalogue()) rows.push_back(entry.row);
  return rows;
}

std::string test_name(const testing::TestParamInfo<const CatalogueRow*>& param) {
  std::string name = param.param->name;
  for (char& c : name)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, Pictures, testing::ValuesIn(all_rows()), test_name);

}  // namespace

TEST(Catalogue, DrawsEachPictureOfTheListOnce) {
  std::vector<std::string> listed(std::begin(PICTURES), std::end(PICTURES)), drawn;
  for (const SheetRow& row : SHEETS) listed.emplace_back(row.file);
  for (const FontRow& row : FONTS) listed.emplace_back(row.file);
  listed.emplace_back(NUMBER_FONT_FILE);
  for (const CatalogueRow* row : all_rows()) drawn.emplace_back(row->name);
  std::ranges::sort(listed);
  std::ranges::sort(drawn);
  EXPECT_EQ(drawn, listed);
}

TEST_P(Pictures, MatchTheirCatalogueRow) {
  const CatalogueRow& row = *GetParam();
  ASSERT_FALSE(pictures_folder().empty()) << "could not be rendered";
  std::optional<Picture> p = read_picture(row);
  ASSERT_TRUE(p) << row.name << " is not a file that the game takes";
  ASSERT_EQ(p->width, row.width);
  ASSERT_EQ(p->height, row.height);
  // Only the loader of bitmaps pads the size to powers of two.
  if (!std::strstr(row.name, ".bmp")) {
    EXPECT_TRUE(power_of_two(row.width));
    EXPECT_TRUE(power_of_two(row.height));
  }
  ASSERT_LE(row.columns * row.cell_width, row.width);
  ASSERT_LE(row.rows * row.cell_height, row.height);
  ASSERT_LE(row.frames, row.columns * row.rows);
  // The game divides the sheet into cells.
  if (!is_font(row)) {
    EXPECT_EQ(row.width / row.columns, row.cell_width);
    EXPECT_EQ(row.height / row.rows, row.cell_height);
  }

  for (int frame = 0; frame < row.frames; frame++) {
    if (is_font(row) && frame == GLYPH_BLANK) continue;
    if (is_blank(row)) {
      EXPECT_EQ(inked(*p, row, frame), 0);
      continue;
    }
    EXPECT_GE(inked(*p, row, frame), is_font(row) ? 2 : 12) << "frame " << frame << " is empty";
    if (is_font(row)) continue;
    const char* side = touched_side(*p, row, frame);
    EXPECT_EQ(side, nullptr) << "frame " << frame << " is cut at its " << side << " side";
  }
  for (int frame = row.frames; frame < row.columns * row.rows; frame++)
    EXPECT_EQ(inked(*p, row, frame), 0) << "cell " << frame << " isn't used";

  if (row.play != Play::kLoop && row.play != Play::kOnce) return;
  double largest = 0;
  for (int frame = 1; frame < row.frames; frame++)
    largest = std::max(largest, step(*p, row, frame - 1, frame));
  EXPECT_GT(largest, 0) << "nothing moves";
  if (row.play == Play::kLoop) {
    EXPECT_LE(step(*p, row, row.frames - 1, 0), 3 * largest) << "the loop jumps";
  }
}

namespace {

struct Extent {
  int first, last;
};

Extent ink_columns(const Picture& p, const CatalogueRow& row, int glyph) {
  Extent e{row.cell_width, -1};
  for (int x = 0; x < row.cell_width; x++)
    for (int y = 0; y < row.cell_height; y++)
      if (alpha_at(p, row, glyph, x, y) > 100) e = {std::min(e.first, x), std::max(e.last, x)};
  return e;
}

}  // namespace

TEST(Fonts, GlyphsAreWhiteDistinctAndNotCut) {
  for (const CatalogueEntry& entry : catalogue()) {
    const CatalogueRow& row = *entry.row;
    if (!is_font(row) || row.frames != GLYPH_COUNT) continue;
    SCOPED_TRACE(row.name);
    std::optional<Picture> p = read_picture(row);
    ASSERT_TRUE(p);
    const bool bitmap = std::strstr(row.name, ".bmp");
    std::set<std::vector<uint8_t>> shapes;
    for (int glyph = 0; glyph < 94; glyph++) {
      std::vector<uint8_t> shape;
      for (int y = 0; y < row.cell_height; y++)
        for (int x = 0; x < row.cell_width; x++) {
          const uint8_t* q = p->at(cell_at(row, glyph).x + x, cell_at(row, glyph).y + y);
          shape.push_back(q[3]);
          // The game tints glyphs, so their own colour is white.
          ASSERT_TRUE(q[3] == 0 || (q[0] == 255 && q[1] == 255 && q[2] == 255)) << glyph;
        }
      EXPECT_TRUE(shapes.insert(shape).second) << "glyph " << glyph << " looks like another";
      if (bitmap) continue;
      // Faint pixels may reach the border of a small cell, strokes may not.
      for (int x = 0; x < row.cell_width; x++) {
        EXPECT_LT(alpha_at(*p, row, glyph, x, 0), 100) << glyph;
        EXPECT_LT(alpha_at(*p, row, glyph, x, row.cell_height - 1), 100) << glyph;
      }
      for (int y = 0; y < row.cell_height; y++) {
        EXPECT_LT(alpha_at(*p, row, glyph, 0, y), 100) << glyph;
        EXPECT_LT(alpha_at(*p, row, glyph, row.cell_width - 1, y), 100) << glyph;
      }
    }
    EXPECT_EQ(inked(*p, row, 94), 0);
    if (bitmap) continue;
    // Digits 52 to 61 are aligned in columns: of one width, centred.
    for (int glyph = 52; glyph <= 61; glyph++) {
      Extent e = ink_columns(*p, row, glyph), eight = ink_columns(*p, row, 59);
      EXPECT_NEAR(e.last - e.first, eight.last - eight.first, 1) << glyph;
      EXPECT_NEAR(e.first + e.last, row.cell_width - 1, 2) << glyph;
    }
  }
}

// The game goes from any of these to any other while a frog waits.
TEST(FrogSheets, BeginAndEndInOneRestingPose) {
  const std::optional<Picture> hop = read_picture(*catalogue_find("anim_gfrog").row);
  ASSERT_TRUE(hop);
  const auto expect_rest = [&](const char* name, int frame) {
    const CatalogueRow& row = *catalogue_find(name).row;
    const std::optional<Picture> p = read_picture(row);
    ASSERT_TRUE(p) << name;
    const Box cell = cell_at(row, frame < 0 ? row.frames + frame : frame);
    for (int y = 0; y < row.cell_height; y++) {
      ASSERT_EQ(std::memcmp(p->at(cell.x, cell.y + y), hop->at(0, y),
                            static_cast<size_t>(row.cell_width) * 4),
                0)
          << name << " frame " << frame << " line " << y;
    }
  };
  for (const char* name : {"anim_gfrog_idle1", "anim_gfrog_idle2", "anim_gfrog_idle3"}) {
    expect_rest(name, 0);
    expect_rest(name, -1);
  }
  expect_rest("anim_gfrog_win", 0);
}

TEST(Backdrop, HalvesJoinWithoutASeam) {
  std::optional<Picture> left = read_picture(*catalogue_find("bkdrop_lft").row);
  std::optional<Picture> right = read_picture(*catalogue_find("bkdrop_rt").row);
  ASSERT_TRUE(left && right);
  auto differ = [](const Picture& a, int xa, const Picture& b, int xb) {
    double sum = 0;
    for (int y = 0; y < a.height; y++)
      for (int k = 0; k < 3; k++) sum += std::abs(a.at(xa, y)[k] - b.at(xb, y)[k]);
    return sum;
  };
  double usual = 0;
  for (int x = 640; x < 679; x++) usual = std::max(usual, differ(*left, x, *left, x + 1));
  EXPECT_LE(differ(*left, 679, *right, 0), 1.3 * usual);
  // No pixel has the colour that becomes transparent.
  for (const Picture* p : {&*left, &*right})
    for (size_t i = 3; i < p->rgba.size(); i += 4) ASSERT_EQ(p->rgba[i], 255);
}

TEST(Foam, RepeatsEvery473PixelsWithinTheRiver) {
  for (const char* name : {"riverfoam_1", "riverfoam_2"}) {
    std::optional<Picture> p = read_picture(*catalogue_find(name).row);
    ASSERT_TRUE(p);
    for (int y = 0; y < p->height; y++)
      for (int x = 0; x < p->width; x++)
        ASSERT_TRUE((x < 473 && y < 286) || p->at(x, y)[3] == 0) << x << "," << y;
    auto differ = [&](int a, int b) {
      double sum = 0;
      for (int y = 0; y < 286; y++) sum += std::abs(p->at(a, y)[3] - p->at(b, y)[3]);
      return sum;
    };
    double usual = 0;
    for (int x = 0; x < 472; x++) usual = std::max(usual, differ(x, x + 1));
    EXPECT_LE(differ(472, 0), usual) << name;
  }
}

namespace {

// Relative luminance of a colour, 0 to 1.
double lightness(const uint8_t* q) {
  auto linear = [](uint8_t v) { return std::pow(v / 255.0, 2.2); };
  return 0.2126 * linear(q[0]) + 0.7152 * linear(q[1]) + 0.0722 * linear(q[2]);
}

double contrast(double a, double b) {
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

struct Ground {
  const char* picture;
  int left, top, right, foot;  // of the text, within a cell
  uint8_t ink[3];
  double contrast;  // at least
};

class WrittenOn : public testing::TestWithParam<Ground> {};

INSTANTIATE_TEST_SUITE_P(
    All, WrittenOn,
    testing::Values(Ground{"anim_wdsign", 20, 29, 236, 77, {255, 255, 255}, 4.5},
                    Ground{"anim_lngsign", 20, 29, 236, 77, {255, 255, 255}, 4.5},
                    Ground{"ticket", 42, 54, 85, 77, {0xDC, 0x20, 0}, 3.5},
                    Ground{"pink_ticket", 43, 21, 85, 43, {255, 255, 255}, 7},
                    Ground{"ticketerror", 104, 206, 400, 240, {255, 255, 255}, 12}),
    [](const testing::TestParamInfo<Ground>& param) { return param.param.picture; });

}  // namespace

TEST_P(WrittenOn, IsOpaqueEvenAndContrastsWithTheText) {
  const Ground& g = GetParam();
  const CatalogueRow& row = *catalogue_find(g.picture).row;
  std::optional<Picture> p = read_picture(row);
  ASSERT_TRUE(p);
  const double ink = lightness(g.ink);
  for (int frame = 0; frame < row.frames; frame++) {
    const Box b = cell_at(row, frame);
    for (int y = g.top; y < g.foot; y++) {
      for (int x = g.left; x < g.right; x++) {
        const uint8_t *q = p->at(b.x + x, b.y + y), *below = p->at(b.x + x, b.y + y + 1);
        ASSERT_EQ(q[3], 255) << x << "," << y << " of frame " << frame;
        ASSERT_GE(contrast(lightness(q), ink), g.contrast) << x << "," << y;
        // No edge runs through the text.
        ASSERT_LT(contrast(lightness(q), lightness(below)), 1.3) << x << "," << y;
      }
    }
  }
}
