// A USB device and its endpoints, with the operations of the driver that the device was made for.
//
// Used by one thread at a time: start-up, then the game thread. Nothing waits but control requests,
// which are answered at once. Codes: platform/usb_device.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/mutex.h"
#include "platform/usb_device.h"

struct UsbSetConfiguration {
  std::uint16_t configuration_index, interface_count;
  std::uint16_t interface_index, alternate_setting;
  std::uint32_t maximum_transfer_size;
};

struct UsbDriverInfo {
  std::uint16_t interface_version;
  std::uint32_t flags;
};

// A handle on a device.
class CUsbIo {
 public:
  CUsbIo() = default;
  CUsbIo(const CUsbIo&) = delete;
  CUsbIo& operator=(const CUsbIo&) = delete;
  virtual ~CUsbIo();

  // Opens device `index` of a list of `class_guid`; without a list, by its number among all.
  // Returns 0, at once if it is open already, or a code. The driver has to be of the version
  // 0x0141.
  std::uint32_t open(int index, const UsbDeviceList* device_info, const UsbClassGuid* class_guid);
  void close();
  [[nodiscard]] bool is_open() const { return file_handle != nullptr; }

  // A control request, one at a time for each object. Returns 0 or a code.
  std::uint32_t ioctl_sync(std::uint32_t code, const std::uint8_t* in, std::size_t in_size,
                           std::uint8_t* out, std::size_t out_size, std::size_t& out_returned);
  // Without an answer's bytes.
  std::uint32_t ioctl_sync(std::uint32_t code, const std::uint8_t* in, std::size_t in_size);

  std::uint32_t get_driver_info(UsbDriverInfo& out);
  // `in_out_size`: the room in `out`, and then the bytes that came.
  std::uint32_t get_device_descriptor(std::uint8_t* out, std::size_t& in_out_size,
                                      std::uint32_t recipient, std::uint8_t type,
                                      std::uint8_t index, std::uint16_t language);
  std::uint32_t set_configuration(const UsbSetConfiguration& request);
  std::uint32_t reset_device();

  // The present devices of a class, or null.
  static std::unique_ptr<UsbDeviceList> create_device_list(const UsbClassGuid& class_guid);

 protected:
  std::unique_ptr<UsbFile> file_handle;  // null while closed

 private:
  Mutex ioctl_lock;
  bool driver_flag_a = false, driver_flag_b = false, driver_flag_c = false;
  std::unique_ptr<std::string> interface_detail;  // the device's path
};

// One transfer: the request, its result, and its bytes.
struct UsbTransferBuffer {
  std::uint32_t bytes_to_transfer, bytes_transferred;
  std::uint32_t status;  // USB_PENDING while it is under way, 0 when done, else the failure
  std::uint8_t* data;
  std::uint32_t size;
  UsbOverlapped overlapped;
};

// A handle on one endpoint of a device.
class CUsbIoPipe : public CUsbIo {
 public:
  CUsbIoPipe() = default;
  ~CUsbIoPipe() override;

  // Opens the device if needed and binds this handle to the endpoint. Returns 0 or a code.
  std::uint32_t bind(int index, std::uint8_t endpoint, const UsbDeviceList* device_info,
                     const UsbClassGuid* class_guid);

  // Starts a transfer of `bytes_to_transfer` bytes. True if it is done or pending.
  bool submit_read(UsbTransferBuffer& buffer);
  bool submit_write(UsbTransferBuffer& buffer);

  // The status of the last transfer, after waiting at most `timeout_ms` for a pending one; that
  // time over, USB_ERROR_TIMEOUT, and the transfer stays pending.
  std::uint32_t wait_for_completion(UsbTransferBuffer& buffer, int timeout_ms);

 private:
  bool submit(UsbTransferBuffer& buffer, bool write);
};
