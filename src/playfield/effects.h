// The playing through of splashes, sparks and hearts; what starts them is in workers.h.
#pragma once

// One pass over the rings at the present game clock. Worker thread.
void effects_step();
void effects_reset();
