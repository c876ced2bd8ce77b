#include "playfield/lanes.h"

#include <cstddef>
#include <string_view>

#include "frame/game_clock.h"     // now_ms
#include "gfx/strip.h"            // gfx_strip_create
#include "platform/random.h"      // random_unit
#include "playfield/playfield.h"  // lanes, lane_cells

constexpr LaneRow lane_rows[LANE_COUNT] = {
    {0, 26, 76, 0.0F, 1, 1, SHEET_GFROG, 60.0F},
    {1, 64, 56, 3.32F, 302, 1, SHEET_LOG3, 3.0F},
    {2, 96, 56, -6.55F, 158, 1, SHEET_1TURTLE, 2.5F},
    {3, 178, 56, 5.48F, 166, 1, SHEET_LOG4, 2.5F},
    {4, 208, 56, -4.54F, 382, 1, SHEET_3TURTLES, 2.5F},
    {5, 290, 56, 2.3F, 386, 1, SHEET_LOG1, 3.5F},
    {6, 356, 56, 0.0F, 1, 1, SHEET_GFROG, 60.0F},
    {7, 392, 56, -1.51F, 248, 96, SHEET_CATERPILLAR, 0.89F},
    {8, 468, 56, -2.47F, 126, 54, SHEET_LADYBUG, 1.23F},
    {9, 522, 56, 2.03F, 128, 72, SHEET_BEETLE, 1.03F},
    {10, 566, 56, -1.97F, 148, 64, SHEET_LIGHTNINGBUG, 1.01F},
    {11, 612, 56, 1.77F, 140, 100, SHEET_GRASSHOPPER, 0.96F},
    {12, 692, 76, 0.0F, 1, 1, SHEET_GFROG, 60.0F},
};

namespace {

constexpr bool rows_in_order() {
  for (int lane = 0; lane < LANE_COUNT; ++lane) {
    if (lane_rows[lane].lane != lane) return false;
  }
  return true;
}
static_assert(rows_in_order());

// The river, a digit for each LaneCell, cell 0 first.
constexpr std::string_view LANE1_NORMAL = "3000000000030000030000300000003000000300";
constexpr std::string_view LANE1_BOOST = "3000000000030000000000000000003000000000";
constexpr std::string_view LANE2 = "5000530003005000050000300050300050303000";
constexpr std::string_view LANE3 = "4030300004033000403004033040303040330300";
constexpr std::string_view LANE4 = "3030330030033330330333033330303303003030";
constexpr std::string_view LANE5 = "3303303003330303330333000333303033333003";

// The chance of a crossing depends on these counts alone.
constexpr bool holds(std::string_view cells, int occupied, char kind, int of_kind) {
  int all = 0;
  int some = 0;
  for (const char cell : cells) {
    all += cell != '0' ? 1 : 0;
    some += cell == kind ? 1 : 0;
  }
  return cells.size() == LANE_CELLS && all == occupied && some == of_kind;
}
static_assert(holds(LANE1_NORMAL, 6, '3', 6) && holds(LANE1_BOOST, 3, '3', 3));
static_assert(holds(LANE2, 12, '5', 6) && holds(LANE3, 18, '4', 6));
static_assert(holds(LANE4, 24, '3', 24) && holds(LANE5, 26, '3', 26));

void cells_fill(int lane, std::string_view cells) {
  for (int cell = 0; cell < LANE_CELLS; ++cell) {
    lane_cells[lane][cell] =
        cells.empty() ? CELL_EMPTY : cells[static_cast<std::size_t>(cell)] - '0';
  }
}

constexpr std::string_view fixed_cells(int lane) {
  switch (lane) {
    case 2:
      return LANE2;
    case 3:
      return LANE3;
    case 4:
      return LANE4;
    case 5:
      return LANE5;
    default:
      return {};
  }
}

SpriteSheet* cell_sheet(int lane, std::int32_t cell) {
  switch (cell) {
    case CELL_TIER1:
      return &sheets[SHEET_LOG4GOLD];
    case CELL_TIER2:
      return &sheets[SHEET_1TURTLEGOLD];
    default:
      return &sheets[lane_rows[lane].sheet];
  }
}

void lane_create(const LaneRow& row) {
  Lane& lane = lanes[row.lane];
  gfx_strip_create(&lane, 1, LANE_CELLS);
  lane.eaten = 0;
  lane.x = 0.0F;
  lane.y = row.y;
  lane.length = LAYOUT_WIDTH;
  lane.height = row.height;
  // The river differs from boot to boot.
  lane.scroll = static_cast<float>(static_cast<int>(random_unit() * LAYOUT_WIDTH));
  cells_fill(row.lane, fixed_cells(row.lane));
  lane_slots_fill(row.lane);
  lane.cell_size = row.cell_size;
  lane.sprite_w = row.sprite_w;
  lane.speed = row.speed;
}

}  // namespace

void lanes_create() {
  for (const LaneRow& row : lane_rows) lane_create(row);
}

void lanes_free() {
  for (Lane& lane : lanes) {
    if (lane.slots == nullptr) continue;
    gfx_strip_free(&lane);
    lane.slots = nullptr;
    lane.panels = nullptr;
  }
}

void lane1_cells_fill(bool boost) {
  cells_fill(1, boost ? LANE1_BOOST : LANE1_NORMAL);
}

void lane_slots_fill(int lane) {
  const std::int64_t now = now_ms();
  for (int cell = 0; cell < LANE_CELLS; ++cell) {
    LaneSlot& slot = lanes[lane].slots[cell];
    const std::int32_t kind = lane_cells[lane][cell];
    const bool empty = kind == CELL_EMPTY;
    slot.sheet = empty ? nullptr : cell_sheet(lane, kind);
    slot.frame = 0;
    slot.kind = empty ? SLOT_EMPTY : SLOT_ANIMATED;
    slot.cycle_s = empty ? 0.0F : lane_rows[lane].cycle_s;
    slot.cycle_start =
        empty ? 0 : static_cast<std::int64_t>(static_cast<double>(now) - random_unit() * 1000.0);
    slot.active = empty ? 0 : 1;
  }
}
