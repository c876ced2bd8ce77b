// What the board's outputs drive: lamps, lockout coils, and meters that count mechanically.
#pragma once

#include <cstdint>
#include <string>

constexpr int LAMP_CHANNELS = 16;

enum Meter {
  METER_COIN_LEFT,
  METER_COIN_RIGHT,
  METER_TICKET_LEFT,
  METER_TICKET_RIGHT,
  METER_COUNT,
};

// What a lamp did since "mark": a breathing one takes many small steps between its ends, a blinking
// one few large ones.
struct LampCurve {
  std::uint16_t lowest = 0, highest = 0;
  long changes = 0;
};

struct Coils {
  std::uint8_t h = 0;                      // the output byte as last received
  std::uint16_t lamp[LAMP_CHANNELS] = {};  // 12 bits
  LampCurve curve[LAMP_CHANNELS];
  long meter[METER_COUNT] = {};  // pulses since the cabinet began
};

// The name of a meter in commands, "coin-left", and the meter of a name, -1 if there is none.
const char* meter_name(int meter);
int meter_find(const std::string& name);

// New outputs. A meter moves on when its coil goes from off to on.
void coils_set_h(Coils& coils, std::uint8_t h);
void coils_set_lamp(Coils& coils, int channel, int value);

// Lamps' curves begin anew at what they show now.
void coils_mark(Coils& coils);

// The lockout coil of a side is energised.
bool coils_lockout(const Coils& coils, int side);

// All coils and lamps fall; the meters keep what they show.
void coils_power_off(Coils& coils);
