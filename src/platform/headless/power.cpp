#include "platform/power.h"

#include <string>

#include "platform/headless/power_record.h"

bool power_reboot() {
  ++headless_reboots_ordered;
  return true;
}

std::string power_boot_id() {
  return headless_boot_id;
}
