// Restarts a USB device that hangs.
#pragma once

#include <cstdint>
#include <string>

// Disconnects every device of this vendor and product from its bus and reconnects it, as if it had
// been pulled and plugged in. True if one was found and could be reset; it comes back by itself
// within about a second. Needs permission to write below /sys; without it nothing happens.
bool usb_reset(std::uint16_t vendor, std::uint16_t product);

// The same below another root than /sys/bus/usb/devices.
bool usb_reset_below(const std::string& root, std::uint16_t vendor, std::uint16_t product);
