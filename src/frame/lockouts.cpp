#include "frame/tick_steps.h"

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/sides.h"
#include "io/jamma.h"

namespace {
constinit bool lockout_on[SIDE_COUNT] = {true, true};
}

void lockouts_reset() {
  lockout_on[SIDE_LEFT] = lockout_on[SIDE_RIGHT] = true;
}

void jamma_update_lockouts() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const bool block = pref_on(PREF_LOCKOUT_COILS) &&
                       (audit_count(AUDIT_CURRENT_CREDITS, side) > 0 || pref_on(PREF_FREEPLAY));
    if (lockout_on[side] && !block) {
      jamma_command(JAMMA_SET_LOCKOUT, side, 1);
      lockout_on[side] = false;
    } else if (!lockout_on[side] && block) {
      jamma_command(JAMMA_SET_LOCKOUT, side, -1);
      lockout_on[side] = true;
    }
  }
}
