#include "operator/main_menu.h"

#include <algorithm>
#include <cstdint>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_mode.h"
#include "operator/adjustments.h"
#include "operator/audit_pages.h"
#include "operator/boot_check.h"  // version_record, build_stamp
#include "operator/diagnostics.h"
#include "operator/info_pane.h"
#include "operator/menu.h"
#include "operator/resets.h"
#include "operator/volume_screen.h"
#include "presentation/volume.h"
#include "sound/jps.h"

namespace {

enum MainAction : std::uintptr_t {
  MAIN_DIAGNOSTICS,
  MAIN_COIN_GAME,
  MAIN_PAYOUT,
  MAIN_AUDITS,
  MAIN_RESETS,
  MAIN_VOLUME,
  MAIN_ATTRACT_VOLUME,
  MAIN_EXIT,
};

struct MainMenu {
  Menu *main, *diagnostics, *coin_game, *payout, *audits, *resets;
};
constinit MainMenu menus{};

std::uintptr_t leave() {
  audits_save();
  prefs_save();
  pane_show(false);
  menu_clear_presses();
  sound_enabled = 1;
  const bool attract = attract_flag != 0;
  const std::int32_t level = pref_int(attract ? PREF_ATTRACT_VOLUME : PREF_VOLUME);
  volume_move(std::clamp(level, 0, 20) - volume_step, false, attract);
  jps_bank_play_name("bgm");
  game_mode = MODE_PLAY;
  return MENU_CLOSE;
}

std::uintptr_t main_chosen(std::uintptr_t action, MenuItem* /*item*/) {
  switch (action) {
    case MAIN_DIAGNOSTICS:
      pane_page("Diagnostics");
      menu_open_at_top(menus.diagnostics);
      return MENU_STAY;
    case MAIN_COIN_GAME:
      pane_page_coin_game();
      menu_open_at_top(menus.coin_game);
      return MENU_STAY;
    case MAIN_PAYOUT:
      pane_page_payout();
      menu_open_at_top(menus.payout);
      return MENU_STAY;
    case MAIN_AUDITS:
      pane_page("Audits");
      menu_open_at_top(menus.audits);
      return MENU_STAY;
    case MAIN_RESETS:
      pane_page("Resets");
      menu_open_at_top(menus.resets);
      return MENU_STAY;
    case MAIN_VOLUME:
      return volume_screen_start(false);
    case MAIN_ATTRACT_VOLUME:
      return volume_screen_start(true);
    default:
      return leave();
  }
}

}  // namespace

void menus_build() {
  pane_reset();
  Menu* main =
      menu_build(nullptr, main_chosen, "Main Menu",
                 {"Diagnostics", "Coin/Game Adjustments", "Payout Adjustments", "Audits", "Resets",
                  "", SETTINGS[PREF_VOLUME].name, SETTINGS[PREF_ATTRACT_VOLUME].name, "", "Exit"});
  menus.main = main;
  menus.diagnostics = diagnostics_menu_build(main);
  menus.coin_game = coin_game_menu_build(main);
  menus.payout = payout_menu_build(main);
  menus.audits = audits_menu_build(main);
  menus.resets = resets_menu_build(main);
}

void menus_free() {
  menus_release();
  menus = {};
}

void menu_enter() {
  pane_page_version();
  pane_show(true);
  menu_open_at_top(menus.main);
  menu_wait_for_test();
}

void main_menu_reopen() {
  menu_open(menus.main);
  pane_show(true);
}

void pane_page_version() {
  constexpr const char* JAMMA_VERSION = "19";
  pane_page("Version Information");
  pane_set_line(2, "Version              : %s", version_record.version);
  pane_set_line(3, "OS Version           : %s", version_record.os_version);
  pane_set_line(4, "JAMMA Version        : %s", JAMMA_VERSION);
  pane_set_line(5, "Build Date           : %s", build_stamp.date);
  pane_set_line(6, "Build Time           : %s", build_stamp.time);
}
