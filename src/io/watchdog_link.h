// The external USB watchdog.
#pragma once

void watchdog_heartbeat();    // game thread, each tick
void watchdog_reboot_word();  // before an ordered reboot
