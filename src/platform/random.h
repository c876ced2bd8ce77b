// The program's only source of random numbers. Safe from any thread.
#pragma once

#include <cstdint>

// A uniform integer from 0 to 32767. The game's odds are written for 15 bits.
int random_15bit();

// A uniform double from 0.0 to 1.0, both included: `random_15bit() / 32767.0`.
double random_unit();

// Restarts the stream. Equal seeds give equal streams.
void random_seed(std::uint64_t seed);
