// The steps of the tick that are neither rules nor drawing. Game thread.
#pragma once

#include <cstdint>

// --- inputs, in play ----------------------------------------------------------------------------

// Money in: coins, swipes and service credits, and the frogs that Start or the time-out launches.
void coins_take(int side);
void start_take(int side);
void service_credits_take();
void auto_launch();
// The way into operator mode: Test held for two seconds. `test_level` is 1 while it is held.
void test_hold_step(int test_level);

// --- every tick ---------------------------------------------------------------------------------

// Energises a side's coin lockout coil while it may take coins, and releases it while "Lockout
// Coils" is on and there is something to play, before a reboot, and while it is held closed.
void jamma_update_lockouts();
void lockouts_reset();
// Before the program ends: from the next tick on no slot takes a coin. Any thread.
void lockouts_hold_closed(bool closed);

// Owed tickets: what the board has yet to pay, shown, and kept on disk.
void tickets_poll();
// Hands the tickets that the books show owed to the board. Before the first tick, and once more
// when a board comes late.
void tickets_restore();

// Checks whether the board is there. Before the first tick.
void late_board_begin();
// Gives a board that has just come its lamps, lockout coils and owed tickets. True while a board is
// awaited: what it says of tickets doesn't count before the books were handed over.
bool late_board_step(std::int64_t now_ms);

// A machine that has run a day reboots at the first quiet moment. True from the moment at which the
// reboot was ordered: there is no further tick unless it is refused.
bool periodic_reboot_step();
// Between ticks, after the order: true once the machine has refused. Play goes on, and the reboot
// is ordered again in an hour at the earliest.
bool periodic_reboot_refused();
void periodic_reboot_reset();
