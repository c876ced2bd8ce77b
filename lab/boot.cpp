#include "lab/boot.h"

#include <algorithm>
#include <memory>

#include "books/audits.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick.h"
#include "frame/tick_steps.h"
#include "frame/tick_timers.h"
#include "frame/ticket_status.h"
#include "io/lamp_effects.h"
#include "io/lamps.h"
#include "lab/board.h"
#include "lab/flights.h"
#include "platform/headless/clock_control.h"
#include "platform/random.h"
#include "playfield/looks.h"
#include "playfield/playfield.h"
#include "presentation/attract.h"
#include "presentation/voices.h"
#include "presentation/volume.h"
#include "presentation/win_show.h"
#include "presentation/win_show_start.h"

namespace {

constexpr std::int32_t CELL_PX = 256;  // of the frog's and the butterfly's pictures

constinit std::int32_t frogs_left[SIDE_COUNT]{};
constinit std::int32_t games_seen[SIDE_COUNT]{};

// The rules need the size of the pictures' cells.
void sheets_set_up() {
  sheet_table_fill();
  for (const SpriteSheet& sheet : sheets) {
    sheet.panel->width = CELL_PX * sheet.columns;
    sheet.panel->height = CELL_PX * sheet.rows;
  }
}

// All modules as at process start.
void modules_reset(std::int64_t start_ms) {
  headless_clock_reset();
  headless_clock_set(start_ms);
  game_clock.now_ms = start_ms;
  game_mode = MODE_PLAY;
  sound_enabled = 0;
  std::construct_at(&tick_timers);
  std::construct_at(&ticket_status);
  audits_tick_reset();
  board_reset();
  lockouts_reset();
  periodic_reboot_reset();
  lamps_reset();
  jamma_lamps_init();
  attract_reset();
  voices_reset();
  win_show_reset();
  flights_reset();
}

// The rules read only one result of the drawing: whether eaten bugs are out of view.
void eaten_bugs_place() {
  for (int lane = LANE_MEADOW_FAR; lane <= LANE_MEADOW_NEAR; ++lane) {
    gfx_slots_place(&lanes[lane], lanes[lane].eaten);
  }
}

std::uint64_t scrambled(std::uint64_t word) {
  word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9;
  word = (word ^ (word >> 27)) * 0x94D049BB133111EB;
  return word ^ (word >> 31);
}

bool any_frog_left() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (frogs_left[side] > 0 || flight_of(side) != nullptr) return true;
  }
  return false;
}

void launches_count() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const std::int32_t games = audit_count(AUDIT_GAMES_PLAYED, side);
    frogs_left[side] -= games - games_seen[side];
    games_seen[side] = games;
  }
}

}  // namespace

std::uint64_t boot_seed(std::uint64_t run_seed, std::int64_t number) {
  return scrambled(scrambled(run_seed + 0x9E3779B97F4A7C15) + static_cast<std::uint64_t>(number));
}

void boot_field() {
  audits_reset();
  sheets_set_up();
  playfield_reset();
}

void boot_switch_on(std::uint64_t seed, std::int64_t start_ms) {
  looks_set_watched(false);
  modules_reset(start_ms);
  random_seed(seed);
  boot_field();
  attract_begin();
}

void boot_begin(const BootPlan& plan) {
  boot_switch_on(plan.seed, plan.start_ms);
  game_begin();
  players_reset(plan.player, scrambled(~plan.seed));
  for (int side = 0; side < SIDE_COUNT; ++side) {
    frogs_left[side] = plan.frogs_per_side;
    games_seen[side] = 0;
  }
}

bool boot_step(AwardsSum& awards) {
  const bool may_launch[SIDE_COUNT] = {frogs_left[SIDE_LEFT] > 0, frogs_left[SIDE_RIGHT] > 0};
  players_step(may_launch);
  game_tick(now_ms() + TICK_STEP_MS);
  eaten_bugs_place();
  if (win_show_active(SIDE_LEFT) || win_show_active(SIDE_RIGHT)) win_show_step();
  flights_step(awards);
  launches_count();
  return any_frog_left();
}

void boot_play(const BootPlan& plan, Sums& sums) {
  Sums boot{};
  boot_begin(plan);
  while (boot_step(boot.awards)) {
  }
  boot.boots = 1;
  boot.game_ms = now_ms() - plan.start_ms;
  sums_take_books(boot);
  sums_take_spread(boot);
  sums_add(sums, boot);
}
