// How many reboots were ordered; here they are only counted. And the name of this power-up.
#pragma once

#include <string>

inline int headless_reboots_ordered = 0;
inline std::string headless_boot_id = "headless";
