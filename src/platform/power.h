// The machine's power: ordered reboots, and which power-up this is.
#pragma once

#include <string>

// Reboots the machine if LILYHOP_POWER allows it, otherwise only logs a line. False if the machine
// was not told to reboot; there is no further result.
bool power_reboot();

// A name for the time since the machine was last started. It never occurs again after the next
// start. Empty if the machine doesn't provide it.
std::string power_boot_id();
