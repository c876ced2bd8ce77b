#include "io/lamp_effects.h"

#include <algorithm>
#include <array>

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

struct LampChannel {
  std::uint32_t channel;   // of the board
  std::int32_t max_value;  // this lamp's brightest
  std::uint32_t flags = 0, stage = 0;
  std::int32_t value = 0, target = 0, minimum = 0;
  std::int32_t counter = 0, gap_ticks = 0, flash_ticks = 0;
  std::int32_t step = 0;
  std::int32_t extra_rounds = 0;  // the effect runs this many more times in each tick
  std::int32_t repeat_count = 0;  // -1 for ever
  std::int32_t delay = 0;
  void (*effect_step)(LampChannel& lamp) = nullptr;
};

constexpr std::array<LampChannel, LAMP_COUNT> LAMPS_AT_REST = {{
    {3, FULL},   // LAMP_LEFT_PODIUM
    {2, FULL},   // LAMP_RIGHT_PODIUM
    {5, FULL},   // LAMP_LEFT_START
    {7, FULL},   // LAMP_RIGHT_START
    {13, HALF},  // LAMP_MARQUEE_1
    {14, HALF},  // LAMP_MARQUEE_2
    {15, HALF},  // LAMP_MARQUEE_3
}};

constinit std::array lamps = LAMPS_AT_REST;  // game thread

struct Operands {
  std::int32_t a, b, c, d;
};

bool is_lamp(Lamp lamp) {
  return lamp >= 0 && lamp < LAMP_COUNT;
}

void jump_step(LampChannel& lamp) {
  lamp.value = lamp.target;
}

void pulse_rise(LampChannel& lamp) {
  lamp.stage = STAGE_RISING;
  lamp.step = PULSE_RISE;
  lamp.extra_rounds = PULSE_RISE_ROUNDS;
}

void pulse_begin(LampChannel& lamp, const Operands& o) {
  lamp.target = std::min(o.a, lamp.max_value);
  pulse_rise(lamp);
}

// Up within a tick, then slowly down.
void pulse_step(LampChannel& lamp) {
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
    pulse_rise(lamp);
  }
}

void breathe_begin(LampChannel& lamp, const Operands& o) {
  lamp.target = std::min(o.a, lamp.max_value);
  lamp.minimum = o.b;
  lamp.step = o.c;
  lamp.extra_rounds = o.d;
  lamp.flags &= ~HALF_DONE;
  lamp.value = 0;
  lamp.delay = 0;
  lamp.stage = STAGE_RISING;
}

void breathe_step(LampChannel& lamp) {
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
  } else {  // a breath ends without turning: one that repeats turns first, at the same value
    lamp.flags |= HALF_DONE;
    lamp.stage = lamp.stage == STAGE_RISING ? STAGE_FALLING : STAGE_RISING;
  }
}

void blink_begin(LampChannel& lamp, const Operands& o) {
  lamp.target = std::min(o.a, lamp.max_value);
  lamp.gap_ticks = o.b;
  lamp.flash_ticks = FLASH_TICKS;
  lamp.counter = 0;
  lamp.stage = STAGE_DARK;
}

void blink_step(LampChannel& lamp) {
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

void fade_begin(LampChannel& lamp, const Operands& o) {
  lamp.value = std::min(o.a, lamp.max_value);
  lamp.target = std::min(o.b, lamp.max_value);
  lamp.step = o.c;
  lamp.extra_rounds = 0;
}

void fade_step(LampChannel& lamp) {
  lamp.value = std::clamp(lamp.value + lamp.step, 0, lamp.max_value);
  if (lamp.value == lamp.target) lamp.flags &= ~RUNNING;
}

void repeat_set(LampChannel& lamp, std::uint32_t flag, std::int32_t count) {
  lamp.flags = (lamp.flags & ~REPEAT) | flag;
  lamp.repeat_count = count;
}

// A new effect is an operation in the header and a row of OPERATIONS with its two functions.
struct OperationRow {
  LampOperation operation;
  void (*begin)(LampChannel& lamp, const Operands& o);
  void (*step)(LampChannel& lamp);  // null: the present effect goes on, changed
};

constexpr OperationRow OPERATIONS[] = {
    {LAMP_OFF, [](LampChannel& lamp, const Operands&) { lamp.target = 0; }, jump_step},
    {LAMP_ON, [](LampChannel& lamp, const Operands&) { lamp.target = lamp.max_value; }, jump_step},
    {LAMP_PULSE, pulse_begin, pulse_step},
    {LAMP_BREATHE, breathe_begin, breathe_step},
    {LAMP_BLINK, blink_begin, blink_step},
    {LAMP_FADE, fade_begin, fade_step},
    {LAMP_REPEAT, [](LampChannel& lamp, const Operands& o) { repeat_set(lamp, REPEAT, o.a); }, {}},
    {LAMP_NO_REPEAT, [](LampChannel& lamp, const Operands&) { repeat_set(lamp, 0, 0); }, {}},
    {LAMP_DELAY, [](LampChannel& lamp, const Operands& o) { lamp.delay = o.a; }, {}},
};

void start(LampChannel& lamp, void (*step)(LampChannel& lamp)) {
  lamp.flags |= RUNNING;
  lamp.effect_step = step;
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
  for (const OperationRow& row : OPERATIONS) {
    if (row.operation != operation) continue;
    row.begin(lamp, {a, b, c, d});
    if (row.step) start(lamp, row.step);
    return;
  }
  lamp = LAMPS_AT_REST[which];
  lamp.step = lamp.max_value;
  start(lamp, jump_step);
}

std::int32_t lamp_value(Lamp lamp) {
  return is_lamp(lamp) ? lamps[lamp].value : 0;
}

void jamma_lamps_init() {
  lamps = LAMPS_AT_REST;
}

void jamma_lamps_tick() {
  for (LampChannel& lamp : lamps) {
    const std::int32_t before = lamp.value;
    const std::int32_t rounds = 1 + lamp.extra_rounds;
    for (int i = 0; i < rounds; ++i) {
      if ((lamp.flags & RUNNING) == 0) break;
      lamp.effect_step(lamp);
      repeat(lamp);
    }
    if (lamp.value != before && jamma_link_alive()) {
      jamma_command(JAMMA_SET_LAMP, lamp.channel, lamp.value);
    }
  }
}
