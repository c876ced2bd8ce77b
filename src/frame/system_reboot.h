#pragma once

// Orders a forced reboot of the machine, the external watchdog told first. A failure isn't told:
// the watchdog, no longer fed, ends the situation.
void system_reboot();
