#include "lab/screen.h"

#include <algorithm>

namespace {

constexpr std::uint64_t ALL_CELLS = (std::uint64_t{1} << LANE_CELLS) - 1;

struct LaneMemory {
  std::uint64_t seen;  // bit n: cell n has been on the screen
  // Cells of the same footing to either side of each, itself included.
  std::int8_t run_left[LANE_CELLS], run_right[LANE_CELLS];
};
constinit LaneMemory memory[LANE_COUNT]{};

bool moves(int lane) {
  return lane != LANE_FAR_BANK && lane != LANE_MIDDLE_BANK && lane != LANE_NEAR_BANK;
}

int wrapped(int number) {
  const int cell = number % LANE_CELLS;
  return cell < 0 ? cell + LANE_CELLS : cell;
}

int cell_at(int lane, float place_px) {
  return memory_ring(lane, place_px).number;
}

bool solid(int lane, int number) {
  return memory_cell(lane, number) != CELL_EMPTY;
}

void runs_update(int lane) {
  LaneMemory& m = memory[lane];
  for (int cell = 0; cell < LANE_CELLS; ++cell) {
    const bool here = solid(lane, cell);
    int left = 1;
    int right = 1;
    while (left < LANE_CELLS && solid(lane, wrapped(cell - left)) == here) ++left;
    while (right < LANE_CELLS && solid(lane, wrapped(cell + right)) == here) ++right;
    m.run_left[cell] = static_cast<std::int8_t>(left);
    m.run_right[cell] = static_cast<std::int8_t>(right);
  }
}

void look_at(int lane) {
  LaneMemory& m = memory[lane];
  if (m.seen == ALL_CELLS) return;
  const std::uint64_t before = m.seen;
  const Lane& strip = lanes[lane];
  const int first = static_cast<int>(strip.scroll / static_cast<float>(strip.cell_size)) + 1;
  for (int n = 0; n < LAYOUT_WIDTH / strip.cell_size; ++n) {  // those that are whole in view
    m.seen |= std::uint64_t{1} << wrapped(first + n);
  }
  if (m.seen != before && lane < LANE_MIDDLE_BANK) runs_update(lane);
}

}  // namespace

void screen_reset() {
  for (LaneMemory& each : memory) each = {};
  screen_look();
}

void screen_look() {
  for (int lane = 0; lane < LANE_COUNT; ++lane) {
    if (moves(lane)) look_at(lane);
  }
}

bool screen_shows(int lane, float x_px, LaneCell& cell) {
  if (x_px < 0.0F || x_px >= static_cast<float>(LAYOUT_WIDTH)) return false;
  const int number = cell_at(lane, memory_place(lane, x_px));
  const bool eaten = bug_is_eaten(lanes[lane], number);
  cell = eaten ? CELL_EMPTY : static_cast<LaneCell>(lane_cells[lane][number].get());
  return true;
}

float screen_speed(int lane) {
  return lanes[lane].speed;
}

float screen_frog_middle(int side) {
  return static_cast<float>(QUEUE_X[side][0] + FROG_MIDDLE_PX);
}

LaneCell memory_cell(int lane, int number) {
  const std::uint64_t bit = std::uint64_t{1} << number;
  if ((memory[lane].seen & bit) == 0) return CELL_EMPTY;
  if (lane >= LANE_MEADOW_FAR && bug_is_eaten(lanes[lane], number)) return CELL_EMPTY;
  return static_cast<LaneCell>(lane_cells[lane][number].get());
}

RingCell memory_ring(int lane, float place_px) {
  const float cells = place_px / static_cast<float>(lanes[lane].cell_size);
  int whole = static_cast<int>(cells);
  if (cells < static_cast<float>(whole)) --whole;
  return {whole >= 0 && whole < LANE_CELLS ? whole : wrapped(whole),
          cells - static_cast<float>(whole)};
}

float memory_place(int lane, float x_px) {
  return lanes[lane].scroll + x_px;
}

bool memory_whole() {
  return std::ranges::all_of(memory, [](const LaneMemory& m) {
    return m.seen == ALL_CELLS || !moves(static_cast<int>(&m - memory));
  });
}

Footing memory_footing(int lane, float place_px, bool to_right) {
  const auto size = static_cast<float>(lanes[lane].cell_size);
  const RingCell at = memory_ring(lane, place_px);
  const LaneMemory& m = memory[lane];
  const float left = static_cast<float>(m.run_left[at.number] - 1) + at.into;
  const float right = static_cast<float>(m.run_right[at.number]) - at.into;
  const LaneCell cell = memory_cell(lane, at.number);
  const float margin = std::min(left, right) * size;
  return {cell, cell != CELL_EMPTY ? margin : -margin, (to_right ? right : left) * size,
          (to_right ? 1.0F - at.into : at.into) * size};
}

Passing memory_bugs(int lane, float from_px, float to_px) {
  const bool to_right = from_px < to_px;
  const RingCell from = memory_ring(lane, from_px);
  const RingCell to = memory_ring(lane, to_px);
  const float into = to_right ? 1.0F - std::max(from.into, to.into) : std::min(from.into, to.into);
  Passing passing{memory_cell(lane, from.number) == CELL_BUG ? 1 : 0,
                  into * static_cast<float>(lanes[lane].cell_size)};
  for (int number = from.number; number != to.number;) {
    number = wrapped(number + (to_right ? 1 : -1));
    if (memory_cell(lane, number) == CELL_BUG) ++passing.bugs;
  }
  return passing;
}
