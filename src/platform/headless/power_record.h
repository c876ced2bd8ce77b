// How many reboots were ordered; here they are only counted. Whether the last one is refused, which
// a test says. And the name of this power-up.
#pragma once

#include <string>

inline int headless_reboots_ordered = 0;
inline bool headless_reboot_refused = false;
inline std::string headless_boot_id = "headless";
