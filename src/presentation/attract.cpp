#include "presentation/attract.h"

// The sequence has no pictures and the voices no lines yet: the demo frogs call for players alone.
void attract_step() {}
void voices_step() {}
void attract_draw() {}
