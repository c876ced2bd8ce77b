// How often a reboot was ordered; without a cabinet it is only counted.
#pragma once

inline int headless_reboots_ordered = 0;
