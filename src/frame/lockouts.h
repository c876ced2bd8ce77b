// Coin lockout coils. Game thread.
#pragma once

// Once per tick: energises a side's coil while it may take coins, and releases it while "Lockout
// Coils" is on and there is something to play.
void jamma_update_lockouts();
void lockouts_reset();
