#include "tests/playfield/field.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "books/book_file.h"
#include "frame/game_clock.h"
#include "io/jamma.h"
#include "io/led_value.h"
#include "playfield/frog_flight.h"
#include "playfield/looks.h"
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

void led_update() {
  outcome("led", 0, 0);
}

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
  looks_set_watched(true);
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

void Field::draw() {
  for (Lane& lane : lanes) {
    if (lane.cell_size > 1) gfx_strip_draw(&lane);  // a bank has nothing to place
  }
}
