#include <cstdint>
#include <initializer_list>

#include "gfx/panel_table.h"  // sheet_half_width
#include "playfield/frog_flight.h"

namespace {

// A point on the strip may lie left of its start if a frog has drifted far off the screen.
std::int32_t cell_at(float point, const Lane& lane) {
  const auto cell = static_cast<std::int32_t>(point / static_cast<float>(lane.cell_size));
  if (cell >= 0 && cell < lane.slot_count) return cell;  // and no division
  const std::int32_t wrapped = cell % lane.slot_count;
  return wrapped < 0 ? wrapped + lane.slot_count : wrapped;
}

bool carries(std::int32_t cell) {
  return cell == CELL_PLAIN || cell == CELL_TIER1 || cell == CELL_TIER2;
}

}  // namespace

std::int32_t lane_probe(const Frog& frog, const Lane& lane, const Shared<std::int32_t>* cells,
                        std::int32_t* bug_a, std::int32_t* bug_b, std::int32_t* stand_a,
                        std::int32_t* stand_b) {
  if (lane.speed == 0.0F) return CELL_EMPTY;  // a bank holds nothing
  for (std::int32_t* result : {bug_a, bug_b, stand_a, stand_b}) {
    if (result != nullptr) *result = -1;
  }

  // Two points, two pixels apart, so that a frog right over a boundary sees both cells.
  const SpriteSheet& sheet = *frog.sheet.get();
  const float centre = lane.scroll + frog.x + sheet_half_width(sheet);
  const std::int32_t cell_a = cell_at(centre - 1.0F, lane);
  const std::int32_t cell_b = cell_at(centre + 1.0F, lane);
  const std::int32_t a = cells[cell_a];
  const std::int32_t b = cells[cell_b];
  if (bug_a != nullptr && bug_b != nullptr) {
    if (a == CELL_BUG) *bug_a = cell_a;
    if (b == CELL_BUG) *bug_b = cell_b;
  }
  if (stand_a != nullptr && stand_b != nullptr) {
    if (carries(a)) *stand_a = cell_a;
    if (carries(b)) *stand_b = cell_b;
  }
  return a == CELL_EMPTY ? b : a;
}
