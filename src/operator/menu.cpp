#include "operator/menu.h"

#include <algorithm>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_mode.h"
#include "gfx/panel.h"  // gfx_rect_draw
#include "gfx/text.h"
#include "io/jamma.h"  // jamma_presses_pending
#include "platform/shared.h"
#include "presentation/volume.h"
#include "sound/jps.h"

namespace {

struct MenuState {
  Shared<std::int32_t> open;
  bool wait_test;  // the held Test button has not been let go yet
};

constinit MenuState state{};

void leave() {
  audits_save();
  prefs_save();
  state.open = 0;
  sound_enabled = 1;
  const PrefIndex row = attract_flag ? PREF_ATTRACT_VOLUME : PREF_VOLUME;
  volume_move(std::clamp(pref_int(row), 0, 20) - volume_step, false, attract_flag != 0);
  jps_bank_play_name("bgm");
  game_mode = MODE_PLAY;
}

}  // namespace

bool menu_is_open() {
  return state.open != 0;
}

void menu_enter() {
  state.open = 1;
  state.wait_test = true;
}

// The menu has one row yet, the way out.
void menu_input() {
  const bool test = jamma_presses_pending(PRESS_TST) > 0;
  if (state.wait_test) {
    if (test) {
      state.wait_test = false;
      jamma_presses_clear(PRESS_TST);
    }
    return;
  }
  if (test || jamma_presses_pending(PRESS_P2S) > 0) leave();
}

void menu_draw() {
  gfx_rect_draw(30, 24, 160, 48, 0x80000000, 0x80000000);
  text_draw(FONT_8X12, 0xFF00C000, 32, 32, "MAIN MENU");
  text_draw(FONT_8X12, COLOUR_WHITE, 32, 48, "Exit");
}

void pane_draw_all() {}

void menu_reset() {
  state.open = 0;
  state.wait_test = false;
}
