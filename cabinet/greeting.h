// What the cabinet says at its start and at a bad end.
#pragma once

#include <string>

struct Cabinet;

// Where the cabinet can be seen and touched, and what to do first. Lines, a few.
std::string greeting_text(const Cabinet& cabinet);

// How the game ended, if it ended badly and what it printed went to a file; else empty.
std::string farewell_text(const Cabinet& cabinet, int code);
