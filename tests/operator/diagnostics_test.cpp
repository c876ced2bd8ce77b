// Hardware tests with a fake board: what they draw and which commands they send.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>

#include "books/journal.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/sides.h"
#include "io/lamp_effects.h"
#include "io/watchdog_link.h"
#include "operator/test_screen.h"
#include "tests/fakes/led_fake.h"
#include "tests/operator/desk.h"

namespace {

class Diagnostics : public Desk {
 protected:
  Diagnostics() {
    jamma_lamps_init();
    choose("Diagnostics");
  }
  static void hold(JammaCounter counter, bool down) {
    jamma_fake.inputs.counters[counter] = down ? 1 : 2;
  }
  static int coloured(std::uint32_t colour) {
    int count = 0;
    for (const Drawn& d : seen(test_screen_draw)) {
      count += d.what == "rectangle" && d.colour == colour ? 1 : 0;
    }
    return count;
  }
  static std::string lamps() {
    jamma_lamps_tick();
    std::string lit;
    for (int lamp = 0; lamp < LAMP_COUNT; ++lamp) {
      lit += lamp_value(static_cast<Lamp>(lamp)) > 0 ? '1' : '0';
    }
    return lit;
  }
};

TEST_F(Diagnostics, SwitchTest_LightsSwitchesAndEndsAfterHeldService) {
  // Up and never seen, closed, and up but seen.
  const auto switches = [] {
    return std::tuple(coloured(0xFF004020), coloured(0xFFFFFF00), coloured(0xFF404000));
  };
  choose("Switch Test");
  tick();
  EXPECT_EQ(switches(), std::tuple(8, 0, 0));
  hold(COUNTER_C1, true);
  tick();
  tick();
  EXPECT_EQ(switches(), std::tuple(7, 1, 0));
  EXPECT_EQ(jps_fake_count("menu_over"), 1) << "once each time the switch closes";
  hold(COUNTER_C1, false);
  tick();
  EXPECT_EQ(switches(), std::tuple(7, 0, 1));
  for (const JammaCounter counter :
       {COUNTER_P1S, COUNTER_P2S, COUNTER_C2, COUNTER_TST, COUNTER_VLU, COUNTER_VLD}) {
    hold(counter, true);
    tick();
    hold(counter, false);
  }
  EXPECT_FALSE(shows("All Switches Seen"));
  for (int push = 0; push < 3; ++push) {  // several presses add up
    hold(COUNTER_SRV, true);
    for (int i = 0; i < 20; ++i) tick();
    hold(COUNTER_SRV, false);
    tick();
    EXPECT_EQ(places(seen(test_screen_draw), "All Switches Seen"), "680,662");
  }
  hold(COUNTER_SRV, true);
  tick();
  EXPECT_EQ(selected(), "Switch Test");
  hold(COUNTER_SRV, false);

  jamma_fake.open = false;
  choose("Switch Test");
  tick();
  EXPECT_EQ(switches(), std::tuple(8, 0, 0)) << "without a board all switches are up";
}

// What they show is in screens.txt.
TEST_F(Diagnostics, TestScreens_EndWithTheirOwnButtonsOnly) {
  const struct {
    const char* row;
    JammaPress ignored, next;
    int times;  // that `next` is pressed until the menu is back
  } rows[] = {
      {"Dip Switch Test", PRESS_TST, PRESS_SRV, 1}, {"Dip Switch Test", PRESS_P1S, PRESS_P2S, 1},
      {"Monitor Test", PRESS_SRV, PRESS_TST, 6},    {"Monitor Test", PRESS_P1S, PRESS_P2S, 6},
      {"Watchdog Test", PRESS_SRV, PRESS_TST, 3},   {"Coin Meter Test", PRESS_TST, PRESS_SRV, 1},
      {"Coin Meter Test", PRESS_P1S, PRESS_P2S, 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.row);
    choose(row.row);
    for (int i = 0; i < row.times; ++i) {
      press(row.ignored);
      EXPECT_NE(test_screen, 0);
      press(row.next);
    }
    EXPECT_EQ(selected(), row.row);
  }
  EXPECT_EQ(jamma_fake_count(JAMMA_PULSE_COIN_METER), 4U) << "each press steps both sides";
  EXPECT_EQ(jamma_fake_last(JAMMA_PULSE_COIN_METER)->a, SIDE_RIGHT);
}

TEST_F(Diagnostics, LampTest_TogglesGroupsAndEndsDark) {
  lamp_set(LAMP_LEFT_START, LAMP_ON);
  choose("Lamp Test");
  EXPECT_EQ(lamps(), "0000000");
  choose("Toggle Marquee");
  EXPECT_EQ(lamps(), "0000111");
  choose("Toggle Start");
  EXPECT_EQ(lamps(), "0011111");
  choose("Toggle Podium");
  choose("Toggle Start");
  EXPECT_EQ(lamps(), "1100111");
  press(PRESS_SRV);
  EXPECT_EQ(lamps(), "0000000");
  EXPECT_EQ(selected(), "Lamp Test");
}

TEST_F(Diagnostics, SoundTest_TogglesSoundsAndPans) {
  const auto heard = [] {
    return std::tuple(jps_fake_count("chase"), jps_fake_count("sine100"), jps_fake_count("sine1k"),
                      jps_fake.stops);
  };
  choose("Sound Test");
  EXPECT_EQ(sound_enabled, 1);
  choose("Toggle Music");
  choose("Toggle Music");
  EXPECT_EQ(heard(), std::tuple(1, 0, 0, 2)) << "the second press stops it";
  for (const char* row : {"Toggle 100Hz", "Toggle 1000Hz", "Toggle 100Hz"}) choose(row);
  EXPECT_EQ(heard(), std::tuple(1, 2, 1, 5));
  for (int i = 0; i < 30; ++i) choose("Toggle Sound Effect");
  EXPECT_EQ(jps_fake_count("jump") + jps_fake_count("splash") + jps_fake_count("croak"), 30);
  EXPECT_GT(jps_fake_count("splash"), 2);
  for (const auto& [row, pan] :
       {std::pair{"Pan Left", -10000}, {"Pan Center", 0}, {"Pan Right", 10000}, {"Exit", 0}}) {
    choose(row);
    EXPECT_EQ(jps_fake.pan, pan) << row;
  }
  EXPECT_EQ(sound_enabled, 0);
  EXPECT_EQ(selected(), "Sound Test");
}

TEST_F(Diagnostics, TicketTest_OrdersTicketsAndNotesThem) {
  journal_open("", 1);
  choose("Ticket Dispenser");
  std::string lines;
  for (const auto& [row, side, count] : {std::tuple{"Advance One Ticket Left", 0, 1},
                                         {"Advance Ten Tickets Left", 0, 10},
                                         {"Advance One Ticket Right", 1, 1},
                                         {"Advance Ten Tickets Right", 1, 10}}) {
    for (const bool board : {true, false}) {
      jamma_fake_forget_calls();
      jamma_fake.open = board;
      choose(row);
      EXPECT_EQ(selected(), row);
      ASSERT_EQ(jamma_fake_count(JAMMA_ADD_TICKETS), 1U);
      const JammaFakeCall& call = *jamma_fake_last(JAMMA_ADD_TICKETS);
      EXPECT_EQ(std::tuple(call.a, call.b), std::tuple(side, count));
      lines += std::string(" tickets side=") + (side == 0 ? "left" : "right") +
               " game=0 by=test tickets=0 paper=" + std::to_string(count) +
               " told=" + (board ? "yes" : "no") + "\n";
    }
  }
  journal_close();
  std::istringstream journal(drive.read("journal"));
  std::string noted;
  for (std::string line; std::getline(journal, line);) {
    const std::size_t at = line.find(" tickets side");
    if (at != std::string::npos) noted += line.substr(at) + "\n";
  }
  EXPECT_EQ(noted, lines);
}

TEST_F(Diagnostics, LedTest_LightsAllSegmentsAndEndsDark) {
  led_fake_value = led_fake_blink = 1;
  for (const auto& [row, value, blink] : {std::tuple{"LED", 0, 0},
                                          {"Toggle On", 8888, 0},
                                          {"Toggle Blink", 8888, 1},
                                          {"Toggle On", 0, 1},
                                          {"Toggle Blink", 0, 0},
                                          {"Toggle Blink", 0, 1},
                                          {"Toggle On", 8888, 1},
                                          {"Exit", 0, 0}}) {
    choose(row);
    EXPECT_EQ(std::pair(led_fake_value, led_fake_blink), std::pair(value, blink)) << row;
  }
}

TEST_F(Diagnostics, WatchdogTest_CountsDownAndIsCancelledOrFails) {
  choose("Watchdog");
  press(PRESS_TST);
  EXPECT_EQ(watchdog_feed.paused, 1);
  game_clock.now_ms = now_ms() + 4000;
  EXPECT_TRUE(shows("...PC will RESET in  6 seconds..."));
  press(PRESS_P2S);
  EXPECT_EQ(watchdog_feed.paused, 0);
  EXPECT_EQ(watchdog_feed.next_time, now_ms() + 1000);
  press(PRESS_TST);
  choose("Watchdog");
  press(PRESS_TST);
  game_clock.now_ms = now_ms() + 10000;
  tick();
  EXPECT_TRUE(shows("WATCHDOG TEST FAILED - Hit Test or Right Start to exit"));
  EXPECT_EQ(watchdog_feed.paused, 1);
  press(PRESS_TST);
  EXPECT_EQ(watchdog_feed.paused, 0);
  EXPECT_EQ(selected(), "Watchdog Test");
}

}  // namespace
