// Plucked strings and basses.
#pragma once

#include "art/sound/stroke.h"

namespace art::sound {

Signal ukulele(const Stroke& stroke);
Signal guitar_muted(const Stroke& stroke);  // the scratch of a damped string
Signal bass_pluck(const Stroke& stroke);    // round, like an upright bass
Signal bass_funk(const Stroke& stroke);     // growling, with a closing filter
Signal clav(const Stroke& stroke);
Signal jaw_harp(const Stroke& stroke);

}  // namespace art::sound
