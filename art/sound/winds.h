// Blown and sustained instruments: brass, whistle, reed, organ, electric piano.
#pragma once

#include "art/sound/stroke.h"

namespace art::sound {

Signal brass(const Stroke& stroke);
Signal whistle(const Stroke& stroke);
Signal reed(const Stroke& stroke);
Signal organ(const Stroke& stroke);
Signal electric_piano(const Stroke& stroke);

}  // namespace art::sound
