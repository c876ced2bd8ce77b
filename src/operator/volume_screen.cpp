#include "operator/volume_screen.h"

#include <algorithm>

#include "books/prefs.h"
#include "frame/game_mode.h"  // sound_enabled
#include "gfx/panel.h"        // gfx_rect_draw
#include "gfx/text.h"
#include "io/jamma.h"
#include "operator/main_menu.h"  // main_menu_reopen
#include "operator/menu.h"
#include "operator/test_screen.h"
#include "presentation/volume.h"
#include "sound/jps.h"

namespace {

constexpr std::int32_t LOUDEST = 20;

constinit std::int32_t kept_step = 0;  // what a cancel goes back to; game thread

std::int32_t level(bool attract) {
  return std::clamp(pref_int(attract ? PREF_ATTRACT_VOLUME : PREF_VOLUME), 0, LOUDEST);
}

void move_to(std::int32_t step, bool attract) {
  volume_move(step - volume_step, false, attract);
}

void end(bool attract, const char* sound) {
  // The cabinet's sound in the menus is that of play.
  if (attract) move_to(level(false), false);
  menu_clear_presses();
  sound_enabled = 0;
  test_screen = TEST_NONE;
  main_menu_reopen();
  jps_bank_play_name(sound);
}

}  // namespace

std::uintptr_t volume_screen_start(bool attract) {
  kept_step = level(attract);
  move_to(kept_step, attract);
  const std::uintptr_t stay = test_screen_start(attract ? TEST_ATTRACT_VOLUME : TEST_VOLUME);
  sound_enabled = 1;
  jps_bank_play_name("chase");
  return stay;
}

void volume_screen_input(bool attract) {
  if (jamma_pressed(PRESS_TST) || jamma_pressed(PRESS_P2S)) {
    jps_stop_all();
    prefs_save();
    end(attract, "menu_select");
  } else if (jamma_pressed(PRESS_SRV)) {
    jps_stop_all();
    move_to(kept_step, attract);
    end(attract, "menu_cancel");
  } else if (jamma_pressed(PRESS_VLD)) {
    volume_move(-1, false, attract);
  } else if (jamma_pressed(PRESS_VLU)) {
    volume_move(1, false, attract);
  } else if (jamma_pressed(PRESS_P1S)) {
    move_to(volume_step >= LOUDEST ? 0 : volume_step + 1, attract);
  }
}

void volume_screen_draw(bool attract) {
  const char* title = SETTINGS[attract ? PREF_ATTRACT_VOLUME : PREF_VOLUME].name;
  const std::int32_t step = level(attract);
  constexpr std::uint32_t BACK = 0xC0000000;
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 296, "%s", title);
  gfx_rect_draw(64, 320, 1232, 128, BACK, BACK);
  gfx_rect_draw(80, 336, 60 * step, 96, 0xFFFF0000, 0xFFFFFF00);
  text_draw(FONT_8X12, COLOUR_WHITE, 80, 460, "0");
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 460, "10");
  text_draw(FONT_8X12, COLOUR_WHITE, 1280, 460, "20");
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 520, "%s: %d / 20", title, step);
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 560, "Hit Volume Up/Down or Left Start to Adjust");
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 580, "Hit Test or Right Start to Accept");
  text_draw(FONT_8X12, COLOUR_WHITE, 680, 600, "Hit Service to Cancel");
}
