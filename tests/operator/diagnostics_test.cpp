// Hardware tests with a fake board: what they draw and which commands they send.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

#include "frame/game_clock.h"
#include "frame/game_mode.h"
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
  choose("Switch Test");
  EXPECT_EQ(test_screen, 1);
  tick();
  EXPECT_EQ(coloured(0xFF004020), 8);
  hold(COUNTER_C1, true);
  tick();
  tick();
  EXPECT_EQ(coloured(0xFFFFFF00), 1);
  EXPECT_EQ(jps_fake_count("menu_over"), 1) << "once each time the switch closes";
  hold(COUNTER_C1, false);
  tick();
  EXPECT_EQ(coloured(0xFFFFFF00), 0);
  EXPECT_EQ(coloured(0xFF404000), 1);
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
  EXPECT_EQ(test_screen, 0);
  EXPECT_EQ(selected(), "Switch Test");
  hold(COUNTER_SRV, false);

  jamma_fake.open = false;
  choose("Switch Test");
  tick();
  EXPECT_EQ(coloured(0xFF004020), 8) << "without a board all switches are up";
}

TEST_F(Diagnostics, DipSwitchTest_ShowsTheSwitches) {
  jamma_fake.inputs.dips = 0x81;
  choose("Dip Switch Test");
  EXPECT_EQ(places(seen(test_screen_draw), "On"), "562,275 562,415");
  EXPECT_EQ(first(seen(test_screen_draw), "8").y, 275);
  press(PRESS_TST);
  EXPECT_NE(test_screen, 0);
  press(PRESS_SRV);
  EXPECT_EQ(selected(), "Dip Switch Test");
}

TEST_F(Diagnostics, MonitorTest_ShowsSixPicturesInOrder) {
  choose("Monitor Test");
  std::int32_t screen = test_screen;
  for (const char* caption :
       {"Color Bars", "White Purity", "Red Purity", "Green Purity", "Blue Purity", "Convergence"}) {
    EXPECT_EQ(test_screen, screen++);
    EXPECT_EQ(places(seen(test_screen_draw), caption), "33,697 32,696");
    press(PRESS_SRV);
    EXPECT_TRUE(shows(caption)) << "Service does nothing here";
    press(PRESS_TST);
  }
  EXPECT_EQ(selected(), "Monitor Test");
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
  choose("Sound Test");
  EXPECT_EQ(sound_enabled, 1);
  choose("Toggle Music");
  choose("Toggle Music");
  EXPECT_EQ(jps_fake_count("chase"), 1) << "the second press stops it";
  choose("Toggle 100Hz");
  choose("Toggle 1000Hz");
  choose("Toggle 100Hz");
  EXPECT_EQ(jps_fake_count("sine100"), 2);
  EXPECT_EQ(jps_fake_count("sine1k"), 1);
  EXPECT_EQ(jps_fake.stops, 5);
  for (int i = 0; i < 30; ++i) choose("Toggle Sound Effect");
  EXPECT_EQ(jps_fake_count("jump") + jps_fake_count("splash") + jps_fake_count("croak"), 30);
  EXPECT_GT(jps_fake_count("splash"), 2);
  choose("Pan Left");
  EXPECT_EQ(jps_fake.pan, -10000);
  choose("Pan Right");
  EXPECT_EQ(jps_fake.pan, 10000);
  choose("Exit");
  EXPECT_EQ(jps_fake.pan, 0);
  EXPECT_EQ(sound_enabled, 0);
  EXPECT_EQ(selected(), "Sound Test");
}

TEST_F(Diagnostics, CoinMeterAndTicketTests_CommandTheBoard) {
  choose("Coin Meter Test");
  press(PRESS_P1S);
  press(PRESS_TST);
  EXPECT_EQ(jamma_fake_count(JAMMA_PULSE_COIN_METER), 4U) << "each press steps both sides";
  press(PRESS_P2S);
  EXPECT_EQ(selected(), "Coin Meter Test");
  choose("Ticket Dispenser");
  const struct {
    const char* row;
    int side, count;
  } rows[] = {{"Advance One Ticket Left", 0, 1},
              {"Advance Ten Tickets Left", 0, 10},
              {"Advance One Ticket Right", 1, 1},
              {"Advance Ten Tickets Right", 1, 10}};
  for (const auto& row : rows) {
    choose(row.row);
    EXPECT_EQ(selected(), row.row);
    const JammaFakeCall* call = jamma_fake_last(JAMMA_ADD_TICKETS);
    ASSERT_NE(call, nullptr);
    EXPECT_EQ(call->a, row.side);
    EXPECT_EQ(call->b, row.count);
  }
}

TEST_F(Diagnostics, LedTest_LightsAllSegmentsAndEndsDark) {
  const auto shown = [] { return std::pair{led_fake_value, led_fake_blink}; };
  led_fake_value = led_fake_blink = 1;
  choose("LED");
  EXPECT_EQ(shown(), (std::pair{0, 0}));
  choose("Toggle On");
  EXPECT_EQ(shown(), (std::pair{8888, 0}));
  choose("Toggle Blink");
  EXPECT_EQ(shown(), (std::pair{8888, 1}));
  choose("Toggle On");
  EXPECT_EQ(shown(), (std::pair{0, 1}));
  choose("Toggle Blink");
  EXPECT_EQ(shown(), (std::pair{0, 0}));
  choose("Toggle On");
  choose("Toggle Blink");
  press(PRESS_SRV);
  EXPECT_EQ(shown(), (std::pair{0, 0}));
}

TEST_F(Diagnostics, WatchdogTest_CountsDownAndIsCancelledOrFails) {
  choose("Watchdog");
  EXPECT_TRUE(shows("Hit Test or Right Start to Begin"));
  press(PRESS_SRV);
  EXPECT_NE(test_screen, 0) << "Service does nothing here";
  press(PRESS_TST);
  EXPECT_EQ(watchdog_feed.paused, 1);
  EXPECT_TRUE(shows("...PC will RESET in 10 seconds..."));
  game_clock.now_ms = now_ms() + 4000;
  EXPECT_TRUE(shows("...PC will RESET in  6 seconds..."));
  press(PRESS_P2S);
  EXPECT_TRUE(shows("WATCHDOG TEST CANCELED - Hit Test or Right Start to exit"));
  EXPECT_EQ(watchdog_feed.paused, 0);
  EXPECT_EQ(watchdog_feed.next_time, now_ms() + 1000);
  press(PRESS_TST);
  EXPECT_EQ(selected(), "Watchdog Test");

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
