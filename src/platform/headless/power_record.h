// How often a reboot was ordered; without a cabinet it is only counted. And the power-up's name.
#pragma once

#include <string>

inline int headless_reboots_ordered = 0;
inline std::string headless_boot_id = "headless";
