// The last step of every sound: the loudness of its kind, limited peaks, clean ends.
#pragma once

#include "art/sound/wave.h"

namespace art::sound {

// How a sound's loudness is measured, in LUFS: music over its whole length, the others over the
// loudest 0.4 seconds, because most of them last no longer.
enum class Kind { kMusic, kVoice, kEffect, kOperator };
double target_lufs(Kind kind);

// The loudness by the measure of the kind. -HUGE_VAL for silence.
double loudness_of(const Wave& wave, Kind kind);

// The highest level, also between samples, in dB relative to full scale.
double true_peak_db(const Wave& wave);

// Removes the mean, fades the ends if it isn't a loop, sets the kind's loudness and limits the
// peaks to -1.5 dB.
void finish(Wave& wave, Kind kind, bool loop);

}  // namespace art::sound
