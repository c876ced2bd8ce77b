// USB devices as files that take control requests and carry transfers on one endpoint.
//
// The codes, the layouts of the requests and the meaning of each are those of the driver that the
// cabinet's devices were made for; a backend answers them as that driver does. One thread at a time
// uses all of this: start-up, then the game thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

enum UsbCode : std::uint32_t {
  USB_OK = 0,
  USB_PENDING = 997,  // a transfer is under way
  USB_ERROR_NO_MEMORY = 0xE0000100,
  USB_ERROR_NOT_OPENED = 0xE0001100,      // the device's file would not open
  USB_ERROR_CLOSED = 0xE0001102,          // asked of a closed object
  USB_ERROR_NO_SUCH_DEVICE = 0xE0001104,  // the list has no device of that index
  USB_ERROR_NO_CLASS = 0xE0001105,        // a list, but no class to look for in it
  USB_ERROR_REQUEST = 0xE0001000,         // a control request that failed or means nothing
  USB_ERROR_GONE = 0xE000100A,            // the device has gone, with it the transfer
  USB_ERROR_TIMEOUT = 0xE000100C,         // the wait for a transfer was over before the transfer
  USB_ERROR_VERSION = 0xE000101C,         // the driver is not of the version that is wanted
  USB_ERROR_NEEDS_RESET = 0xE0007000,     // of a read: the device has to be reset
};

enum UsbControl : std::uint32_t {
  USB_GET_DESCRIPTOR = 0x80942006,     // 8 bytes in, the descriptor out
  USB_SET_CONFIGURATION = 0x80942024,  // 260 bytes in
  USB_RESET_DEVICE = 0x80942054,
  USB_GET_DRIVER_INFO = 0x8094206C,  // 12 bytes out
  USB_BIND_PIPE = 0x80942078,        // 1 byte in, the endpoint's address
};

struct UsbClassGuid {
  std::uint32_t a;
  std::uint16_t b, c;
  std::uint8_t d[8];
};

struct UsbDeviceList {  // of the devices that were there when it was made
  std::vector<std::string> paths;
};

// One transfer that was started. Its data is read or written only inside calls of `UsbFile`.
struct UsbOverlapped {
  std::uint8_t* data;
  std::uint32_t size;
  std::uint32_t transferred;  // once it has ended
  std::uint32_t status;       // the same: 0, or why it failed
};

// An open device, or one of its endpoints if it was bound to one. Destroying it abandons what is
// under way and doesn't wait.
class UsbFile {
 public:
  UsbFile() = default;
  UsbFile(const UsbFile&) = delete;
  UsbFile& operator=(const UsbFile&) = delete;
  virtual ~UsbFile() = default;

  // A control request. Returns 0 and the count of bytes that went to `out`, or a code.
  virtual std::uint32_t control(std::uint32_t code, const std::uint8_t* in, std::size_t in_size,
                                std::uint8_t* out, std::size_t out_size, std::size_t& returned) = 0;

  // Starts a transfer on the endpoint; one at a time. Returns USB_PENDING, 0 if it is done already
  // (then `transferred` counts), or a code. Never waits.
  virtual std::uint32_t start_read(UsbOverlapped& transfer) = 0;
  virtual std::uint32_t start_write(UsbOverlapped& transfer) = 0;

  // True once a pending transfer has ended. Waits for that, at most `timeout_ms`.
  virtual bool has_ended(UsbOverlapped& transfer, int timeout_ms) = 0;
};

class UsbDriver {
 public:
  UsbDriver() = default;
  UsbDriver(const UsbDriver&) = delete;
  UsbDriver& operator=(const UsbDriver&) = delete;
  virtual ~UsbDriver() = default;

  // The devices of a class that are plugged in now; null without a driver. Backends that know no
  // classes list every device.
  virtual std::unique_ptr<UsbDeviceList> list(const UsbClassGuid& class_guid) = 0;

  // Opens a device of a list, or "\\.\USBIO_Device<n>", its n-th, for reading and writing,
  // shared. Null if that fails.
  virtual std::unique_ptr<UsbFile> open(const std::string& path) = 0;
};

// The driver that LILYHOP_USBIO names: libusb, a simulated device on a socket, or one without
// devices. It lives as long as the process.
UsbDriver& usb_driver();
