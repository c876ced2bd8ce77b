// Drums and small percussion. The hz of a stroke tunes those that have a pitch.
#pragma once

#include "art/sound/stroke.h"

namespace art::sound {

Signal kick(const Stroke& stroke);
Signal snare(const Stroke& stroke);
Signal rim(const Stroke& stroke);
Signal clap(const Stroke& stroke);
Signal hat(const Stroke& stroke);
Signal hat_open(const Stroke& stroke);
Signal crash(const Stroke& stroke);
Signal shaker(const Stroke& stroke);
Signal tambourine(const Stroke& stroke);
Signal guiro(const Stroke& stroke);
Signal conga(const Stroke& stroke);  // tuned; hard strokes slap
Signal tom(const Stroke& stroke);    // tuned
Signal cowbell(const Stroke& stroke);

}  // namespace art::sound
