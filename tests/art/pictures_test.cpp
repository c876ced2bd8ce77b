// Every picture as the game uses it: sizes, cells, borders, loops, glyphs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "art/catalogue.h"
#include "tests/art/picture_files.h"

using namespace art;

namespace {

std::optional<Picture> installed(const CatalogueRow& row) {
  return read_picture(INSTALLATION, catalogue_path(row));
}

bool is_bitmap(const CatalogueRow& row) {
  return std::string(row.name).ends_with(".bmp");
}

// The pixels of a cell, four bytes each, row by row.
using Cells = std::vector<uint8_t>;

Cells cell(const Picture& p, const CatalogueRow& row, int frame) {
  Cells bytes;
  const int x = frame % row.columns * row.cell_width, y = frame / row.columns * row.cell_height;
  for (int line = 0; line < row.cell_height; line++) {
    const uint8_t* begin = p.at(x, y + line);
    bytes.insert(bytes.end(), begin, begin + row.cell_width * 4);
  }
  return bytes;
}

// Visible pixels.
int inked(const Cells& c) {
  int count = 0;
  for (size_t i = 3; i < c.size(); i += 4) count += c[i] >= 16;
  return count;
}

// The first side, of those that have to stay clear, that a pixel of this alpha is near. One that is
// less than two pixels from the cell's border would be seen beside a neighbour where it is rounded.
std::string touched_side(const Cells& c, const CatalogueRow& row, unsigned touch, int alpha,
                         int near) {
  for (int y = 0; y < row.cell_height; y++) {
    for (int x = 0; x < row.cell_width; x++) {
      if (c[static_cast<size_t>(y * row.cell_width + x) * 4 + 3] < alpha) continue;
      if (!(touch & kTouchLeft) && x < near) return "left";
      if (!(touch & kTouchRight) && x >= row.cell_width - near) return "right";
      if (!(touch & kTouchTop) && y < near) return "top";
      if (!(touch & kTouchBottom) && y >= row.cell_height - near) return "bottom";
    }
  }
  return "";
}

// How much two pixels differ: in alpha, and in colour times alpha.
double difference(const uint8_t* a, const uint8_t* b) {
  double sum = std::abs(a[3] - b[3]);
  for (int k = 0; k < 3; k++) sum += std::abs(a[k] * a[3] - b[k] * b[3]) / 255.0;
  return sum;
}

double difference(const Cells& a, const Cells& b) {
  double sum = 0;
  for (size_t i = 0; i < a.size(); i += 4) sum += difference(&a[i], &b[i]);
  return sum;
}

double difference(const Picture& a, int column_a, const Picture& b, int column_b) {
  double sum = 0;
  for (int y = 0; y < a.height; y++) sum += difference(a.at(column_a, y), b.at(column_b, y));
  return sum;
}

// The largest difference of two neighbouring columns.
double usual_difference(const Picture& p, int first, int last) {
  double most = 0;
  for (int x = first; x < last; x++) most = std::max(most, difference(p, x, p, x + 1));
  return most;
}

bool power_of_two(int v) {
  return v > 0 && (v & (v - 1)) == 0;
}

void expect_moves(const std::vector<Cells>& frames, bool loop) {
  double largest = 0;
  for (size_t i = 1; i < frames.size(); i++)
    largest = std::max(largest, difference(frames[i - 1], frames[i]));
  EXPECT_GT(largest, 0) << "nothing moves";
  if (loop) {
    EXPECT_LE(difference(frames.back(), frames[0]), 3 * largest) << "the loop jumps";
  }
}

}  // namespace

TEST(Catalogue, DrawsEachPictureOfTheListOnce) {
  std::vector<std::string> listed(std::begin(PICTURES), std::end(PICTURES)), drawn;
  for (const SheetRow& row : SHEETS) listed.emplace_back(row.file);
  for (const FontRow& row : FONTS) listed.emplace_back(row.file);
  listed.emplace_back(NUMBER_FONT_FILE);
  for (const CatalogueEntry& entry : catalogue()) drawn.emplace_back(entry.row->name);
  std::ranges::sort(listed);
  std::ranges::sort(drawn);
  EXPECT_EQ(drawn, listed);
}

