#include "platform/power.h"

#include <sys/reboot.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "platform/environment.h"  // environment.power_reboot

bool power_reboot() {
  if (!environment.power_reboot) {
    std::fprintf(stderr, "reboot ordered; LILYHOP_POWER is off, so the machine stays up\n");
    return false;
  }
  sync();
  return reboot(RB_AUTOBOOT) == 0;
}

std::string power_boot_id() {
  std::string id;
  std::ifstream("/proc/sys/kernel/random/boot_id") >> id;
  return id;
}
