#include "playfield/frog_queue.h"

#include <cstdint>

#include "books/audits.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "frame/game_clock.h"  // now_ms
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "gfx/panel_table.h"   // sheets
#include "playfield/awards.h"  // purse_empty
#include "playfield/cues.h"    // cue_play
#include "playfield/playfield.h"
#include "presentation/win_show_start.h"  // win_show_active

namespace {

constexpr std::int64_t REPEAT_PLAY_MS = 15000;

Frog* free_frog(int side) {
  for (Frog& frog : stations[side].frogs) {
    if (frog.state == FROG_FREE) return &frog;
  }
  return nullptr;
}

// Takes the head out. The others move up a place in number; on the screen the line closes up when
// the launched frog lands.
Frog* frog_queue_pop(int side) {
  FrogQueue& queue = frog_queues[side];
  Frog* head = queue.places[0];
  for (int place = 1; place < queue.count; ++place) {
    Frog* frog = queue.places[place];
    frog->queue_pos = place - 1;
    queue.places[place - 1] = frog;
  }
  queue.count -= 1;
  queue.places[queue.count] = nullptr;
  return head;
}

}  // namespace

void frog_enqueue(int side) {
  FrogQueue& queue = frog_queues[side];
  const std::int32_t place = queue.count;
  if (place == QUEUE_PLACES) return;
  Frog* frog = free_frog(side);
  if (frog == nullptr) return;
  frog->flags |= FROG_HIDDEN;
  frog->y = lane_y[LANE_NEAR_BANK];
  frog->x = static_cast<float>(QUEUE_X[side][place]);
  frog->scale = 1.0F;
  frog->state_time = now_ms();
  frog->queue_pos = place;
  frog->state = FROG_WAITING;
  frog->lane = LANE_NEAR_BANK;
  purse_empty(*frog);
  frog->alpha = 255;
  frog->pulse = 255;
  frog->ring_alpha = 255;
  queue.places[place] = frog;
  queue.count = place + 1;
}

bool frog_ready(int side) {
  if (game_mode == MODE_OPERATOR || win_show_active(side) || free_frog(side) == nullptr) {
    return false;
  }
  return station_idle(side);
}

void frog_launch(int side, bool demo) {
  // The line can be empty if every record was in use when the last frog was to be replaced.
  if (frog_queues[side].count == 0) frog_enqueue(side);
  if (frog_queues[side].count == 0) return;

  tick_timers.award_done[side] = 0;
  Frog& frog = *frog_queue_pop(side);
  frog.x = static_cast<float>(QUEUE_X[side][0]);
  frog.y = lane_y[LANE_NEAR_BANK];
  frog.state = FROG_LAUNCHING;
  frog.state_time = now_ms();
  frog.launch_time = now_ms();
  frog.lane = LANE_NEAR_BANK;
  purse_empty(frog);
  frog.flags &= ~(FROG_HIDDEN | FROG_DEMO | FROG_IDLE_ANIM);
  frog.sheet = &sheets[SHEET_GFROG];
  if (demo) {
    frog.flags |= FROG_DEMO;
    frog.pulse = 0;
    return;
  }
  cue_play("jump");
  audit_add(AUDIT_GAMES_PLAYED, side, 1);
  audit_add(AUDIT_GAMES_SINCE_BOOT, side, 1);
  journal_put(JOURNAL_LAUNCH,
              {side, audit_count(AUDIT_GAMES_PLAYED, side), pref_on(PREF_FREEPLAY) ? 0 : 1,
               audit_count(AUDIT_CURRENT_CREDITS, side)});
  // The time runs from an award on and stands at 0 before the first one, so the first play after
  // boot counts as a repeat.
  if (tick_timers.since_award_ms[side] < REPEAT_PLAY_MS) audit_add(AUDIT_REPEAT_PLAYS, side, 1);
}
