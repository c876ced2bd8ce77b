// The thread that owns the game clock and all game state, and the one that carries the small
// workers.
#pragma once

// Starts both. False if the machine gives no thread. Start-up, last of all.
bool game_threads_start();

// Asks both to stop and waits two seconds for each. False if one still runs: what it may touch must
// not be freed then. Main thread, at shutdown.
bool game_threads_stop();
