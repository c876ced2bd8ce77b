#include "io/lamp_effects.h"

#include <algorithm>

#include "io/jamma.h"  // JAMMA_SET_LAMP, jamma_link_alive

namespace {

enum LampFlags : std::uint32_t { REPEAT = 1, RUNNING = 2, HALF_DONE = 4 };
enum LampStage : std::uint32_t {
  STAGE_RISING = 1,
  STAGE_FALLING = 2,
  STAGE_DARK = 3,
  STAGE_LIT = 4
};

constexpr std::int32_t FULL = 4095;
constexpr std::int32_t HALF = 2048;  // the marquee's bulbs get hot

constexpr std::int32_t PULSE_RISE = 767;
constexpr std::int32_t PULSE_RISE_ROUNDS = 10;
constexpr std::int32_t PULSE_FALL = 16;
constexpr std::int32_t PULSE_FALL_ROUNDS = 4;
constexpr std::int32_t FLASH_TICKS = 4;

struct LampRow {
  std::int32_t lamp, channel, max_value;
};
constexpr LampRow LAMP_ROWS[LAMP_COUNT] = {
    {LAMP_LEFT_PODIUM, 3, FULL}, {LAMP_RIGHT_PODIUM, 2, FULL}, {LAMP_LEFT_START, 5, FULL},
    {LAMP_RIGHT_START, 7, FULL}, {LAMP_MARQUEE_1, 13, HALF},   {LAMP_MARQUEE_2, 14, HALF},
    {LAMP_MARQUEE_3, 15, HALF},
};
constexpr bool rows_are_in_order() {
  for (int i = 0; i < LAMP_COUNT; ++i) {
    if (LAMP_ROWS[i].lamp != i) return false;
  }
  return true;
}
static_assert(rows_are_in_order());

struct LampChannel {
  std::uint32_t flags, stage;
  std::int32_t value, target, minimum;
  std::int32_t counter, gap_ticks, flash_ticks;
  std::int32_t step;
  std::int32_t extra_rounds;  // the effect runs this many more times in each tick
  std::int32_t repeat_count;  // -1 for ever
  std::int32_t delay;
  void (*effect_step)(LampChannel& lamp, std::int32_t max_value);
};

constinit LampChannel lamps[LAMP_COUNT]{};  // game thread

bool is_lamp(Lamp lamp) {
  return lamp >= 0 && lamp < LAMP_COUNT;
}

void jump_step(LampChannel& lamp, std::int32_t /*max_value*/) {
  lamp.value = lamp.target;
}

void pulse_begin(LampChannel& lamp) {
  lamp.stage = STAGE_RISING;
  lamp.step = PULSE_RISE;
  lamp.extra_rounds = PULSE_RISE_ROUNDS;
}

// Up in a moment, and slowly down.
void pulse_step(LampChannel& lamp, std::int32_t /*max_value*/) {
  if (lamp.stage == STAGE_RISING) {
    lamp.value += lamp.step;
    if (lamp.value <= lamp.target) return;
    lamp.value = lamp.target;
    lamp.stage = STAGE_FALLING;
    lamp.step = PULSE_FALL;
    lamp.extra_rounds = PULSE_FALL_ROUNDS;
  } else {
    lamp.value -= lamp.step;
    if (lamp.value >= lamp.minimum) return;
    lamp.flags &= ~RUNNING;
    lamp.value = 0;
    pulse_begin(lamp);
  }
}

void breathe_step(LampChannel& lamp, std::int32_t /*max_value*/) {
  if (lamp.delay > 0) {
    --lamp.delay;
    return;
  }
  if (lamp.stage == STAGE_RISING) {
    lamp.value = std::min(lamp.value + lamp.step, lamp.target);
  } else {
    lamp.value = std::max(lamp.value - lamp.step, lamp.minimum);
  }
  if (lamp.value != lamp.minimum && lamp.value != lamp.target) return;
  if ((lamp.flags & HALF_DONE) != 0) {
    lamp.flags &= ~(HALF_DONE | RUNNING);
  } else {  // the end of a breath doesn't turn: one that goes on does so first, where it stands
    lamp.flags |= HALF_DONE;
    lamp.stage = lamp.stage == STAGE_RISING ? STAGE_FALLING : STAGE_RISING;
  }
}

void blink_step(LampChannel& lamp, std::int32_t /*max_value*/) {
  if (lamp.counter != 0) {
    --lamp.counter;
  } else if (lamp.stage == STAGE_DARK) {
    lamp.value = lamp.target;
    lamp.counter = lamp.flash_ticks;
    lamp.stage = STAGE_LIT;
  } else {
    lamp.flags &= ~RUNNING;
    lamp.value = 0;
    lamp.counter = lamp.gap_ticks;
    lamp.stage = STAGE_DARK;
  }
}

void fade_step(LampChannel& lamp, std::int32_t max_value) {
  lamp.value = std::clamp(lamp.value + lamp.step, 0, max_value);
  if (lamp.value == lamp.target) lamp.flags &= ~RUNNING;
}

void begin(LampChannel& lamp, void (*effect_step)(LampChannel&, std::int32_t)) {
  lamp.flags |= RUNNING;
  lamp.effect_step = effect_step;
}

void repeat(LampChannel& lamp) {
  if ((lamp.flags & RUNNING) != 0 || (lamp.flags & REPEAT) == 0) return;
  if (lamp.repeat_count >= 1) {
    --lamp.repeat_count;
    lamp.flags |= RUNNING;
  } else if (lamp.repeat_count == -1) {
    lamp.flags |= RUNNING;
  } else {
    lamp.flags &= ~REPEAT;
  }
}

}  // namespace

