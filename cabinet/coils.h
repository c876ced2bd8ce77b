// What the board's outputs drive: lamps, lockout coils and mechanical meters.
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

// What a lamp did since "mark". A breathing lamp takes many small steps between its limits, a
// blinking one a few large ones.
struct LampCurve {
  std::uint16_t lowest = 0, highest = 0;
  long changes = 0;
};

struct Coils {
  std::uint8_t h = 0;                      // the output byte as last received
  std::uint16_t lamp[LAMP_CHANNELS] = {};  // 12 bits
  LampCurve curve[LAMP_CHANNELS];
  long meter[METER_COUNT] = {};  // pulses since the cabinet started
};

// The name of a meter in commands, such as "coin-left"; and the meter with a name, -1 if there is
// none.
const char* meter_name(int meter);
int meter_find(const std::string& name);

// New outputs. A meter steps when its coil goes from off to on.
void coils_set_h(Coils& coils, std::uint8_t h);
void coils_set_lamp(Coils& coils, int channel, int value);

// Restarts the record of all lamps from their present brightness.
void coils_mark(Coils& coils);

// Whether the lockout coil of a side is energised.
bool coils_lockout(const Coils& coils, int side);

// Switches all coils and lamps off; the meters keep their counts.
void coils_power_off(Coils& coils);
