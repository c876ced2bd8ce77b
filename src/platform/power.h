// Ordered reboots of the machine.
#pragma once

// Reboots the machine if LILYHOP_POWER allows it, else only logs a line. False if the machine was
// not told to; the caller learns no more.
bool power_reboot();
