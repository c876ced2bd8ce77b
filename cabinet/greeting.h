// What the cabinet prints at its start and when the game fails.
#pragma once

#include <string>

struct Cabinet;

// The page's address and what to do first, in a few lines.
std::string greeting_text(const Cabinet& cabinet);

// How the game ended, if it failed and its output went to a file; otherwise empty.
std::string farewell_text(const Cabinet& cabinet, int code);
