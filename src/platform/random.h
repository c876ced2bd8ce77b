// The one source of chance in the program. Safe from any thread.
#pragma once

#include <cstdint>

// A uniform whole number in 0 to 32767. The game's odds are written for 15 bits.
int random_15bit();

// A uniform double in 0.0 to 1.0, both ends included: `random_15bit() / 32767.0`.
double random_unit();

// Restarts the stream. Equal seeds give equal streams.
void random_seed(std::uint64_t seed);
