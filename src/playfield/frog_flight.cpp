#include "playfield/frog_flight.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "frame/game_clock.h"  // now_ms
#include "gfx/panel_table.h"   // sheet_half_width
#include "playfield/awards.h"
#include "playfield/frog_states.h"
#include "playfield/looks.h"    // frog_looks_update
#include "playfield/workers.h"  // fx_splash_start

namespace {

constexpr std::int32_t BUTTERFLY_REACH_X = 96;
constexpr std::int32_t BUTTERFLY_REACH_Y = 80;
constexpr std::int64_t SINK_MS_LEAST = 2000;
constexpr std::int64_t SINK_MS_PER_TICKET = 500;

std::int32_t middle_x(float x, const SpriteSheet& sheet) {
  return static_cast<std::int32_t>(x + sheet_half_width(sheet));
}
std::int32_t middle_y(std::int32_t y, const SpriteSheet& sheet) {
  return static_cast<std::int32_t>(static_cast<float>(y) + sheet_half_height(sheet));
}

// The butterfly's box reaches to both sides of its middle and down from it, and not above it.
void butterfly_test(int side, Frog& frog) {
  if (butterfly.state != BUTTERFLY_FLYING) return;
  const std::int32_t cx = middle_x(frog.x, *frog.sheet.get());
  const std::int32_t cy = middle_y(frog.y, *frog.sheet.get());
  const std::int32_t bx = middle_x(butterfly.x, *butterfly.sheet);
  const std::int32_t by = middle_y(butterfly.y, *butterfly.sheet);
  if (cx - 1 < bx + BUTTERFLY_REACH_X && cx + 1 > bx - BUTTERFLY_REACH_X &&
      cy - 1 < by + BUTTERFLY_REACH_Y && cy + 1 > by) {
    award_butterfly(side, frog);
  }
}

void bugs_test_lane(int side, Frog& frog, int lane) {
  std::int32_t bug_a = -1;
  std::int32_t bug_b = -1;
  if (lane_probe(frog, lanes[lane], lane_cells[lane], &bug_a, &bug_b, nullptr, nullptr) !=
      CELL_BUG) {
    return;
  }
  for (const std::int32_t cell : {bug_a, bug_b}) {
    if (cell < 0 || bug_is_eaten(lanes[lane], cell)) continue;
    award_bug(side, frog, lane, cell);
    lanes[lane].eaten |= cell_bit(cell);
  }
}

// A frog in the air reaches the lane that it left and the one it is jumping to, the lower number
// first; in the first hop it doesn't reach ahead. No bug crawls beyond the meadow.
void bugs_test(int side, Frog& frog) {
  const int lane = frog.lane;
  if (frog.state == FROG_HOPPING && lane > LANE_MIDDLE_BANK) bugs_test_lane(side, frog, lane - 1);
  if (lane > LANE_MIDDLE_BANK) bugs_test_lane(side, frog, lane);
}

// No two frogs of a side sink on neighbouring lanes at the same time.
void neighbours_fade(int side, const Frog& frog) {
  for (Frog& other : stations[side].frogs) {
    if (&other == &frog || other.state != FROG_SINKING || std::abs(other.lane - frog.lane) > 1) {
      continue;
    }
    other.state = FROG_FADING;
    other.flags |= FROG_HIDDEN;
    other.state_time = now_ms();
  }
}

// The state's time stays that of the landing.
void water_end(int side, Frog& frog) {
  const bool demo = is_demo(frog);
  frog.flags |= FROG_HIDDEN;
  frog.state = FROG_SINKING;
  award_minimum(side, frog);
  frog.sink_ms =
      demo ? SINK_MS_LEAST : std::max(frog.total_tickets * SINK_MS_PER_TICKET, SINK_MS_LEAST);
  if (!demo) award_sink_cues(frog);
  fx_splash_start(static_cast<std::int32_t>(frog.x - 128.0F), frog.y, frog.lane);
  frog.flags &= ~FROG_LEAD_CUE;
  if (!demo) award_payout(side, frog);
  neighbours_fade(side, frog);
}

void river_test(int side, Frog& frog) {
  const FrogState state = frog.state;
  if (state != FROG_HOPPING && state != FROG_RESTING) return;
  const int lane = frog.lane;
  if (lane >= LANE_MIDDLE_BANK) return;
  std::int32_t stand_a = -1;
  std::int32_t stand_b = -1;
  const std::int32_t cell =
      lane_probe(frog, lanes[lane], lane_cells[lane], nullptr, nullptr, &stand_a, &stand_b);
  const bool solid = cell == CELL_PLAIN || cell == CELL_TIER1 || cell == CELL_TIER2;
  // A hop away from a lane drifts with that lane until it lands, even over water.
  if (state == FROG_HOPPING || solid) frog.x -= lanes[lane].speed;
  if (state == FROG_HOPPING) return;

  if ((cell == CELL_TIER1 || cell == CELL_TIER2) && (frog.flags & FROG_LANDED) == 0) {
    award_gold(side, frog, cell, stand_a, stand_b);
    frog.flags |= FROG_LANDED;
  }
  if (cell == CELL_EMPTY) water_end(side, frog);
}

void lead_cue(Frog& frog) {
  const bool still = frog.state == FROG_RESTING || frog.state == FROG_WINNING;
  if (!still || frog.lane >= LANE_MIDDLE_BANK || (frog.flags & FROG_LEAD_CUE) == 0) return;
  frog.flags &= ~FROG_LEAD_CUE;
  if (!is_demo(frog)) award_lead_cue(frog.lane);
}

bool can_catch_butterfly(FrogState state) {
  return state != FROG_SINKING && state != FROG_WINNING && state != FROG_FADING;
}

void frog_update(int side, Frog& frog) {
  const FrogTimes times = frog_times(frog);
  frog_looks_update(frog, times);
  if (can_catch_butterfly(frog.state)) butterfly_test(side, frog);
  bugs_test(side, frog);
  river_test(side, frog);
  lead_cue(frog);
  frog_state_step(side, frog, times);
}

}  // namespace

void station_update(int side) {
  // Frogs come and go meanwhile, but none comes from here.
  for (Frog& frog : stations[side].frogs) {
    if (frog.state != FROG_FREE) frog_update(side, frog);
  }
}
