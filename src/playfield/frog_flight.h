// The flight of the frogs: what moves them and what they touch. Game thread.
#pragma once

#include <cstdint>

#include "playfield/playfield.h"

// Looks under a frog on a lane. Returns the LaneCell there, CELL_EMPTY on a bank. The four results
// are optional and get cell numbers, -1 for none: bugs under the two sample points, and things to
// stand on under them.
std::int32_t lane_probe(const Frog& frog, const Lane& lane, const Shared<std::int32_t>* cells,
                        std::int32_t* bug_a, std::int32_t* bug_b, std::int32_t* stand_a,
                        std::int32_t* stand_b);

// One tick of a station's 20 frogs. Left before Right, after the lanes have moved.
void station_update(int side);
