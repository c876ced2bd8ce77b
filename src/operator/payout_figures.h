// What the current settings pay by the paytable, as both adjustment pages show it.
#pragma once

#include <cstdint>

// Writes lines 2 to 5 of the pane. `fixed_bonus` is the bonus to show while "Fixed Ticket" is on.
// Game thread.
void pane_payout_figures(std::int32_t fixed_bonus);
