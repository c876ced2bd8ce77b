// The diagnostics menu, and those of its tests that are menus. Game thread.
#include <cstdint>
#include <initializer_list>

#include "books/journal.h"
#include "frame/game_mode.h"  // sound_enabled
#include "frame/sides.h"
#include "io/jamma.h"
#include "io/lamp_effects.h"
#include "io/led_board.h"  // led_set_value
#include "io/led_value.h"  // led_set_blink
#include "operator/info_pane.h"
#include "operator/menu_tree.h"
#include "platform/random.h"  // random_unit
#include "sound/jps.h"

namespace {

enum SoundTestMode { SOUND_NONE, SOUND_MUSIC, SOUND_EFFECT, SOUND_100_HZ, SOUND_1000_HZ };

constexpr std::int32_t LED_ALL_SEGMENTS = 8888;
constexpr int PAN_FULL = 10000;  // hundredths of a decibel: the other side is silent

struct LampTestState {
  bool marquee_on, start_on, podium_on;
};
struct LedTestState {
  bool on, blink;
};
struct Diagnostics {
  LampTestState lamps;
  LedTestState led;
  SoundTestMode sound;
};
constinit Diagnostics state{};

void lamps_toggle(bool& on, std::initializer_list<Lamp> lamps) {
  on = !on;
  for (const Lamp lamp : lamps) lamp_set(lamp, on ? LAMP_ON : LAMP_OFF);
}

constexpr MenuRow LAMP_ROWS[] = {
    {"Toggle Marquee Lamps",
     [] {
       lamps_toggle(state.lamps.marquee_on, {LAMP_MARQUEE_3, LAMP_MARQUEE_2, LAMP_MARQUEE_1});
     }},
    {"Toggle Start Lamps",
     [] { lamps_toggle(state.lamps.start_on, {LAMP_LEFT_START, LAMP_RIGHT_START}); }},
    {"Toggle Podium Lamps",
     [] { lamps_toggle(state.lamps.podium_on, {LAMP_LEFT_PODIUM, LAMP_RIGHT_PODIUM}); }},
};

void led_toggle_on() {
  state.led.on = !state.led.on;
  led_set_value(state.led.on ? LED_ALL_SEGMENTS : 0);
}

void led_toggle_blink() {
  state.led.blink = !state.led.blink;
  led_set_blink(state.led.blink ? 1 : 0);
}

constexpr MenuRow LED_ROWS[] = {
    {"Toggle On", led_toggle_on},
    {"Toggle Blink", led_toggle_blink},
};

// Stops all sound. Then starts this one, unless it was already playing.
void sound_toggle(SoundTestMode mode, const char* name) {
  jps_stop_all();
  const bool again = state.sound == mode;
  state.sound = again ? SOUND_NONE : mode;
  if (!again) jps_bank_play_name(name);
}

// A second press plays another effect.
void sound_effect() {
  jps_stop_all();
  const double r = random_unit();
  jps_bank_play_name(r < 0.33 ? "jump" : r < 0.66 ? "splash" : "croak");
  state.sound = SOUND_EFFECT;
}

void sound_test_end() {
  jps_stop_all();
  jps_set_pan_all(0);
  state.sound = SOUND_NONE;
  sound_enabled = 0;
}

constexpr MenuRow SOUND_ROWS[] = {
    {"Toggle Music", [] { sound_toggle(SOUND_MUSIC, "chase"); }},
    {"Toggle Sound Effect", sound_effect},
    {""},
    {"Toggle 100Hz Test", [] { sound_toggle(SOUND_100_HZ, "sine100"); }},
    {"Toggle 1000Hz Test", [] { sound_toggle(SOUND_1000_HZ, "sine1k"); }},
    {""},
    {"Pan Center", [] { jps_set_pan_all(0); }},
    {"Pan Left", [] { jps_set_pan_all(-PAN_FULL); }},
    {"Pan Right", [] { jps_set_pan_all(PAN_FULL); }},
};

// They belong to no game and are in no books.
void tickets_advance(int side, std::int32_t paper) {
  const bool told = jamma_command(JAMMA_ADD_TICKETS, side, paper) >= 0;
  journal_put(JOURNAL_TICKETS, {side, 0, BY_TEST, 0, paper, told ? 1 : 0});
}

constexpr MenuRow TICKET_ROWS[] = {
    {"Advance One Ticket Left", [] { tickets_advance(SIDE_LEFT, 1); }},
    {"Advance Ten Tickets Left", [] { tickets_advance(SIDE_LEFT, 10); }},
    {"Advance One Ticket Right", [] { tickets_advance(SIDE_RIGHT, 1); }},
    {"Advance Ten Tickets Right", [] { tickets_advance(SIDE_RIGHT, 10); }},
};

}  // namespace

void lamps_off() {
  for (int lamp = 0; lamp < LAMP_COUNT; ++lamp) lamp_set(static_cast<Lamp>(lamp), LAMP_OFF);
  state.lamps = {};
}

void led_off() {
  state.led = {};
  led_set_value(0);
  led_set_blink(0);
}

void sound_test_begin() {
  sound_enabled = 1;
}

Menu* diagnostics_menu_build(Menu* parent) {
  state = {};
  return menu_build(parent, "Diagnostics Menu", DIAGNOSTICS_ROWS, [] { pane_page("Diagnostics"); });
}

Menu* lamp_menu_build(Menu* parent) {
  return menu_build(parent, "Lamp Test Menu", LAMP_ROWS, [] { pane_page("Lamp Test"); }, lamps_off);
}

Menu* led_menu_build(Menu* parent) {
  return menu_build(
      parent, "LED Display Test Menu", LED_ROWS, [] { pane_page("LED Display Test"); }, led_off);
}

Menu* sound_menu_build(Menu* parent) {
  return menu_build(
      parent, "Sound Test Menu", SOUND_ROWS, [] { pane_page("Sound Test"); }, sound_test_end);
}

Menu* ticket_menu_build(Menu* parent) {
  return menu_build(parent, "Ticket Dispenser Test Menu", TICKET_ROWS,
                    [] { pane_page("Ticket Dispenser Test"); });
}
