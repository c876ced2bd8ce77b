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

std::vector<std::string> outcomes;
bool show_active[SIDE_COUNT];

std::string outcome(const std::string& what, int side, std::intptr_t count) {
  return what + " " + std::to_string(side) + " " + std::to_string(count);
}

std::int32_t jamma_command(std::int32_t command, std::intptr_t a, std::intptr_t b, std::intptr_t,
                           std::intptr_t) {
  const int side = static_cast<int>(a);
  if (command == JAMMA_ADD_TICKETS) outcomes.push_back(outcome("add", side, b));
  if (command == JAMMA_PULSE_TICKET_METER) outcomes.push_back(outcome("meter", side, b));
  return 0;
}

void win_show_start(int side, int tickets) {
  outcomes.push_back(outcome("show", side, tickets));
}

bool win_show_active(int side) {
  return show_active[side];
}

void led_update() {
  outcomes.emplace_back("led");
}

// In place of the books' files: a store of the audits ends with the histogram's.
bool book_store(const char* name, const char* /*magic*/, const void* /*data*/,
                std::size_t /*size*/) {
  if (std::string_view(name) == R"(d:\histo)") outcomes.emplace_back("store");
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

void Field::draw() {
  for (Lane& lane : lanes) {
    if (lane.cell_size > 1) gfx_strip_draw(&lane);  // a bank has nothing to place
  }
}
