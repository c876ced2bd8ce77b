#include "frame/game_init.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "books/audits.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "frame/game_thread.h"
#include "frame/render_frame.h"
#include "frame/tick_steps.h"  // lockouts_hold_closed
#include "gfx/text.h"          // text_fonts_load
#include "io/jamma.h"
#include "io/lamp_effects.h"
#include "io/led_board.h"
#include "operator/boot_check.h"
#include "operator/main_menu.h"  // menus_build
#include "platform/clock.h"      // clock_calendar_s, clock_sleep_ms
#include "platform/display.h"    // display_restore_mode
#include "platform/random.h"     // random_seed
#include "playfield/playfield.h"
#include "presentation/volume.h"
#include "sound/jps.h"

namespace {

void open_board() {
  const std::int32_t result = JammaInit();
  if (result == 0) return;
  std::printf("Game_Init: JammaInit: ec = %d\n", result);
  jamma_link_error = 1;
  jamma_search_start();
}

void open_sound() {
  const std::int32_t step = std::clamp(pref_int(PREF_VOLUME), 0, 20);
  if (jps_init() != 0 || !jps_bank_load(R"(sounds\mainpls.txt)")) return;
  // A plain scale for the moment of start-up; the curve takes over with the field.
  volume_step = step;
  volume_value = std::clamp(13 * step, 0, 255);
  jps_set_master_volume(volume_value);
}

// The slots close while the game still counts: a coin that has just passed one is in the books.
void refuse_coins() {
  constexpr int COIN_FALLS_MS = 500;  // a coil's order takes up to 250
  lockouts_hold_closed(true);
  if (jamma_link_alive()) clock_sleep_ms(COIN_FALLS_MS);
}

}  // namespace

int Game_Init() {
  lockouts_hold_closed(false);
  random_seed(static_cast<std::uint64_t>(clock_calendar_s()));
  open_board();
  audits_load();
  prefs_load();
  journal_open(build_stamp.version, audit_count(AUDIT_BOOT_COUNT));
  audits_note();
  journal_start();
  text_fonts_load();
  open_sound();
  menus_build();
  boot_check_and_version(render_frame);
  jamma_lamps_init();
  led_open();
  playfield_init();
  attract_begin();
  if (!game_threads_start()) {  // nothing would move; the program has to be started again
    display_restore_mode();
    std::fprintf(stderr, "Game_Init: the machine gives the game no thread\n");
    std::_Exit(1);
  }
  led_start();
  return 1;
}

int Game_Shutdown() {
  refuse_coins();
  const bool led_ended = led_stop();
  if (!game_threads_stop()) {
    // A store of the books from here could run into one of the thread's own. They are on the disk
    // as of the last money that moved.
    std::fprintf(stderr, "Game_Shutdown: the game thread doesn't end and is left alone\n");
    return 0;
  }
  playfield_free();
  if (led_ended) led_close();
  menus_free();
  text_fonts_free();
  const bool sound_ended = jps_shutdown();
  prefs_save();
  audits_save();
  journal_put(JOURNAL_STOP);
  journal_close();
  JammaShutdown();
  return led_ended && sound_ended ? 1 : 0;
}
