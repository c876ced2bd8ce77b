#include "platform/power.h"

#include <sys/reboot.h>
#include <unistd.h>

#include <cstdio>

#include "platform/environment.h"  // environment.power_reboot

bool power_reboot() {
  if (!environment.power_reboot) {
    std::fprintf(stderr, "reboot ordered; LILYHOP_POWER is off, so the machine stays up\n");
    return false;
  }
  sync();
  return reboot(RB_AUTOBOOT) == 0;
}
