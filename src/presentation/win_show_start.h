// The rules' door to the jackpot show. It includes nothing, so that a lower floor may call it.
#pragma once

// Begins the show of a side, or restarts a running one, with the number of tickets to be shown.
// Game thread.
void win_show_start(int side, int tickets);

// True while the side's show runs; no frog of that side can be launched meanwhile. Any thread.
bool win_show_active(int side);
