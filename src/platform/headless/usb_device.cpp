#include "platform/usb_device.h"

#include <memory>
#include <string>

#include "platform/headless/usb_control.h"

namespace {

class NoUsb final : public UsbDriver {
 public:
  std::unique_ptr<UsbDeviceList> list(const UsbClassGuid& /*class_guid*/) override {
    return nullptr;
  }
  std::unique_ptr<UsbFile> open(const std::string& /*path*/) override { return nullptr; }
};

}  // namespace

UsbDriver& usb_driver() {
  static NoUsb none;
  return headless_usb_driver == nullptr ? none : *headless_usb_driver;
}
