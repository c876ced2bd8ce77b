// The menus, operated with the cabinet's buttons: every menu, entering and leaving, and the engine.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_mode.h"
#include "frame/render_frame.h"
#include "operator/info_pane.h"
#include "operator/main_menu.h"
#include "operator/menu.h"
#include "presentation/volume.h"
#include "tests/operator/desk.h"

namespace {

using Lines = std::vector<std::string>;

class Menus : public Desk {
 protected:
  // Title and rows of the open menu, without blank rows.
  static Lines rows() {
    Lines lines;
    for (const Drawn& d : seen(menu_draw)) {
      if (d.what != "rectangle") lines.push_back(d.what);
    }
    return lines;
  }
};

TEST_F(Menus, SubMenus_LeadBackToTheMainMenu) {
  for (const Lines& way : {Lines{"Diagnostics"},
                           {"Diagnostics", "Lamp Test"},
                           {"Diagnostics", "LED"},
                           {"Diagnostics", "Sound"},
                           {"Diagnostics", "Ticket"},
                           {"Coin/Game"},
                           {"Payout"},
                           {"Payout", "Bonus"},
                           {"Audits"},
                           {"Resets"},
                           {"Resets", "Factory Restore"}}) {
    SCOPED_TRACE(way.back());
    for (const std::string& row : way) choose(row);
    EXPECT_NE(rows()[0], "Main Menu");
    press(PRESS_SRV, static_cast<int>(way.size()));
    EXPECT_EQ(rows()[0], "Main Menu");
    EXPECT_EQ(line("Version In"), "Version Information") << "the page beside it is its own again";
  }
}

TEST_F(Menus, Selection_SkipsBlankAndDisabledRowsAndWraps) {
  for (const auto& [button, times, row] : {std::tuple{PRESS_VLD, 0, "Diagnostics"},
                                           {PRESS_VLU, 1, "Exit"},
                                           {PRESS_VLU, 1, "Attract Volume"},
                                           {PRESS_VLD, 2, "Diagnostics"},
                                           {PRESS_P1S, 5, "Volume"}}) {
    press(button, times);
    EXPECT_EQ(selected(), row);
  }
  EXPECT_EQ(jps_fake_count("menu_over"), 9);
  choose("Payout");
  choose("Ticket Use");
  EXPECT_EQ(selected(), "On");
  choose("Off");
  EXPECT_TRUE(selected().starts_with("Ticket Use"));
  press(PRESS_VLD);
  EXPECT_EQ(selected(), "Exit") << "disabled rows can't be selected";
}

TEST_F(Menus, SeveralButtonsInOneTick_FirstOfTheOrderCounts) {
  const auto press_both = [](JammaPress one, JammaPress other) {
    jps_fake_reset();
    jamma_fake.pending[one] = 1;
    press(other);
    return rows()[0] + ", " + jps_fake.played[0];
  };
  EXPECT_EQ(press_both(PRESS_SRV, PRESS_TST), "Diagnostics Menu, menu_select");
  EXPECT_EQ(press_both(PRESS_SRV, PRESS_VLU), "Main Menu, menu_cancel");
  EXPECT_EQ(jps_fake.played.size(), 1U);
  press(PRESS_P2S);
  EXPECT_EQ(rows()[0], "Diagnostics Menu");
  press(PRESS_C1);
  press(PRESS_BIL);
  EXPECT_EQ(selected(), "Switch Test") << "coins and bills do nothing here";
}

// Its box widens and never shrinks. A row without a text is blank and has action 0.
TEST_F(Menus, MenuOfTwoRows_TakesNoThird) {
  Menu* menu = menu_create(2, [](std::uintptr_t, MenuItem*) { return MENU_STAY; });
  MenuItem* item = menu_add_item(menu, 0, 0, "short");
  EXPECT_EQ(menu->width, 128);
  EXPECT_EQ(menu->flags, 0x15U);
  menu_set_item_text(item, "%s", "a text of more than sixteen letters");
  menu_set_item_text(item, "short again");
  EXPECT_EQ(menu->width, 35 * 8);
  const MenuItem* blank = menu_add_item(menu, 7, 0, nullptr);
  EXPECT_EQ(blank->action, 0U);
  EXPECT_EQ(blank->flags, std::uint32_t{ITEM_BLANK});
  EXPECT_EQ(menu_add_item(menu, 1, 0, "too many"), nullptr);
  EXPECT_EQ(menu->count, 2U);
}

TEST_F(Menus, DoublePercentSign_ShowsAsOneInRowsAndPane) {
  Menu* menu = menu_create(3, [](std::uintptr_t, MenuItem*) { return MENU_STAY; });
  menu_add_item(menu, 0, 0, "%s", "paid 40%% of it");
  menu_set_item_text(menu_add_item(menu, 1, 0, "x"), "%d%%%%", 7);
  menu_add_item(menu, 2, 0, "%s", "100% or %s%n");  // such a text may come from a file
  menu_open(menu);
  EXPECT_EQ(rows(), (Lines{"paid 40% of it", "7%", "100% or %s%n"}));
  pane_page("%s", "40%%");
  pane_set_line(3, "%s", "50%% and %s");
  EXPECT_EQ(line("40"), "40%");
  EXPECT_EQ(line("50"), "50% and %s");
  pane_set_line(0, "%s", "60%%");
  EXPECT_EQ(line("60"), "60%");
}

TEST_F(Menus, SelectionOnBlankLastRow_MovesToFirstSelectableRow) {
  Menu* menu = menu_create(3, [](std::uintptr_t, MenuItem*) { return MENU_STAY; });
  menu->flags &= ~MENU_WRAP;
  menu_add_item(menu, 0, ITEM_DISABLED, "faint");
  menu_add_item(menu, 1, 0, "stands");
  menu_add_blank(menu);
  menu->selected = 2;
  menu_open(menu);
  EXPECT_EQ(menu->selected, 1U);
  press(PRESS_VLD);
  EXPECT_EQ(menu->selected, 1U) << "the buttons don't wrap";
}

TEST_F(Menus, EmptyMenu_IgnoresAllButtonsButService) {
  Menu* menu = menu_create(0, [](std::uintptr_t action, MenuItem*) {
    EXPECT_EQ(action, std::uintptr_t{MENU_CLOSE}) << "nothing can be chosen";
    return MENU_STAY;
  });
  menu->parent = menu_current();
  menu_open(menu);
  for (const JammaPress button : {PRESS_VLU, PRESS_VLD, PRESS_P1S, PRESS_TST, PRESS_P2S}) {
    press(button);
    EXPECT_EQ(menu_current(), menu);
    EXPECT_EQ(menu->selected, 0U);
  }
  EXPECT_TRUE(rows().empty());
  press(PRESS_SRV);
  EXPECT_EQ(rows()[0], "Main Menu");
}

// The main thread draws while the game thread changes the menus. For ThreadSanitizer.
TEST_F(Menus, Menus_AreDrawnWhileTheGameThreadChangesThem) {
  constexpr auto RELAXED = std::memory_order_relaxed;  // no more ordering than in the game
  std::atomic<bool> over{false};
  std::atomic<int> frames{0};
  std::thread drawing([&] {
    for (; !over.load(RELAXED); frames.fetch_add(1, RELAXED)) render_frame();
  });
  // Into the resets, to a confirmation, and out again; then a setting. Each press is drawn.
  constexpr JammaPress RESETS[] = {PRESS_TST, PRESS_TST, PRESS_SRV, PRESS_SRV};
  constexpr JammaPress SETTING[] = {PRESS_TST, PRESS_TST, PRESS_TST, PRESS_SRV};
  for (const auto& [button, times, buttons] :
       {std::tuple{PRESS_P1S, 4, RESETS}, {PRESS_VLU, 2, SETTING}}) {
    press(button, times);
    for (int i = 0; i < 40; ++i) {
      press(buttons[i % 4]);
      for (const int drawn = frames.load(RELAXED); frames.load(RELAXED) < drawn + 2;) {
      }
    }
  }
  over = true;
  drawing.join();
}

TEST_F(Menus, ExitOrService_ReturnsToPlay) {
  for (const bool service : {false, true}) {
    SCOPED_TRACE(service);
    game_mode = MODE_OPERATOR;
    sound_enabled = 0;
    attract_flag = service ? 1 : 0;
    volume_set(3);
    menu_enter();
    press(PRESS_P1S);
    EXPECT_EQ(selected(), "Diagnostics") << "Test is still held";
    press(PRESS_TST);
    EXPECT_EQ(selected(), "Diagnostics") << "its release only activates the menu";
    EXPECT_EQ(game_mode, MODE_OPERATOR);
    if (!service) find("Exit");
    jps_fake_reset();
    press(service ? PRESS_SRV : PRESS_TST);
    EXPECT_EQ(game_mode, MODE_PLAY);
    EXPECT_FALSE(menu_is_open());
    EXPECT_EQ(sound_enabled, 1);
    EXPECT_EQ(volume_step, pref_int(service ? PREF_ATTRACT_VOLUME : PREF_VOLUME));
    EXPECT_EQ(jps_fake.played, (Lines{"bgm", service ? "menu_cancel" : "menu_select"}));
    EXPECT_TRUE(drive.has("prefs"));
    EXPECT_TRUE(drive.has("audits"));
  }
}

TEST_F(Menus, VolumeScreens_AdjustAcceptAndCancel) {
  prefs[PREF_VOLUME].int_value = 12;
  prefs[PREF_ATTRACT_VOLUME].int_value = 4;
  // The settings, and the loudness that is heard.
  const auto volumes = [] {
    return std::tuple(pref_int(PREF_VOLUME), pref_int(PREF_ATTRACT_VOLUME), jps_fake.master_volume);
  };
  const auto heard = [](int volume, int attract, int step) {
    return std::tuple(volume, attract, volume_curve(step));
  };
  choose("Volume");
  EXPECT_EQ(volume_step, 12);
  EXPECT_EQ(jps_fake_count("chase"), 1);
  press(PRESS_VLU, 3);
  press(PRESS_VLD);
  EXPECT_TRUE(shows("Volume: 14 / 20"));
  EXPECT_EQ(volumes(), heard(14, 4, 14));
  press(PRESS_SRV);
  EXPECT_EQ(volumes(), heard(12, 4, 12)) << "cancelled";
  EXPECT_EQ(jps_fake.played.back(), "menu_cancel");
  EXPECT_EQ(selected(), "Volume");
  EXPECT_EQ(sound_enabled, 0);
  choose("Volume");
  press(PRESS_P1S, 8);
  press(PRESS_VLU);
  EXPECT_EQ(volumes(), heard(20, 4, 20));
  press(PRESS_P1S);
  press(PRESS_TST);
  EXPECT_EQ(volumes(), heard(0, 4, 0)) << "Left Start alone wraps";
  EXPECT_EQ(jps_fake.played.back(), "menu_select");

  choose("Attract Volume");
  EXPECT_EQ(volume_step, 4);
  press(PRESS_VLU);
  EXPECT_TRUE(shows("Attract Volume: 5 / 20"));
  EXPECT_EQ(volumes(), heard(0, 5, 5));
  press(PRESS_P2S);
  EXPECT_EQ(volumes(), heard(0, 5, 0)) << "the menus use the volume of play";
}

}  // namespace
