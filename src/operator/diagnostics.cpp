#include "operator/diagnostics.h"

#include <cstdint>
#include <initializer_list>
#include <iterator>

#include "frame/game_mode.h"  // sound_enabled
#include "frame/sides.h"
#include "io/jamma.h"
#include "io/lamp_effects.h"
#include "io/led_board.h"  // led_set_value
#include "io/led_value.h"  // led_set_blink
#include "operator/hardware_tests.h"
#include "operator/info_pane.h"
#include "operator/main_menu.h"  // pane_page_version
#include "operator/menu.h"
#include "operator/test_screen.h"
#include "platform/random.h"  // random_unit
#include "sound/jps.h"

namespace {

enum SoundTestMode { SOUND_NONE, SOUND_MUSIC, SOUND_EFFECT, SOUND_100_HZ, SOUND_1000_HZ };

constexpr std::int32_t LED_ALL_SEGMENTS = 8888;
constexpr std::int32_t PAN_FULL = 10000;  // hundredths of a decibel: the other side is silent

struct LampTestState {
  bool marquee_on, start_on, podium_on;
};
struct LedTestState {
  bool on, blink;
};

struct Diagnostics {  // game thread
  Menu *menu, *lamps, *led, *sound, *tickets;
  LampTestState lamp_test;
  LedTestState led_test;
  SoundTestMode sound_mode;
};
constinit Diagnostics state{};

void lamps_set(std::initializer_list<Lamp> lamps, bool on) {
  for (const Lamp lamp : lamps) lamp_set(lamp, on ? LAMP_ON : LAMP_OFF);
}

void all_lamps_off() {
  for (int lamp = 0; lamp < LAMP_COUNT; ++lamp) lamp_set(static_cast<Lamp>(lamp), LAMP_OFF);
  state.lamp_test = {};
}

void led_dark() {
  state.led_test = {};
  led_set_value(0);
  led_set_blink(0);
}

std::uintptr_t open_list(Menu* list, const char* heading) {
  pane_page("%s", heading);
  menu_open_at_top(list);
  return MENU_STAY;
}

std::uintptr_t list_left(const MenuItem* item) {
  pane_page("Diagnostics");
  return menu_go_back(item);
}

enum DiagnosticsAction : std::uintptr_t {
  DIAG_SWITCHES,
  DIAG_DIPS,
  DIAG_MONITOR,
  DIAG_LAMPS,
  DIAG_LED,
  DIAG_SOUND,
  DIAG_COIN_METERS,
  DIAG_TICKETS,
  DIAG_WATCHDOG,
  DIAG_EXIT,
};

std::uintptr_t diagnostics_chosen(std::uintptr_t action, MenuItem* item) {
  switch (action) {
    case DIAG_SWITCHES:
      switch_test_begin();
      return test_screen_start(TEST_SWITCHES);
    case DIAG_DIPS:
      return test_screen_start(TEST_DIPS);
    case DIAG_MONITOR:
      return test_screen_start(TEST_COLOR_BARS);
    case DIAG_LAMPS:
      all_lamps_off();
      return open_list(state.lamps, "Lamp Test");
    case DIAG_LED:
      led_dark();
      return open_list(state.led, "LED Display Test");
    case DIAG_SOUND:
      sound_enabled = 1;
      return open_list(state.sound, "Sound Test");
    case DIAG_COIN_METERS:
      return test_screen_start(TEST_COIN_METERS);
    case DIAG_TICKETS:
      return open_list(state.tickets, "Ticket Dispenser Test");
    case DIAG_WATCHDOG:
      watchdog_test_begin();
      return test_screen_start(TEST_WATCHDOG);
    default:
      pane_page_version();
      return menu_go_back(item);
  }
}

std::uintptr_t lamps_chosen(std::uintptr_t action, MenuItem* item) {
  switch (action) {
    case 0:
      state.lamp_test.marquee_on = !state.lamp_test.marquee_on;
      lamps_set({LAMP_MARQUEE_3, LAMP_MARQUEE_2, LAMP_MARQUEE_1}, state.lamp_test.marquee_on);
      return MENU_STAY;
    case 1:
      state.lamp_test.start_on = !state.lamp_test.start_on;
      lamps_set({LAMP_LEFT_START, LAMP_RIGHT_START}, state.lamp_test.start_on);
      return MENU_STAY;
    case 2:
      state.lamp_test.podium_on = !state.lamp_test.podium_on;
      lamps_set({LAMP_LEFT_PODIUM, LAMP_RIGHT_PODIUM}, state.lamp_test.podium_on);
      return MENU_STAY;
    default:
      all_lamps_off();
      return list_left(item);
  }
}

std::uintptr_t led_chosen(std::uintptr_t action, MenuItem* item) {
  switch (action) {
    case 0:
      state.led_test.on = !state.led_test.on;
      led_set_value(state.led_test.on ? LED_ALL_SEGMENTS : 0);
      return MENU_STAY;
    case 1:
      state.led_test.blink = !state.led_test.blink;
      led_set_blink(state.led_test.blink ? 1 : 0);
      return MENU_STAY;
    default:
      led_dark();
      return list_left(item);
  }
}

// Each toggle stops what sounds; the same one again leaves silence.
void sound_toggle(SoundTestMode mode, const char* name) {
  jps_stop_all();
  const bool again = state.sound_mode == mode;
  state.sound_mode = again ? SOUND_NONE : mode;
  if (!again) jps_bank_play_name(name);
}

// A second press plays another one.
void sound_effect() {
  jps_stop_all();
  const double r = random_unit();
  jps_bank_play_name(r < 0.33 ? "jump" : r < 0.66 ? "splash" : "croak");
  state.sound_mode = SOUND_EFFECT;
}

void sound_end() {
  jps_stop_all();
  jps_set_pan_all(0);
  state.sound_mode = SOUND_NONE;
  sound_enabled = 0;
}

std::uintptr_t sound_chosen(std::uintptr_t action, MenuItem* item) {
  switch (action) {
    case 0:
      sound_toggle(SOUND_MUSIC, "chase");
      return MENU_STAY;
    case 1:
      sound_effect();
      return MENU_STAY;
    case 2:
      sound_toggle(SOUND_100_HZ, "sine100");
      return MENU_STAY;
    case 3:
      sound_toggle(SOUND_1000_HZ, "sine1k");
      return MENU_STAY;
    case 4:
      jps_set_pan_all(0);
      return MENU_STAY;
    case 5:
      jps_set_pan_all(-PAN_FULL);
      return MENU_STAY;
    case 6:
      jps_set_pan_all(PAN_FULL);
      return MENU_STAY;
    default:
      sound_end();
      return list_left(item);
  }
}

std::uintptr_t tickets_chosen(std::uintptr_t action, MenuItem* item) {
  constexpr struct {
    int side, count;
  } ADVANCE[] = {{SIDE_LEFT, 1}, {SIDE_LEFT, 10}, {SIDE_RIGHT, 1}, {SIDE_RIGHT, 10}};
  if (action >= std::size(ADVANCE)) return list_left(item);
  jamma_command(JAMMA_ADD_TICKETS, ADVANCE[action].side, ADVANCE[action].count);
  return MENU_STAY;
}

}  // namespace

