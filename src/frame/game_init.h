// Bringing every subsystem up, in one order, and down again. Main thread.
#pragma once

// Leaves the game running on its own threads. A device that is missing is reported and start-up
// goes on. Returns 1.
int Game_Init();

// Closes the coin slots, stops the threads, stores the books, releases everything. Draws nothing.
// Returns 1, or 0 if a thread doesn't end in time: what it may still touch is left alone, and the
// process has to end at once, without any cleaning up.
int Game_Shutdown();
