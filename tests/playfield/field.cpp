#include "tests/playfield/field.h"

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "gfx/panel_table.h"
#include "io/jamma.h"
#include "io/led_value.h"
#include "platform/random.h"
#include "playfield/frog_flight.h"
#include "playfield/river.h"
#include "presentation/win_show_start.h"
#include "tests/fakes/jps_fake.h"

std::vector<std::string> outcomes;
bool show_active[SIDE_COUNT];

namespace {

void outcome(const char* what, std::intptr_t side, std::intptr_t count) {
  outcomes.push_back(std::string(what) + ' ' + std::to_string(side) + ' ' + std::to_string(count));
}

}  // namespace

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

extern "C" void __wrap__Z11audits_savev() {  // NOLINT: the linker's name
  outcomes.emplace_back("store");
}

// --- strips and pictures without a picture
// --------------------------------------------------------

void gfx_strip_create(Lane* lane, int direction, int slot_count) {
  lane->direction = direction;
  lane->slot_count = slot_count;
  lane->cell_size = lane->sprite_w = 1;
  lane->scroll = 0.0F;
  lane->panels = new Panel[static_cast<std::size_t>(slot_count)]{};
  lane->slots = new LaneSlot[static_cast<std::size_t>(slot_count)]{};
  for (int i = 0; i < slot_count; ++i) lane->slots[i].kind = SLOT_EMPTY;
}

void gfx_strip_free(Lane* lane) {
  delete[] lane->panels;
  delete[] lane->slots;
}

int gfx_strip_draw(Lane* lane) {
  const float scroll = lane->scroll;
  const int first = static_cast<int>(scroll / static_cast<float>(lane->cell_size));
  const int offset = static_cast<int>(scroll) % lane->cell_size;
  for (int n = 0; n < lane->length / lane->cell_size + 3; ++n) {
    LaneSlot& slot = lane->slots[(first + n) % lane->slot_count];
    slot.x = n * lane->cell_size - offset;
    slot.y = lane->y;
  }
  return first;
}

int gfx_panels_load(Panel*, int, const PanelName*) {
  return 0;
}
int gfx_panels_free(Panel*, int) {
  return 0;
}
int gfx_numbers_load(NumberFont*, int, const PanelName*) {
  return 0;
}
int gfx_numbers_free(NumberFont*, int) {
  return 0;
}

// --- the field
// ------------------------------------------------------------------------------------

void Field::SetUp() {
  for (int sheet = 0; sheet < SHEET_COUNT; ++sheet) {  // cells of 256 x 256
    Panel& panel = panels[PANEL_FIRST_SHEET + sheet];
    panel.width = panel.height = 16 * 256;
  }
  sheet_table_fill();
  for (const SpriteSheet& sheet : sheets) {
    sheet.panel->width = 256 * sheet.columns;
    sheet.panel->height = 256 * sheet.rows;
  }
  game_clock.now_ms = 1000;
  game_mode = MODE_PLAY;
  sound_enabled = 1;
  tick_timers.next_vox_ms = 0;
  for (int side = 0; side < SIDE_COUNT; ++side) {
    tick_timers.since_award_ms[side] = 0;
    tick_timers.award_done[side] = 0;
    show_active[side] = false;
  }
  random_seed(1);
  prefs_reset();
  audits_reset();
  playfield_reset();
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
