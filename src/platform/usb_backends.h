// The USB drivers that implement platform/usb_device.h.
#pragma once

#include <memory>
#include <string>

#include "platform/usb_device.h"

// The n of "\\.\USBIO_Device<n>", the name of a device by its position among all; -1 for other
// paths.
int usb_device_number(const std::string& path);

// A machine without USB devices.
class NoUsb final : public UsbDriver {
 public:
  std::unique_ptr<UsbDeviceList> list(const UsbClassGuid& /*class_guid*/) override {
    return nullptr;
  }
  std::unique_ptr<UsbFile> open(const std::string& /*path*/) override { return nullptr; }
};

// The devices of this machine. A device is opened only when it gets a configuration, so a search
// does not disturb the others.
UsbDriver& usb_libusb_driver();

// One simulated device at the far end of a unix socket; it is plugged in while somebody listens
// there. Each file is a connection of packets:
//
//   to the device    'C' code(u32) out_size(u32) bytes...   a control request
//                    'R' size(u32)                          a read was started
//                    'W' bytes...                           a write was started
//   from the device  'C' 'R' 'W'  code(u32) bytes...        each one's end
//
// Numbers are little-endian. A connection that ends is a device that was pulled.
UsbDriver& usb_socket_driver(const std::string& path);
