#include "playfield/river.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "frame/game_clock.h"  // now_ms
#include "platform/random.h"   // random_unit
#include "playfield/lanes.h"   // lane_rows
#include "playfield/looks.h"   // lane_looks_update

namespace {

constexpr int RIVER_LANES = LANE_RIVER_NEAR - LANE_RIVER_FAR + 1;
constexpr float SCREEN_MIDDLE_PX = static_cast<float>(LAYOUT_WIDTH) / 2;

// How far the speeds wander about those of the lane table.
constexpr float WANDER[RIVER_LANES] = {-0.5F, 1.0F, -0.75F, 0.5F, -0.25F};

struct River {
  // Speeds at the ends of the present change.
  float river_speed_from[RIVER_LANES], river_speed_to[RIVER_LANES];
  std::int64_t river_change_start, river_change_at;
  bool started;
};
constinit River state{};

float river_speed_base(int i) {
  return lane_rows[LANE_RIVER_FAR + i].speed;
}

void period_begin(float clock) {
  // The same for all five lanes, it wanders with the clock.
  const float u = std::sin(clock);
  std::ranges::copy(state.river_speed_to, state.river_speed_from);
  state.river_change_start = now_ms();
  // A frog in the river holds the speeds; look again within a second.
  if (!station_river_clear(SIDE_LEFT) || !station_river_clear(SIDE_RIGHT)) {
    state.river_change_at = from_now_ms(500.0, 500.0);
    return;
  }
  for (int i = 0; i < RIVER_LANES; ++i) {
    state.river_speed_to[i] = river_speed_base(i) + WANDER[i] * u;
  }
  state.river_change_at = from_now_ms(15000.0, 15000.0);
}

}  // namespace

void river_reset(std::int64_t change_at) {
  state = {};
  for (int i = 0; i < RIVER_LANES; ++i) {
    state.river_speed_from[i] = state.river_speed_to[i] = river_speed_base(i);
  }
  state.river_change_at = change_at;
}

void river_speed_step() {
  if (!state.started) {
    state.started = true;
    state.river_change_start = now_ms();
  }
  const auto clock = static_cast<float>(now_ms());
  const auto start = static_cast<float>(state.river_change_start);
  const auto end = static_cast<float>(state.river_change_at);
  const float held = std::min(std::max(clock, start), end);
  for (int i = 0; i < RIVER_LANES; ++i) {
    const float from = state.river_speed_from[i];
    const float to = state.river_speed_to[i];
    lanes[LANE_RIVER_FAR + i].speed =
        end == start ? to : from + (to - from) * (held - start) / (end - start);
  }
  if (now_ms() > state.river_change_at) period_begin(clock);
}

namespace {

// An eaten bug comes back when it leaves the screen or crosses the strip just left of its middle,
// so the two stations don't eat each other's bugs for good.
bool bug_returns(const Lane& lane, const LaneSlot& slot) {
  const std::int32_t x = slot.x;
  if (x + lane.sprite_w <= 0 || x >= lane.length) return true;
  const auto left = static_cast<float>(x);
  const auto width = static_cast<float>(lane.sprite_w);
  return left > SCREEN_MIDDLE_PX - 1.5F * width && left <= SCREEN_MIDDLE_PX - 0.5F * width;
}

void bugs_return(Lane& lane) {
  for (std::uint64_t left = lane.eaten; left != 0; left &= left - 1) {
    const int cell = std::countr_zero(left);
    if (bug_returns(lane, lane.slots[cell])) lane.eaten &= ~cell_bit(cell);
  }
}

}  // namespace

void lane_update(int number) {
  Lane& lane = lanes[number];
  if (lane.speed == 0.0F) return;
  bugs_return(lane);
  lane_looks_update(lane);
  const auto wrap = static_cast<float>(lane.slot_count * lane.cell_size);
  const float scroll = lane.scroll + lane.speed;
  lane.scroll = scroll > wrap ? scroll - wrap : scroll < 0.0F ? scroll + wrap : scroll;
}
