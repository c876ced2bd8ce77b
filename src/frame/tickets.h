// Owed tickets: what the board has yet to pay, shown, kept on disk, and given back after a boot.
// Game thread.
#pragma once

// Hands the tickets that the books show owed to the board. At the start of the game thread, and once
// more when a board comes late.
void tickets_restore();

// The ticket step of the tick.
void tickets_poll();
