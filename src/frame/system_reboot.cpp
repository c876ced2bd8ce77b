#include "frame/system_reboot.h"

#include "io/watchdog_link.h"  // watchdog_reboot_word
#include "platform/power.h"    // power_reboot

void system_reboot() {
  watchdog_reboot_word();
  power_reboot();
}
