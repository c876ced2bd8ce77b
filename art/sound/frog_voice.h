// The throat of a frog: rapid clicks through a mouth that opens.
#pragma once

#include "art/sound/stroke.h"

namespace art::sound {

struct Croak {
  double clicks_from, clicks_to;  // per second
  double mouth_from, mouth_to;    // hertz, its main resonance
  double seconds;
};

Signal croak_syllable(const Croak& croak, uint32_t seed);

// As a drum: a short croak with the stroke's hz as its clicks per second.
Signal frog_percussion(const Stroke& stroke);

}  // namespace art::sound
