// One note for any instrument.
#pragma once

#include "art/sound/dsp.h"

namespace art::sound {

struct Stroke {
  double hz;
  double seconds;   // how long it is held; it may ring on
  double velocity;  // 0 to 1: louder and brighter
  uint32_t seed;    // for small differences between notes
};

using Instrument = Signal (*)(const Stroke& stroke);

}  // namespace art::sound
