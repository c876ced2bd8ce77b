#include <cstdint>

#include "playfield/frog_flight.h"
#include "playfield/river.h"
#include "tests/playfield/field.h"

namespace {

struct ProbeCase {
  float centre;        // on the strip
  int cell_a, cell_b;  // that the two sample points lie in
};

class LaneProbe : public Field {
 protected:
  void SetUp() override {
    Field::SetUp();
    fill_lane(1, CELL_EMPTY);
  }

  // Sets the cells and probes lane 1, of 302 pixels a cell, with the frog's middle there.
  static std::int32_t probe(float centre, std::int32_t a, std::int32_t b, const ProbeCase& at) {
    fill_lane(1, CELL_EMPTY);
    lane_cells[1][at.cell_a] = a;
    lane_cells[1][at.cell_b] = b;
    Frog& frog = frog_on(SIDE_LEFT, 1);
    lanes[1].scroll = 0.0F;
    frog.x = centre - 128.0F;
    return lane_probe(frog, lanes[1], lane_cells[1], &bug_a, &bug_b, &stand_a, &stand_b);
  }

  static inline std::int32_t bug_a, bug_b, stand_a, stand_b;
};

TEST_F(LaneProbe, SeesBothCellsOnlyWithinAPixelOfTheirBorder) {
  const ProbeCase cases[] = {
      {300.5F, 0, 0}, {301.0F, 0, 1},    {302.0F, 0, 1},    {302.9F, 0, 1},   {303.0F, 1, 1},
      {453.0F, 1, 1}, {12079.5F, 39, 0}, {12080.0F, 39, 0}, {12081.0F, 0, 0}, {12382.0F, 0, 1},
  };
  for (const ProbeCase& at : cases) {
    SCOPED_TRACE(at.centre);
    EXPECT_EQ(probe(at.centre, CELL_PLAIN, CELL_PLAIN, at), CELL_PLAIN);
    EXPECT_EQ(stand_a, at.cell_a);
    EXPECT_EQ(stand_b, at.cell_b);
    EXPECT_EQ(bug_a, -1);
    EXPECT_EQ(bug_b, -1);
    EXPECT_EQ(probe(at.centre, CELL_EMPTY, CELL_EMPTY, at), CELL_EMPTY);
    EXPECT_EQ(stand_a, -1);
    if (at.cell_a == at.cell_b) continue;
    EXPECT_EQ(probe(at.centre, CELL_EMPTY, CELL_PLAIN, at), CELL_PLAIN) << "water yields";
    EXPECT_EQ(stand_a, -1);
    EXPECT_EQ(stand_b, at.cell_b);
    EXPECT_EQ(probe(at.centre, CELL_TIER1, CELL_EMPTY, at), CELL_TIER1);
    EXPECT_EQ(probe(at.centre, CELL_PLAIN, CELL_TIER2, at), CELL_PLAIN) << "the left one counts";
    EXPECT_EQ(probe(at.centre, CELL_TIER2, CELL_PLAIN, at), CELL_TIER2);
    EXPECT_EQ(probe(at.centre, CELL_BUG, CELL_BUG, at), CELL_BUG);
    EXPECT_EQ(bug_a, at.cell_a);
    EXPECT_EQ(bug_b, at.cell_b);
    EXPECT_EQ(stand_a, -1);
  }
}

TEST_F(LaneProbe, CellStaysTheSameWhenScrollWraps) {
  Frog& frog = frog_on(SIDE_LEFT, 1);
  lane_cells[1][1] = CELL_PLAIN;
  lanes[1].scroll = 12079.0F;  // the frog's middle at 12079 + 340: cell 41
  EXPECT_EQ(lane_probe(frog, lanes[1], lane_cells[1], nullptr, nullptr, nullptr, nullptr),
            CELL_PLAIN);
  lanes[1].speed = 3.32F;
  lane_update(1);
  EXPECT_NEAR(lanes[1].scroll, 2.32F, 0.01F);
  EXPECT_EQ(lane_probe(frog, lanes[1], lane_cells[1], nullptr, nullptr, nullptr, nullptr),
            CELL_PLAIN);
}

TEST_F(LaneProbe, FrogOffScreenWrapsToACellOfTheLane) {
  Frog& frog = frog_on(SIDE_LEFT, 1);
  lanes[1].scroll = 0.0F;
  lane_cells[1][39] = CELL_PLAIN;
  frog.x = -128.0F - 400.0F;
  EXPECT_EQ(lane_probe(frog, lanes[1], lane_cells[1], nullptr, nullptr, nullptr, nullptr),
            CELL_PLAIN);
}

TEST_F(LaneProbe, BankIsEmptyAndLeavesOutputsUnchanged) {
  fill_lane(LANE_MIDDLE_BANK, CELL_PLAIN);
  const Frog& frog = frog_on(SIDE_LEFT, LANE_MIDDLE_BANK);
  stand_a = 77;
  stand_b = 78;
  EXPECT_EQ(lane_probe(frog, lanes[LANE_MIDDLE_BANK], lane_cells[LANE_MIDDLE_BANK], nullptr,
                       nullptr, &stand_a, &stand_b),
            CELL_EMPTY);
  EXPECT_EQ(stand_a, 77);
  EXPECT_EQ(stand_b, 78);
}

}  // namespace
