// Clearing coins, tickets, books and settings, each after a confirmation.
#pragma once

// Clears all current credits and coins, and stores the books. Game thread.
void credits_clear();
