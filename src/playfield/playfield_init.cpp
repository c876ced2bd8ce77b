#include <cstdint>

#include "frame/game_clock.h"  // now_ms
#include "gfx/panel_table.h"
#include "io/led_value.h"     // led_update
#include "platform/random.h"  // random_unit
#include "playfield/awards.h"
#include "playfield/lanes.h"
#include "playfield/paytable.h"
#include "playfield/playfield.h"
#include "playfield/river.h"
#include "playfield/ticket_dings.h"
#include "playfield/workers.h"

namespace {

void frog_set_up(Frog& frog, int side, std::int64_t now) {
  frog.flags = FROG_HIDDEN;
  frog.sheet = &sheets[SHEET_GFROG];
  frog.x = static_cast<float>(QUEUE_X[side][0]);
  frog.y = lane_y[LANE_NEAR_BANK];
  frog.state = FROG_FREE;
  frog.state_time = now;
  frog.ring_time = now;
  frog.launch_time = now;
  frog.sink_ms = 0;
  frog.lane = LANE_NEAR_BANK;
  frog.queue_pos = 0;
  purse_empty(frog);
  frog.scale = 1.0F;
  frog.alpha = 255;
  frog.pulse = 255;
  frog.ring_alpha = 255;
}

void stations_set_up(std::int64_t now) {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    for (Frog& frog : stations[side].frogs) frog_set_up(frog, side, now);
    frog_queues[side].count = 0;
    for (Shared<Frog*>& place : frog_queues[side].places) place = nullptr;
  }
  lead_lane = LANE_NEAR_BANK;
}

void butterfly_set_up(std::int64_t now) {
  butterfly.sheet = &sheets[SHEET_BUTTERFLY];
  butterfly.x = -256.0F;
  butterfly.y = 0;
  butterfly.state = BUTTERFLY_PARKED;
  butterfly.path = 1;
  butterfly.dx = 4;
  butterfly.state_time = now;
  butterfly.flight_time = now;
  butterfly.wait_s = 0.0F;  // the first flight starts at once
  butterfly.frame = 0;
  butterfly.value = 0;
  butterfly.scale = 1.0F;
  butterfly.alpha = 255;
  butterfly.ticket_frame = 0;
}

}  // namespace

void playfield_init() {
  panel_table_load();
  sheet_table_fill();
  playfield_reset();
}

void playfield_reset() {
  lanes_free();
  const std::int64_t now = now_ms();
  river_reset(
      static_cast<std::int64_t>(static_cast<double>(now) + 15000.0 + random_unit() * 15000.0));
  lanes_create();
  stations_set_up(now);
  butterfly_set_up(now);
  workers_reset();
  awards_reset();
  ticket_dings_reset();
  payout_recompute();
  led_update();
}

void playfield_free() {
  panel_table_free();
  lanes_free();
}