void lamp_set(Lamp which, std::int32_t operation, std::int32_t a, std::int32_t b, std::int32_t c,
              std::int32_t d) {
  if (!is_lamp(which)) return;
  LampChannel& lamp = lamps[which];
  const std::int32_t max_value = LAMP_ROWS[which].max_value;
  switch (operation) {
    case LAMP_OFF:
      lamp.target = 0;
      begin(lamp, jump_step);
      break;
    case LAMP_ON:
      lamp.target = std::min(max_value, FULL);
      begin(lamp, jump_step);
      break;
    case LAMP_PULSE:
      lamp.target = std::min(a, max_value);
      pulse_begin(lamp);
      begin(lamp, pulse_step);
      break;
    case LAMP_BREATHE:
      lamp.target = std::min(a, max_value);
      lamp.minimum = b;
      lamp.step = c;
      lamp.extra_rounds = d;
      lamp.flags &= ~HALF_DONE;
      lamp.value = 0;
      lamp.delay = 0;
      lamp.stage = STAGE_RISING;
      begin(lamp, breathe_step);
      break;
    case LAMP_BLINK:
      lamp.target = std::min(a, max_value);
      lamp.gap_ticks = b;
      lamp.flash_ticks = FLASH_TICKS;
      lamp.counter = 0;
      lamp.stage = STAGE_DARK;
      begin(lamp, blink_step);
      break;
    case LAMP_FADE:
      lamp.value = std::min(a, max_value);
      lamp.target = std::min(b, max_value);
      lamp.step = c;
      lamp.extra_rounds = 0;
      begin(lamp, fade_step);
      break;
    case LAMP_REPEAT:
      lamp.flags |= REPEAT;
      lamp.repeat_count = a;
      break;
    case LAMP_NO_REPEAT:
      lamp.flags &= ~REPEAT;
      lamp.repeat_count = 0;
      break;
    case LAMP_DELAY:
      lamp.delay = a;
      break;
    default:
      lamp = {};
      lamp.step = max_value;
      begin(lamp, jump_step);
      break;
  }
}

std::int32_t lamp_value(Lamp lamp) {
  return is_lamp(lamp) ? lamps[lamp].value : 0;
}

void jamma_lamps_init() {
  for (LampChannel& lamp : lamps) lamp = {};
}

void jamma_lamps_tick() {
  for (const LampRow& row : LAMP_ROWS) {
    LampChannel& lamp = lamps[row.lamp];
    const std::int32_t before = lamp.value;
    const std::int32_t rounds = 1 + lamp.extra_rounds;
    for (int i = 0; i < rounds; ++i) {
      if ((lamp.flags & RUNNING) == 0) break;
      lamp.effect_step(lamp, row.max_value);
      repeat(lamp);
    }
    if (lamp.value != before && jamma_link_alive()) {
      jamma_command(JAMMA_SET_LAMP, row.channel, lamp.value);
    }
  }
}
