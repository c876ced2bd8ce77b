// The machine's power: ordered reboots, and which power-up this is.
#pragma once

#include <string>

// Orders a reboot of the machine and returns at once; `why` goes into the log. A thread asks the
// system's login manager, which ends all services and unmounts the disks. If there is none, or the
// machine still runs two minutes later, it reboots without that. With LILYHOP_POWER=off only this
// program is to start anew: see `power_restart_ordered`. Game thread.
void power_reboot(const char* why);

// True once if the machine refused: it stays up, and a line in the log says why. Game thread.
bool power_reboot_refused();

// The program is to end in good order and then to start anew. Any thread.
bool power_restart_ordered();

// Starts the program anew in place of this process, with the same arguments. Returns only if that
// fails, after a line that says why. Main thread, last of all.
void power_restart(char** argv);

// A name for the time since the machine was last started. It never occurs again after the next
// start. Empty if the machine doesn't provide it.
std::string power_boot_id();
