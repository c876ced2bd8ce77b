// Struck bars, tongues and pans: a few ringing modes each.
#pragma once

#include "art/sound/stroke.h"

namespace art::sound {

Signal marimba(const Stroke& stroke);
Signal kalimba(const Stroke& stroke);
Signal steelpan(const Stroke& stroke);
Signal bell(const Stroke& stroke);        // a glockenspiel
Signal wood_block(const Stroke& stroke);  // tuned by hz, dry

}  // namespace art::sound
