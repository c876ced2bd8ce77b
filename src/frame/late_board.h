// A board that wasn't there at power-on and answers later: it is taken into use as if the game
// began. Game thread.
#pragma once

#include <cstdint>

// Looks whether the board is there. Once, at the start of the game thread.
void late_board_begin();

// Gives a board that has just come its lamps, lockout coils and owed tickets. True while a board is
// awaited: what it says of tickets then counts for nothing, for the books haven't been handed over.
bool late_board_step(std::int64_t now_ms);
