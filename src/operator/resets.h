// Clearing coins, tickets, books and settings, each behind a confirmation.
#pragma once

// Takes all credits and coins that are in the machine, and stores the books. Game thread.
void credits_clear();
