#include "frame/tick_steps.h"

#include <cstdint>

#include "books/audits.h"
#include "books/journal.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/sides.h"
#include "io/watchdog_link.h"     // watchdog_reboot_word
#include "platform/power.h"       // power_reboot
#include "playfield/playfield.h"  // station_idle
#include "presentation/win_show_start.h"

namespace {

constexpr std::int64_t DAY_MS = 86400000;
constexpr std::int64_t QUIET_MS = 120000;   // twice: the deadline moves ahead of a busy tick,
                                            // and then has to lie this far back
constexpr std::int64_t NOTICE_MS = 10000;   // the screen says so before the machine goes
constexpr std::int64_t RETRY_MS = 3600000;  // after a refusal

struct RebootState {
  bool going_down;
  bool counted;  // in the audits, once a run
  std::int64_t busy_deadline_ms;
  std::int64_t reboot_at_ms;
  std::int64_t retry_at_ms;  // no earlier
};

constinit RebootState state{};

bool busy() {
  return win_show_active(SIDE_LEFT) || win_show_active(SIDE_RIGHT) || !station_idle(SIDE_LEFT) ||
         !station_idle(SIDE_RIGHT) || game_mode == MODE_OPERATOR;
}

// The external watchdog gets its word first. If the machine hangs on its way down, the watchdog, no
// longer fed, ends it.
void system_reboot() {
  watchdog_reboot_word();
  power_reboot("the game has run for a day, and nobody has played for four minutes");
}

void go_down(std::int64_t now) {
  if (!state.counted) audit_add(AUDIT_PERIODIC_REBOOT_COUNT, 1);
  state.counted = true;
  game_mode = MODE_GOING_DOWN;
  journal_put(JOURNAL_GOING_DOWN);
  audits_save();
  state.reboot_at_ms = now + NOTICE_MS;
  state.going_down = true;
}

}  // namespace

void periodic_reboot_reset() {
  state = {};
}

bool periodic_reboot_step() {
  const std::int64_t now = now_ms();
  if (busy() && !state.going_down) state.busy_deadline_ms = now + QUIET_MS;
  if (now <= DAY_MS || now <= state.busy_deadline_ms + QUIET_MS) return false;
  if (now <= state.retry_at_ms) return false;
  if (!state.going_down) go_down(now);
  if (now <= state.reboot_at_ms) return false;
  system_reboot();
  return true;
}

bool periodic_reboot_refused() {
  if (!power_reboot_refused()) return false;
  state.going_down = false;
  state.retry_at_ms = now_ms() + RETRY_MS;
  game_mode = MODE_PLAY;
  return true;
}
