#include "io/lamps.h"

#include <cstdint>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_mode.h"  // game_mode
#include "frame/sides.h"
#include "io/lamp_effects.h"
#include "io/led_board.h"                 // led_set_value
#include "io/led_value.h"                 // led_update, led_set_blink
#include "platform/random.h"              // random_15bit
#include "playfield/playfield.h"          // station_idle
#include "presentation/win_show_start.h"  // win_show_active

namespace {

constexpr std::int32_t FOR_EVER = -1;
constexpr std::int32_t FULL = 4095;
constexpr std::int32_t MARQUEE_LEVEL = 1024;
constexpr std::int32_t ATTRACT_TICKS = 359;
constexpr std::int32_t WIN_TICKS = 119;

constexpr Lamp START_LAMPS[SIDE_COUNT] = {LAMP_LEFT_START, LAMP_RIGHT_START};
constexpr Lamp PODIUM_LAMPS[SIDE_COUNT] = {LAMP_LEFT_PODIUM, LAMP_RIGHT_PODIUM};
constexpr Lamp MARQUEE[] = {LAMP_MARQUEE_3, LAMP_MARQUEE_2, LAMP_MARQUEE_1};
constexpr Lamp OFF_ORDER[LAMP_COUNT] = {LAMP_MARQUEE_3,   LAMP_MARQUEE_2,   LAMP_MARQUEE_1,
                                        LAMP_LEFT_START,  LAMP_LEFT_PODIUM, LAMP_RIGHT_START,
                                        LAMP_RIGHT_PODIUM};

struct MarqueePattern {
  std::int32_t marquee_timer;  // ticks
  bool marquee_running;
};

struct Lamps {  // game thread
  bool in_operator_mode;
  bool inviting[SIDE_COUNT];  // its lamps show that a credit waits
  MarqueePattern attract, win;
};
constinit Lamps state{};

void operator_mode_begin() {
  for (const Lamp lamp : OFF_ORDER) lamp_set(lamp, LAMP_OFF);
  state = {};
  led_set_value(0);
  led_set_blink(0);
  state.in_operator_mode = true;
}

void side_update(int side) {
  const bool idle = station_idle(side);
  const bool may_play = audit_count(AUDIT_CURRENT_CREDITS, side) > 0 || pref_on(PREF_FREEPLAY);
  if (idle && may_play) {
    if (state.inviting[side]) return;
    lamp_set(START_LAMPS[side], LAMP_BLINK, FULL, 8);
    lamp_set(START_LAMPS[side], LAMP_REPEAT, FOR_EVER);
    lamp_set(PODIUM_LAMPS[side], LAMP_BREATHE, FULL, 0, 320, 0);
    lamp_set(PODIUM_LAMPS[side], LAMP_REPEAT, FOR_EVER);
    state.inviting[side] = true;
    return;
  }
  const LampOperation steady = idle ? LAMP_ON : LAMP_OFF;
  lamp_set(START_LAMPS[side], steady);
  lamp_set(PODIUM_LAMPS[side], steady);
  state.inviting[side] = false;
}

// True when it is time for another pattern. Then the last one has been switched off.
bool pattern_is_over(MarqueePattern& pattern) {
  if (pattern.marquee_timer <= 0) {
    for (const Lamp lamp : MARQUEE) {
      lamp_set(lamp, LAMP_OFF);
      lamp_set(lamp, LAMP_NO_REPEAT);
    }
    pattern.marquee_running = false;
  } else if (pattern.marquee_running) {
    --pattern.marquee_timer;
    return false;
  }
  return true;
}

// Slow breathing: all together, running to either side, or the middle after its neighbours.
void attract_pattern(MarqueePattern& pattern) {
  if (!pattern_is_over(pattern)) return;
  constexpr std::int32_t DELAYS[4][3] = {{0, 0, 0}, {0, 60, 120}, {120, 60, 0}, {0, 120, 0}};
  const int pick = random_15bit() % 4;
  for (int i = 0; i < 3; ++i) {
    lamp_set(MARQUEE[i], LAMP_BREATHE, MARQUEE_LEVEL, 0, 8, 8);
    lamp_set(MARQUEE[i], LAMP_DELAY, DELAYS[pick][i]);
    lamp_set(MARQUEE[i], LAMP_REPEAT, FOR_EVER);
  }
  pattern = {ATTRACT_TICKS, true};
}

void win_pattern(MarqueePattern& pattern) {
  if (!pattern_is_over(pattern)) return;
  const bool breathe = random_15bit() % 2 == 0;
  for (const Lamp lamp : MARQUEE) {
    if (breathe) {
      lamp_set(lamp, LAMP_BREATHE, MARQUEE_LEVEL, 0, 128, 8);
    } else {
      lamp_set(lamp, LAMP_BLINK, MARQUEE_LEVEL, 16);
    }
    lamp_set(lamp, LAMP_REPEAT, FOR_EVER);
  }
  pattern = {WIN_TICKS, true};
}

}  // namespace

void lamps_update() {
  if (game_mode == MODE_OPERATOR) {
    if (!state.in_operator_mode) operator_mode_begin();
    return;
  }
  if (state.in_operator_mode) {
    led_update();
    state.in_operator_mode = false;
  }
  for (int side = 0; side < SIDE_COUNT; ++side) side_update(side);
  if (win_show_active(SIDE_LEFT) || win_show_active(SIDE_RIGHT)) {
    state.attract = {};
    win_pattern(state.win);
  } else {
    state.win = {};
    attract_pattern(state.attract);
  }
}

void lamps_reset() {
  state = {};
}
