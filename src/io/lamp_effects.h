// The effects of the seven game lamps. Each tick steps them and sends the brightness that changed.
#pragma once

#include <cstdint>

enum Lamp {
  LAMP_LEFT_PODIUM,
  LAMP_RIGHT_PODIUM,
  LAMP_LEFT_START,
  LAMP_RIGHT_START,
  LAMP_MARQUEE_1,
  LAMP_MARQUEE_2,
  LAMP_MARQUEE_3,
  LAMP_COUNT,
};

enum LampOperation : std::int32_t {
  LAMP_OFF = 0,
  LAMP_ON = 1,
  LAMP_PULSE = 2,    // a: level
  LAMP_BREATHE = 3,  // a: level, b: minimum, c: step, d: extra rounds a tick
  LAMP_BLINK = 4,    // a: level, b: gap in ticks
  LAMP_FADE = 5,     // a: from, b: to, c: step
  LAMP_REPEAT = 6,   // a: how often an effect begins again after its end; -1: for ever
  LAMP_NO_REPEAT = 7,
  LAMP_DELAY = 8,  // a: ticks before a breathe begins
};

// Gives a lamp an effect, or changes how its effect runs. Levels are 0 to 4095 and are held to the
// lamp's maximum. An unknown operation resets the lamp; an unknown lamp changes nothing. Game
// thread.
void lamp_set(Lamp lamp, std::int32_t operation, std::int32_t a = 0, std::int32_t b = 0,
              std::int32_t c = 0, std::int32_t d = 0);

// The present brightness; 0 of an unknown lamp. Game thread.
std::int32_t lamp_value(Lamp lamp);

// All lamps dark and at rest. Start-up.
void jamma_lamps_init();

// Steps all effects and sends changes to the board while it answers. Game thread, each tick, after
// lamps_update.
void jamma_lamps_tick();
