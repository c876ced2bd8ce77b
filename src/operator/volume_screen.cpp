// The two screens on which the operator sets the loudness by ear.
#include <algorithm>
#include <cstdint>

#include "books/prefs.h"
#include "frame/game_mode.h"  // sound_enabled
#include "gfx/panel.h"        // gfx_rect_draw
#include "gfx/text.h"
#include "io/jamma.h"
#include "operator/menu.h"  // menu_clear_presses
#include "operator/menu_tree.h"
#include "operator/test_screen.h"
#include "platform/shared.h"
#include "presentation/volume.h"
#include "sound/jps.h"

namespace {

struct VolumeScreen {
  Shared<PrefIndex> pref;  // PREF_VOLUME or PREF_ATTRACT_VOLUME; written by the game thread
  std::int32_t kept_step;  // what a cancel goes back to
};
constinit VolumeScreen screen{};

void move_to(std::int32_t step, PrefIndex pref) {
  volume_move(step - volume_step, false, pref == PREF_ATTRACT_VOLUME);
}

void begin(PrefIndex pref) {
  screen.pref = pref;
  screen.kept_step = volume_setting(pref == PREF_ATTRACT_VOLUME);
  move_to(screen.kept_step, pref);
  sound_enabled = 1;
  jps_bank_play_name("chase");
}

void end(const char* sound) {
  if (screen.pref == PREF_ATTRACT_VOLUME) move_to(volume_setting(false), PREF_VOLUME);
  menu_clear_presses();
  sound_enabled = 0;
  test_screen_end();
  jps_bank_play_name(sound);
}

}  // namespace

void volume_begin() {
  begin(PREF_VOLUME);
}

void attract_volume_begin() {
  begin(PREF_ATTRACT_VOLUME);
}

void volume_input() {
  if (jamma_pressed(PRESS_TST) || jamma_pressed(PRESS_P2S)) {
    jps_stop_all();
    prefs_save();
    end("menu_select");
  } else if (jamma_pressed(PRESS_SRV)) {
    jps_stop_all();
    move_to(screen.kept_step, screen.pref);
    end("menu_cancel");
  } else if (jamma_pressed(PRESS_VLD)) {
    move_to(volume_step - 1, screen.pref);
  } else if (jamma_pressed(PRESS_VLU)) {
    move_to(volume_step + 1, screen.pref);
  } else if (jamma_pressed(PRESS_P1S)) {
    move_to(volume_step >= VOLUME_STEP_MAX ? 0 : volume_step + 1, screen.pref);
  }
}

void volume_draw() {
  const PrefIndex pref = screen.pref;
  const char* title = SETTINGS[pref].name;
  const std::int32_t step = volume_setting(pref == PREF_ATTRACT_VOLUME);
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
