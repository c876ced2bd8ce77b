// Getting a USB device that hangs to answer again.
#pragma once

#include <cstdint>
#include <string>

// Takes every device of this vendor and product off its bus and puts it back, as if it had been
// pulled and plugged. True if one was found and could be reset; it comes back by itself within a
// second or so. It takes the rights to write below /sys; without them nothing happens.
bool usb_reset(std::uint16_t vendor, std::uint16_t product);

// The same below another root than /sys/bus/usb/devices.
bool usb_reset_below(const std::string& root, std::uint16_t vendor, std::uint16_t product);
