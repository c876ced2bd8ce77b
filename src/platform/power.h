// The machine's power: ordered reboots, and which power-up this is.
#pragma once

#include <string>

// Reboots the machine if LILYHOP_POWER allows it, else only logs a line. False if the machine was
// not told to; the caller learns no more.
bool power_reboot();

// A name of the time since the machine was last started: the same until it is started anew, and
// then never again. Empty if the machine doesn't tell.
std::string power_boot_id();
