#include "platform/power.h"

#include <string>
#include <utility>

#include "platform/headless/power_record.h"

void power_reboot(const char* /*why*/) {
  ++headless_reboots_ordered;
}

bool power_reboot_refused() {
  return std::exchange(headless_reboot_refused, false);
}

bool power_restart_ordered() {
  return false;
}

void power_restart(char** /*argv*/) {}

std::string power_boot_id() {
  return headless_boot_id;
}
