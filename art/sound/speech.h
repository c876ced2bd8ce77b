// The frog speaks: Flite's rms voice, raised until it sounds like a frog.
#pragma once

#include "art/sound/dsp.h"

namespace art::sound {

struct Speech {
  const char* text;
  double pace = 1;        // above 1 is slower
  double lift_cents = 0;  // how far the voice rises towards the end
  double cents = 260;     // how far everything is raised, mouth and pitch
};

// The spoken line, without silence around it. Any thread.
Signal speak(const Speech& speech);

// The version of the voice, because the lines depend on it.
const char* speech_version();

}  // namespace art::sound
