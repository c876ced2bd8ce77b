// What the frog's and the thumb's sheets owe to each other and to the place where they are shown.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <optional>

#include "tests/art/picture_files.h"

using namespace art;

namespace {

// The first pixel of a frame's line.
const uint8_t* line_of(const Picture& p, const CatalogueRow& row, int frame, int y) {
  return p.at(frame % row.columns * row.cell_width, frame / row.columns * row.cell_height + y);
}

}  // namespace

TEST(Frog, SheetsMeetInOneRestingPose) {
  // The game goes from any of these to any other, and a waiting frog must not twitch.
  std::optional<Picture> hop = read_picture(*catalogue_find("anim_gfrog").row);
  ASSERT_TRUE(hop);
  auto expect_rest = [&](const char* name, bool first, bool last) {
    const CatalogueRow& row = *catalogue_find(name).row;
    std::optional<Picture> p = read_picture(row);
    ASSERT_TRUE(p) << name;
    for (int frame : {0, row.frames - 1}) {
      if (!(frame ? last : first)) continue;
      int off = 0;
      for (int y = 0; y < row.cell_height; y++)
        off += std::memcmp(line_of(*p, row, frame, y), hop->at(0, y),
                           static_cast<size_t>(row.cell_width) * 4) != 0;
      EXPECT_EQ(off, 0) << name << " frame " << frame << ": lines that differ";
    }
  };
  for (const char* name : {"anim_gfrog_idle1", "anim_gfrog_idle2", "anim_gfrog_idle3"})
    expect_rest(name, true, true);
  expect_rest("anim_gfrog_win", true, false);
}

TEST(Frog, ShowsItsDanceInTheStripThatTheFarBankLeaves) {
  // There the cell's upper 202 pixels are above the screen: the face has to be below them.
  const CatalogueRow& row = *catalogue_find("anim_gfrog_win").row;
  std::optional<Picture> p = read_picture(row);
  ASSERT_TRUE(p);
  for (int frame = 24; frame < row.frames; frame++) {
    if (frame > 55 && frame < 69) continue;  // the leap
    int mouth = 0;
    for (int y = 202; y < row.cell_height; y++)
      for (int x = 0; x < row.cell_width; x++) {
        const uint8_t* q = line_of(*p, row, frame, y) + 4 * x;
        mouth += q[3] == 255 && q[0] > q[1] + 50 && q[0] > q[2] + 30;
      }
    EXPECT_GT(mouth, 60) << "frame " << frame;
  }
}

TEST(Thumbs, GoOnFromTheFirstSheetWithoutAJump) {
  // After the first sheet's second and a quarter the other one is that far into its own loop.
  const CatalogueRow &up = *catalogue_find("anim_thumbs_up").row,
                     &idle = *catalogue_find("anim_thumbs_idle").row;
  std::optional<Picture> a = read_picture(up), b = read_picture(idle);
  ASSERT_TRUE(a && b);
  auto differ = [&](const Picture& p, const CatalogueRow& row, int frame, int next) {
    double sum = 0;
    for (int y = 0; y < row.cell_height; y++) {
      const uint8_t *q = line_of(p, row, frame, y), *r = line_of(*b, idle, next, y);
      for (int i = 0; i < 4 * row.cell_width; i++) sum += std::abs(q[i] - r[i]);
    }
    return sum;
  };
  const int shown = static_cast<int>(idle.frames * 1.25 / 1.5);
  EXPECT_LE(differ(*a, up, up.frames - 1, shown), 1.2 * differ(*b, idle, shown, shown + 1));
}
