#include "platform/usb_device.h"

#include "platform/environment.h"
#include "platform/usb_backends.h"

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
  switch (environment.usbio) {
    case USBIO_LIBUSB:
      return usb_libusb_driver();
    case USBIO_SOCKET:
      return usb_socket_driver(environment.usbio_socket);
    case USBIO_NONE:
      break;
  }
  static NoUsb none;
  return none;
}
