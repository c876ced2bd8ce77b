// Owed tickets: what the board has yet to pay, shown, kept on disk, and given back after a boot.
// Game thread.
#pragma once

// Hands the tickets that the books show owed to the board. Once, at the start of the game thread.
void tickets_restore();

// The ticket step of the tick.
void tickets_poll();
