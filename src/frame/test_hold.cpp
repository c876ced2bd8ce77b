#include "frame/tick_steps.h"

#include "books/audits.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"   // test_hold_ticks
#include "operator/main_menu.h"  // menu_enter
#include "presentation/volume.h"
#include "sound/jps.h"

constexpr int HOLD_TICKS = 120;  // of the 60 Hz tick

void test_hold_step(int test_level) {
  if (test_level == 0) {
    tick_timers.test_hold_ticks = 0;
    return;
  }
  if (++tick_timers.test_hold_ticks <= HOLD_TICKS) return;

  audit_add(AUDIT_TEST_ENTRY_COUNT, 1);
  journal_put(JOURNAL_TEST_ENTERED);
  tick_timers.test_hold_ticks = 0;
  game_mode = MODE_OPERATOR;
  audits_save();
  jps_stop_all();
  sound_enabled = 0;
  volume_set(pref_int(PREF_VOLUME));
  prefs[PREF_VOLUME].int_value = volume_step.get();
  prefs_save();
  menu_enter();
}
