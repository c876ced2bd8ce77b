// The last step of every sound: as loud as its kind should be, no peak too high, clean ends.
#pragma once

#include "art/sound/wave.h"

namespace art::sound {

// What sounds are compared as. The levels are in LUFS: music by its integrated loudness, the others
// by the loudest 0.4 seconds, since most of them last no longer.
enum class Kind { kMusic, kVoice, kEffect, kOperator };
double target_lufs(Kind kind);

// The loudness that counts for the kind. -HUGE_VAL for silence.
double loudness_of(const Wave& wave, Kind kind);

// The highest level between samples, dB below full scale.
double true_peak_db(const Wave& wave);

// Takes out what is constant, fades the ends if it isn't a loop, brings it to the kind's loudness
// and holds the peaks at -1.5 dB.
void finish(Wave& wave, Kind kind, bool loop);

}  // namespace art::sound