TEST(Pictures, MatchTheirCatalogueRow) {
  for (const CatalogueEntry& entry : catalogue()) {
    const CatalogueRow& row = *entry.row;
    SCOPED_TRACE(row.name);
    const std::optional<Picture> p = installed(row);
    ASSERT_TRUE(p) << "the game doesn't take the file";
    ASSERT_EQ(p->width, row.width);
    ASSERT_EQ(p->height, row.height);
    // Only the loader of bitmaps pads the size to powers of two.
    EXPECT_TRUE(is_bitmap(row) || (power_of_two(row.width) && power_of_two(row.height)));
    ASSERT_LE(row.columns * row.cell_width, row.width);
    ASSERT_LE(row.rows * row.cell_height, row.height);
    ASSERT_LE(row.frames, row.columns * row.rows);
    const bool font = row.play == Play::kGlyphs;
    // The game divides the sheet into cells.
    EXPECT_TRUE(font || row.width / row.columns == row.cell_width);
    EXPECT_TRUE(font || row.height / row.rows == row.cell_height);

    const bool blank = row.cell_width == 1;  // it is loaded and never shown
    std::vector<Cells> frames;
    for (int frame = 0; frame < row.columns * row.rows; frame++) {
      SCOPED_TRACE(frame);
      const Cells seen = cell(*p, row, frame);
      if (blank || frame >= row.frames || (font && frame == GLYPH_BLANK)) {
        EXPECT_EQ(inked(seen), 0);
        continue;
      }
      EXPECT_GE(inked(seen), font ? 2 : 12) << "it is empty";
      EXPECT_EQ(font ? "" : touched_side(seen, row, row.touch, 1, 2), "");
      frames.push_back(seen);
    }
    if (row.play == Play::kLoop || row.play == Play::kOnce)
      expect_moves(frames, row.play == Play::kLoop);
  }
}

TEST(Fonts, GlyphsAreWhiteDistinctAndNotCut) {
  for (const CatalogueEntry& entry : catalogue()) {
    const CatalogueRow& row = *entry.row;
    if (row.play != Play::kGlyphs || row.frames != GLYPH_COUNT) continue;
    const std::optional<Picture> p = installed(row);
    ASSERT_TRUE(p) << row.name;
    std::set<Cells> shapes;
    for (int glyph = 0; glyph < GLYPH_BLANK; glyph++) {
      SCOPED_TRACE(std::string(row.name) + " " + GLYPH_ORDER[glyph]);
      Cells shape = cell(*p, row, glyph);
      // Faint pixels may reach the border of a small cell, strokes may not.
      EXPECT_EQ(is_bitmap(row) ? "" : touched_side(shape, row, kTouchNone, 100, 1), "");
      for (size_t i = 0; i < shape.size(); i += 4) {
        // The game tints glyphs, so their own colour is white.
        const bool white = shape[i] == 255 && shape[i + 1] == 255 && shape[i + 2] == 255;
        ASSERT_TRUE(shape[i + 3] == 0 || white);
        for (size_t k = 0; k < 3; k++) shape[i + k] = 0;  // colours without alpha don't count
      }
      EXPECT_TRUE(shapes.insert(shape).second) << "it looks like another";
    }
  }
}

// The game goes from any of these to any other while a frog waits.
TEST(FrogSheets, BeginAndEndInOneRestingPose) {
  const auto pose = [](const char* name, bool last) {
    const CatalogueRow& row = *catalogue_find(name).row;
    const std::optional<Picture> p = installed(row);
    return p ? cell(*p, row, last ? row.frames - 1 : 0) : Cells{};
  };
  const Cells rest = pose("anim_gfrog", false);
  ASSERT_FALSE(rest.empty());
  EXPECT_TRUE(pose("anim_gfrog_win", false) == rest);
  for (const char* name : {"anim_gfrog_idle1", "anim_gfrog_idle2", "anim_gfrog_idle3"})
    for (const bool last : {false, true}) EXPECT_TRUE(pose(name, last) == rest) << name << last;
}

TEST(Backdrop, HalvesJoinWithoutASeam) {
  const std::optional<Picture> left = installed(*catalogue_find("bkdrop_lft").row);
  const std::optional<Picture> right = installed(*catalogue_find("bkdrop_rt").row);
  ASSERT_TRUE(left && right);
  EXPECT_LE(difference(*left, 679, *right, 0), 1.3 * usual_difference(*left, 640, 679));
  // No pixel has the colour that becomes transparent.
  for (const Picture* p : {&*left, &*right})
    for (size_t i = 3; i < p->rgba.size(); i += 4) ASSERT_EQ(p->rgba[i], 255);
}

TEST(Foam, RepeatsEvery473PixelsWithinTheRiver) {
  for (const char* name : {"riverfoam_1", "riverfoam_2"}) {
    const std::optional<Picture> p = installed(*catalogue_find(name).row);
    ASSERT_TRUE(p);
    for (int y = 0; y < p->height; y++)
      for (int x = 0; x < p->width; x++)
        ASSERT_TRUE((x < 473 && y < 286) || p->at(x, y)[3] == 0) << x << "," << y;
    EXPECT_LE(difference(*p, 472, *p, 0), usual_difference(*p, 0, 472)) << name;
  }
}
