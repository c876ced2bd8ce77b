#include "platform/usb_device.h"

#include <charconv>
#include <string_view>
#include <system_error>

#include "platform/environment.h"
#include "platform/usb_backends.h"

int usb_device_number(const std::string& path) {
  constexpr std::string_view prefix = R"(\\.\USBIO_Device)";
  if (!path.starts_with(prefix)) return -1;
  const char* const end = path.data() + path.size();
  int number = -1;
  const auto [stop, error] = std::from_chars(path.data() + prefix.size(), end, number);
  return error == std::errc{} && stop == end ? number : -1;
}

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
