// A machine that has run a day reboots at the first quiet moment. Game thread.
#pragma once

// True from the moment at which the reboot was ordered: the game thread then waits for the machine
// to end it.
bool periodic_reboot_step();
void periodic_reboot_reset();
