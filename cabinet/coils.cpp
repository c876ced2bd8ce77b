#include "cabinet/coils.h"

#include <algorithm>

namespace {

constexpr std::uint8_t H_COIN_METER_LEFT = 0x10;

struct MeterRow {
  int number;
  int channel;  // lamp channel of its coil; -1: the H byte
  const char* name;
};

constexpr MeterRow METERS[METER_COUNT] = {
    {METER_COIN_LEFT, -1, "coin-left"},
    {METER_COIN_RIGHT, 0, "coin-right"},
    {METER_TICKET_LEFT, 12, "ticket-left"},
    {METER_TICKET_RIGHT, 11, "ticket-right"},
};

constexpr int LOCKOUT_CHANNEL[2] = {10, 1};

void show(Coils& coils, int channel, std::uint16_t value) {
  if (coils.lamp[channel] == value) return;
  coils.lamp[channel] = value;
  LampCurve& curve = coils.curve[channel];
  curve.lowest = std::min(curve.lowest, value);
  curve.highest = std::max(curve.highest, value);
  ++curve.changes;
}

}  // namespace

const char* meter_name(int meter) {
  return METERS[meter].name;
}

int meter_find(const std::string& name) {
  for (const MeterRow& row : METERS) {
    if (name == row.name) return row.number;
  }
  return -1;
}

void coils_set_h(Coils& coils, std::uint8_t h) {
  if ((h & ~coils.h & H_COIN_METER_LEFT) != 0) ++coils.meter[METER_COIN_LEFT];
  coils.h = h;
}

void coils_set_lamp(Coils& coils, int channel, int value) {
  const bool rises = coils.lamp[channel] == 0 && value != 0;
  show(coils, channel, static_cast<std::uint16_t>(value));
  if (!rises) return;
  for (const MeterRow& row : METERS) {
    if (row.channel == channel) ++coils.meter[row.number];
  }
}

bool coils_lockout(const Coils& coils, int side) {
  return coils.lamp[LOCKOUT_CHANNEL[side]] != 0;
}

void coils_power_off(Coils& coils) {
  coils.h = 0;
  for (int channel = 0; channel < LAMP_CHANNELS; ++channel) show(coils, channel, 0);
}

void coils_mark(Coils& coils) {
  for (int channel = 0; channel < LAMP_CHANNELS; ++channel) {
    coils.curve[channel] = {coils.lamp[channel], coils.lamp[channel], 0};
  }
}
