// Follows each frog from its launch to its end and counts what it was worth.
#pragma once

#include <cstdint>

#include "lab/sums.h"

// Forgets all frogs: a boot begins.
void flights_reset();

// Looks at both sides after a tick and adds the frogs that have just ended.
void flights_step(AwardsSum& awards);

// The side's frog in flight, or null.
const Frog* flight_of(int side);
