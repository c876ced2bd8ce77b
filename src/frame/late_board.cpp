// A board that wasn't there at power-on and answers later is taken into use as if the game began.
#include <cstdint>
#include <cstdio>

#include "books/journal.h"
#include "frame/sides.h"
#include "frame/tick_steps.h"
#include "io/jamma.h"
#include "io/lamp_effects.h"
#include "io/lamps.h"

namespace {

// By its counters a board shows whether it is the one that was told of the tickets.
constexpr std::int64_t COUNTERS_WAIT_MS = 1000;

struct LateBoard {
  bool awaited;
  std::int64_t wait_until_ms;  // 0 before the link came up
  bool alive;                  // as the journal has it
};
constinit LateBoard late_board{};

bool link_is_up() {
  return jamma_command(JAMMA_GET_TICKETS_OWED, SIDE_LEFT) >= 0;
}

void note_link() {
  const bool alive = jamma_link_alive();
  if (alive == late_board.alive) return;
  late_board.alive = alive;
  journal_put(alive ? JOURNAL_LINK_BACK : JOURNAL_LINK_LOST);
  if (jamma_port() == NO_PORT) return;  // the search has said so
  std::fprintf(stderr, alive ? "The I/O board answers again.\n"
                             : "The I/O board doesn't answer. See to its cable and its power.\n");
}

bool counters_are_known() {
  std::uint8_t counters[COUNTER_COUNT];
  return jamma_board_counters(counters);
}

}  // namespace

void late_board_begin() {
  late_board = {.awaited = !link_is_up(), .wait_until_ms = 0, .alive = true};
}

bool late_board_step(std::int64_t now_ms) {
  note_link();
  if (!late_board.awaited) return false;
  if (!link_is_up()) return true;
  if (late_board.wait_until_ms == 0) late_board.wait_until_ms = now_ms + COUNTERS_WAIT_MS;
  if (now_ms < late_board.wait_until_ms && !counters_are_known()) return true;
  late_board.awaited = false;
  lockouts_reset();
  lamps_reset();
  jamma_lamps_init();
  tickets_restore();
  return false;
}
