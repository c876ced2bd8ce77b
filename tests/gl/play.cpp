#include "tests/gl/play.h"

#include <cstdint>
#include <filesystem>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick.h"
#include "frame/tick_timers.h"
#include "gfx/text.h"
#include "platform/files.h"
#include "playfield/frog_queue.h"
#include "playfield/lanes.h"
#include "playfield/playfield.h"
#include "playfield/ticket_dings.h"
#include "playfield/workers.h"
#include "presentation/win_show.h"
#include "tests/reset_game.h"

namespace {

constexpr std::int64_t FIRST_DEMO_MS = 10000;

}  // namespace

bool play_open(const std::string& drive, const std::string& program) {
  if (!std::filesystem::exists(program + "/images/bkdrop_lft.bmp")) return false;
  files_use_roots(drive, program);
  static const bool loaded = [] {
    prefs_reset();
    text_fonts_load();
    playfield_init();
    return true;
  }();
  return loaded;
}

void play_begin(std::uint64_t seed) {
  reset_game(0, seed);
  game_begin();
  for (auto& next : tick_timers.attract_demo_next) next = FIRST_DEMO_MS;
}

void play_step() {
  game_tick(now_ms() + 17);
  workers_step();
  ticket_dings_step(now_ms());
  win_show_step();
}

void play_tick() {
  play_step();
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (!station_idle(side) || !frog_ready(side)) continue;
    frog_launch(side, false);
    frog_enqueue(side);
  }
}