Menu* diagnostics_menu_build(Menu* parent) {
  Menu* menu = menu_build(
      parent, diagnostics_chosen, "Diagnostics Menu",
      {"Switch Test", "Dip Switch Test", "Monitor Test", "Lamp Test", "LED Display Test",
       "Sound Test", "Coin Meter Test", "Ticket Dispenser Test", "Watchdog Test", "", "Exit"});
  state = {};
  state.menu = menu;
  state.lamps =
      menu_build(menu, lamps_chosen, "Lamp Test Menu",
                 {"Toggle Marquee Lamps", "Toggle Start Lamps", "Toggle Podium Lamps", "", "Exit"});
  state.led = menu_build(menu, led_chosen, "LED Display Test Menu",
                         {"Toggle On", "Toggle Blink", "", "Exit"});
  state.sound =
      menu_build(menu, sound_chosen, "Sound Test Menu",
                 {"Toggle Music", "Toggle Sound Effect", "", "Toggle 100Hz Test",
                  "Toggle 1000Hz Test", "", "Pan Center", "Pan Left", "Pan Right", "", "Exit"});
  state.tickets = menu_build(menu, tickets_chosen, "Ticket Dispenser Test Menu",
                             {"Advance One Ticket Left", "Advance Ten Tickets Left",
                              "Advance One Ticket Right", "Advance Ten Tickets Right", "", "Exit"});
  return menu;
}

void diagnostics_reopen() {
  test_screen = TEST_NONE;
  menu_open(state.menu);
  pane_show(true);
}
