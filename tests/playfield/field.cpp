#include "tests/playfield/field.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "books/book_file.h"
#include "frame/game_clock.h"
#include "io/jamma.h"
#include "io/led_value.h"
#include "playfield/frog_flight.h"
#include "playfield/river.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jps_fake.h"
#include "tests/plain_sheets.h"
#include "tests/reset_rules.h"

std::vector<Outcome> outcomes;
bool show_active[SIDE_COUNT];

namespace {

void outcome(const char* what, std::intptr_t side, std::intptr_t count) {
  outcomes.push_back({what, static_cast<int>(side), static_cast<int>(count)});
}

}  // namespace

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << outcome.what << ' ' << outcome.side << ' ' << outcome.count;
}

std::int32_t jamma_command(std::int32_t command, std::intptr_t a, std::intptr_t b, std::intptr_t,
                           std::intptr_t) {
  if (command == JAMMA_ADD_TICKETS) outcome("add", a, b);
  if (command == JAMMA_PULSE_TICKET_METER) outcome("meter", a, b);
  return 0;
}

void win_show_start(int side, int tickets) {
  outcome("show", side, tickets);
}

bool win_show_active(int side) {
  return show_active[side];
}

void led_update() {}

// In place of the books' files: a store of the audits ends with the histogram's.
bool book_store(const char* name, const char* /*magic*/, const void* /*data*/,
                std::size_t /*size*/) {
  if (std::string_view(name) == R"(d:\histo)") outcome("store", 0, 0);
  return true;
}

bool book_read(const char* /*name*/, const char* /*magic*/, void* /*data*/, std::size_t /*size*/) {
  return false;
}

void Field::SetUp() {
  plain_sheets();
  std::ranges::fill(show_active, false);
  reset_rules(1000);
  outcomes.clear();
  jps_fake_reset();
}

void Field::tick(int ms) {
  game_clock.now_ms += ms;
  river_speed_step();
  lead_lane_update();
  for (int lane = 0; lane < LANE_COUNT; ++lane) lane_update(lane);
  butterfly_update();
  station_update(SIDE_LEFT);
  station_update(SIDE_RIGHT);
}

void Field::stations_tick(int ms) {
  game_clock.now_ms += ms;
  lead_lane_update();
  station_update(SIDE_LEFT);
  station_update(SIDE_RIGHT);
}

void Field::draw() {
  for (Lane& lane : lanes) {
    if (lane.cell_size > 1) gfx_strip_draw(&lane);  // a bank has nothing to place
  }
}

void Field::fill_lane(int lane, LaneCell cell) {
  for (Shared<std::int32_t>& each : lane_cells[lane]) each = cell;
}

void Field::clear_field() {
  for (int lane = LANE_MIDDLE_BANK; lane < LANE_COUNT; ++lane) fill_lane(lane, CELL_EMPTY);
  butterfly.wait_s = 1e9F;
}

Frog& Field::frog_on(int side, int lane, FrogState state) {
  Frog& frog = stations[side].frogs[0];
  frog.flags = 0;
  frog.sheet = &sheets[SHEET_GFROG];
  frog.x = 212.0F;
  frog.y = lane_y[lane];
  frog.lane = lane;
  frog.state = state;
  frog.state_time = now_ms();
  frog.launch_time = now_ms();
  return frog;
}

void Field::drown(Frog& frog) {
  fill_lane(5, CELL_EMPTY);
  frog.lane = 5;
  frog.state = FROG_RESTING;
  frog.state_time = now_ms();
  stations_tick();
  ASSERT_EQ(frog.state, FROG_SINKING);
}

void Field::cross(Frog& frog) {
  frog.lane = 1;
  frog.state = FROG_HOPPING;
  frog.state_time = now_ms();
  stations_tick(351);
  ASSERT_EQ(frog.state, FROG_WINNING);
}
