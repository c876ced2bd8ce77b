#include "operator/main_menu.h"

#include <algorithm>
#include <cstdint>

#include "books/audits.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "frame/game_mode.h"
#include "operator/boot_check.h"  // version_record, build_stamp
#include "operator/info_pane.h"
#include "operator/menu.h"
#include "operator/menu_tree.h"  // MAIN_ROWS
#include "operator/trouble_line.h"
#include "presentation/volume.h"
#include "sound/jps.h"

namespace {

constinit Menu* main_menu = nullptr;

void pane_page_version() {
  constexpr const char* JAMMA_VERSION = "19";
  pane_page("Version Information");
  pane_set_line(2, "Version              : %s", version_record.version);
  pane_set_line(3, "OS Version           : %s", version_record.os_version);
  pane_set_line(4, "JAMMA Version        : %s", JAMMA_VERSION);
  pane_set_line(5, "Build Date           : %s", build_stamp.date);
  pane_set_line(6, "Build Time           : %s", build_stamp.time);
  pane_line_of_trouble(8);
}

void leave_operator_mode() {
  journal_put(JOURNAL_TEST_LEFT);
  audits_save();
  prefs_save();
  pane_show(false);
  menu_clear_presses();
  sound_enabled = 1;
  const bool attract = attract_flag != 0;
  volume_move(volume_setting(attract) - volume_step, false, attract);
  jps_bank_play_name("bgm");
  game_mode = MODE_PLAY;
}

}  // namespace

void menus_build() {
  pane_reset();
  main_menu = menu_build(nullptr, "Main Menu", MAIN_ROWS, pane_page_version, leave_operator_mode);
}

void menus_free() {
  menus_release();
  main_menu = nullptr;
}

void menu_enter() {
  pane_show(true);
  menu_open_at_top(main_menu);
  menu_wait_for_test();
}
