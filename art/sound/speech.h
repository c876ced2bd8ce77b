// The frog speaks: Flite's rms voice, moved up until it is a frog.
#pragma once

#include "art/sound/dsp.h"

namespace art::sound {

struct Speech {
  const char* text;
  double pace = 1;        // above 1 is slower
  double lift_cents = 0;  // how far the voice rises towards the end
  double cents = 260;     // how far all of it is moved up, mouth and pitch
};

// The spoken line without the silence around it. Any thread.
Signal speak(const Speech& speech);

// The version of the voice, as a part of what the lines are made from.
const char* speech_version();

}  // namespace art::sound
