#include "platform/usb_device.h"

#include "platform/headless/usb_control.h"
#include "platform/usb_backends.h"

UsbDriver& usb_driver() {
  static NoUsb none;
  return headless_usb_driver == nullptr ? none : *headless_usb_driver;
}
