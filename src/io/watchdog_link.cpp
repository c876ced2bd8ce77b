#include "io/watchdog_link.h"

// No device is looked for yet.
void watchdog_heartbeat() {}
void watchdog_reboot_word() {}
