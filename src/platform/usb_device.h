// USB devices as files that take control requests and run transfers on one endpoint.
//
// The codes, the layouts of the requests and their meaning are those of the driver that the
// cabinet's devices were made for; a backend answers as that driver does. One thread at a time uses
// all of this: first start-up, then the game thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

enum UsbCode : std::uint32_t {
  USB_OK = 0,
  USB_PENDING = 997,  // a transfer is in progress
  USB_ERROR_NO_MEMORY = 0xE0000100,
  USB_ERROR_NOT_OPENED = 0xE0001100,      // the device's file could not be opened
  USB_ERROR_CLOSED = 0xE0001102,          // a request to a closed object
  USB_ERROR_NO_SUCH_DEVICE = 0xE0001104,  // the list has no device with that index
  USB_ERROR_NO_CLASS = 0xE0001105,        // a list without a class to look for
  USB_ERROR_REQUEST = 0xE0001000,         // a control request that failed or is unknown
  USB_ERROR_GONE = 0xE000100A,            // the device has gone, and the transfer with it
  USB_ERROR_TIMEOUT = 0xE000100C,         // the wait ended before the transfer
  USB_ERROR_VERSION = 0xE000101C,         // the driver has another version than requested
  USB_ERROR_NEEDS_RESET = 0xE0007000,     // from a read: the device must be reset
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

struct UsbDeviceList {  // of the devices that existed when it was made
  std::vector<std::string> paths;
};

// One transfer. Its data is read or written only inside calls of `UsbFile`.
struct UsbOverlapped {
  std::uint8_t* data;
  std::uint32_t size;
  std::uint32_t transferred;  // valid at the end
  std::uint32_t status;       // valid at the end: 0, or why it failed
};

// An open device, or one of its endpoints if it was bound to one. Destroying it abandons the
// transfer in progress and doesn't wait.
class UsbFile {
 public:
  UsbFile() = default;
  UsbFile(const UsbFile&) = delete;
  UsbFile& operator=(const UsbFile&) = delete;
  virtual ~UsbFile() = default;

  // A control request. Returns 0, with the number of bytes written to `out`, or a code.
  virtual std::uint32_t control(std::uint32_t code, const std::uint8_t* in, std::size_t in_size,
                                std::uint8_t* out, std::size_t out_size, std::size_t& returned) = 0;

  // Starts a transfer on the endpoint; one at a time. Returns USB_PENDING, 0 if it has already
  // ended (then `transferred` is valid), or a code. Never waits.
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

  // The devices of a class that are plugged in now; null without a driver. Backends that don't know
  // classes list every device.
  virtual std::unique_ptr<UsbDeviceList> list(const UsbClassGuid& class_guid) = 0;

  // Opens a device of a list, or "\\.\USBIO_Device<n>", the n-th one, for reading and writing,
  // shared. Null on failure.
  virtual std::unique_ptr<UsbFile> open(const std::string& path) = 0;
};

// The driver that LILYHOP_USBIO names: libusb, a simulated device on a socket, or a driver without
// devices. It lives as long as the process.
UsbDriver& usb_driver();
