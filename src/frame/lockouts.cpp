#include "frame/tick_steps.h"

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_mode.h"
#include "frame/sides.h"
#include "io/jamma.h"
#include "platform/shared.h"  // Shared

namespace {
constinit bool lockout_on[SIDE_COUNT] = {true, true};
constinit Shared<bool> held_closed{false};

// While nobody counts coins, or soon won't, both slots refuse them.
bool nobody_counts() {
  return held_closed || game_mode == MODE_GOING_DOWN;
}

bool has_something_to_play(int side) {
  return audit_count(AUDIT_CURRENT_CREDITS, side) > 0 || pref_on(PREF_FREEPLAY);
}
}  // namespace

void lockouts_hold_closed(bool closed) {
  held_closed = closed;
}

void lockouts_reset() {
  lockout_on[SIDE_LEFT] = lockout_on[SIDE_RIGHT] = true;
}

void jamma_update_lockouts() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const bool block =
        nobody_counts() || (pref_on(PREF_LOCKOUT_COILS) && has_something_to_play(side));
    if (lockout_on[side] && !block) {
      jamma_command(JAMMA_SET_LOCKOUT, side, 1);
      lockout_on[side] = false;
    } else if (!lockout_on[side] && block) {
      jamma_command(JAMMA_SET_LOCKOUT, side, -1);
      lockout_on[side] = true;
    }
  }
}
