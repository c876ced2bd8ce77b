// What the scenery owes to the play in front of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>

#include "tests/art/picture_files.h"

using namespace art;

namespace {

Picture picture(const char* name) {
  std::optional<Picture> p = read_picture(*catalogue_find(name).row);
  if (!p) throw std::runtime_error(name);
  return *p;
}

struct Tone {
  double red = 0, green = 0, blue = 0, luma = 0, spread = 0;  // of 255
};

// Mean colour of a rectangle's opaque pixels, and how far their brightness scatters.
Tone tone(const Picture& p, int x0, int y0, int x1, int y1) {
  Tone t;
  double squares = 0;
  int count = 0;
  for (int y = y0; y < y1; y++) {
    for (int x = x0; x < x1; x++) {
      const uint8_t* q = p.at(x, y);
      if (q[3] < 255) continue;
      const double luma = 0.30 * q[0] + 0.59 * q[1] + 0.11 * q[2];
      t.red += q[0], t.green += q[1], t.blue += q[2], t.luma += luma;
      squares += luma * luma;
      count++;
    }
  }
  if (count == 0) return t;
  t.red /= count, t.green /= count, t.blue /= count, t.luma /= count;
  t.spread = std::sqrt(std::max(0.0, squares / count - t.luma * t.luma));
  return t;
}

}  // namespace

// A frog's feet stand at 432 on the uppermost of five lanes, 56 apart.
TEST(Meadow, ShowsItsLanesAndIsNoBusierThanBugsBear) {
  for (const char* half : {"bkdrop_lft", "bkdrop_rt"}) {
    SCOPED_TRACE(half);
    const Picture p = picture(half);
    double before = 0;
    for (int lane = 0; lane < 5; lane++) {
      const int foot = 432 + 56 * lane;
      const Tone t = tone(p, 100, foot - 16, 580, foot + 16);
      EXPECT_GT(t.green, 1.3 * t.red) << lane;
      EXPECT_GT(t.luma, 70) << "too dark for a black bug: lane " << lane;
      EXPECT_LT(t.luma, 150) << "too pale for a pale bug: lane " << lane;
      EXPECT_LT(t.spread, 26) << "busy: lane " << lane;
      if (lane > 0) {
        EXPECT_GT(std::fabs(t.luma - before), 6) << "looks like its neighbour: " << lane;
      }
      before = t.luma;
    }
  }
}

TEST(River, IsDeepUnderTheFarBankAndLightAtTheNearOne) {
  for (const char* half : {"bkdrop_lft", "bkdrop_rt"}) {
    const Picture p = picture(half);
    const Tone far_water = tone(p, 0, 72, 680, 84), near_water = tone(p, 0, 300, 680, 340);
    EXPECT_GT(near_water.luma, far_water.luma + 15) << half;
    EXPECT_GT(near_water.blue, 2 * near_water.red) << half;
  }
}

TEST(Logs, FillTheirCellsAndTheGoldOneIsGold) {
  const struct {
    const char* name;
    int length;
  } logs[] = {{"anim_log1", 386}, {"anim_log3", 302}, {"anim_log4", 166}, {"anim_log4gold", 166}};
  for (const auto& log : logs) {
    const CatalogueRow& row = *catalogue_find(log.name).row;
    const Picture p = picture(log.name);
    for (int frame = 0; frame < row.frames; frame++) {
      const int x = frame % row.columns * row.cell_width, y = frame / row.columns * row.cell_height;
      int first = row.cell_width, last = -1;
      for (int at = 0; at < row.cell_width; at++)
        if (p.at(x + at, y + 30)[3] == 255) first = std::min(first, at), last = at;
      // Neighbours meet, and the seam between them shows.
      EXPECT_LE(first, 4) << log.name << " frame " << frame;
      EXPECT_NEAR(last, log.length - 2, 2) << log.name << " frame " << frame;
    }
  }
  const Tone wood = tone(picture("anim_log4"), 30, 10, 150, 44);
  const Tone gold = tone(picture("anim_log4gold"), 30, 10, 150, 44);
  EXPECT_GT(gold.luma, wood.luma + 60);
  EXPECT_GT(gold.green, 2 * gold.blue);
  EXPECT_GT(gold.red, gold.green);
}

// A frog waits with its feet on the middle of the patch.
TEST(LaunchPlace, BearsTheFrogOnSolidStoneInItsPlayersColour) {
  for (const char* name : {"dpatch", "dpatch2"}) {
    const Picture p = picture(name);
    for (int x = 40; x < 216; x++) ASSERT_EQ(p.at(x, 60)[3], 255) << name << " at " << x;
  }
  // The ring's left end.
  const Tone left = tone(picture("dpatch"), 50, 56, 55, 64);
  const Tone right = tone(picture("dpatch2"), 50, 56, 55, 64);
  EXPECT_GT(left.green, 1.3 * left.red);
  EXPECT_GT(right.red, 1.5 * right.blue);
  EXPECT_GT(right.red, right.green);
}
