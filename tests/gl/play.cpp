#include "tests/gl/play.h"

#include <filesystem>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick.h"
#include "gfx/text.h"
#include "platform/files.h"
#include "playfield/frog_queue.h"
#include "playfield/lanes.h"
#include "playfield/playfield.h"
#include "playfield/workers.h"
#include "presentation/scene.h"
#include "tests/reset_game.h"

bool play_open(const std::string& drive, const std::string& program) {
  if (!std::filesystem::exists(program + "/images/bkdrop_lft.bmp")) return false;
  files_use_roots(drive, program);
  prefs_reset();
  text_fonts_load();
  playfield_init();
  return true;
}

void play_begin() {
  reset_game(0, 3);
  game_begin();
}

void play_tick() {
  game_tick(game_clock.now_ms + 17);
  workers_step();
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (!station_idle(side) || !frog_ready(side)) continue;
    frog_launch(side, false);
    frog_enqueue(side);
  }
}
