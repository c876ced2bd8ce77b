#include "io/usb/usb_io.h"

#include <algorithm>

namespace {

constexpr std::uint16_t INTERFACE_VERSION = 0x0141;

void put_u16(std::uint8_t* at, std::uint32_t value) {
  at[0] = static_cast<std::uint8_t>(value);
  at[1] = static_cast<std::uint8_t>(value >> 8);
}

void put_u32(std::uint8_t* at, std::uint32_t value) {
  put_u16(at, value);
  put_u16(at + 2, value >> 16);
}

std::uint32_t get_u16(const std::uint8_t* at) {
  return at[0] | at[1] << 8;
}

bool flag(std::uint32_t flags, int bit) {
  return (flags >> bit & 1U) != 0;
}

}  // namespace

CUsbIo::~CUsbIo() = default;

std::uint32_t CUsbIo::open(int index, const UsbDeviceList* device_info,
                           const UsbClassGuid* class_guid) {
  if (file_handle != nullptr) return USB_OK;
  interface_detail = nullptr;
  if (device_info == nullptr) {
    interface_detail = std::make_unique<std::string>(R"(\\.\USBIO_Device)" + std::to_string(index));
  } else {
    if (class_guid == nullptr) return USB_ERROR_NO_CLASS;
    if (index < 0 || static_cast<std::size_t>(index) >= device_info->paths.size()) {
      return USB_ERROR_NO_SUCH_DEVICE;
    }
    interface_detail =
        std::make_unique<std::string>(device_info->paths[static_cast<std::size_t>(index)]);
  }
  file_handle = usb_driver().open(*interface_detail);
  if (file_handle == nullptr) return USB_ERROR_NOT_OPENED;
  UsbDriverInfo info{};
  const std::uint32_t code = get_driver_info(info);
  driver_flag_a = flag(info.flags, 4);
  driver_flag_b = flag(info.flags, 5);
  driver_flag_c = flag(info.flags, 8);
  if (code == USB_OK && info.interface_version == INTERFACE_VERSION) return USB_OK;
  close();
  return USB_ERROR_VERSION;
}

void CUsbIo::close() {
  file_handle = nullptr;
  interface_detail = nullptr;
}

std::uint32_t CUsbIo::ioctl_sync(std::uint32_t code, const std::uint8_t* in, std::size_t in_size,
                                 std::uint8_t* out, std::size_t out_size,
                                 std::size_t& out_returned) {
  out_returned = 0;
  if (file_handle == nullptr) return USB_ERROR_CLOSED;
  const MutexLock lock(ioctl_lock);
  return file_handle->control(code, in, in_size, out, out_size, out_returned);
}

std::uint32_t CUsbIo::ioctl_sync(std::uint32_t code, const std::uint8_t* in, std::size_t in_size) {
  std::size_t none = 0;
  return ioctl_sync(code, in, in_size, nullptr, 0, none);
}

std::uint32_t CUsbIo::get_driver_info(UsbDriverInfo& out) {
  std::uint8_t block[12] = {};
  std::size_t returned = 0;
  const std::uint32_t code =
      ioctl_sync(USB_GET_DRIVER_INFO, nullptr, 0, block, sizeof block, returned);
  out.interface_version = static_cast<std::uint16_t>(get_u16(block));
  out.flags = get_u16(block + 8) | get_u16(block + 10) << 16;
  return code;
}

std::uint32_t CUsbIo::get_device_descriptor(std::uint8_t* out, std::size_t& in_out_size,
                                            std::uint32_t recipient, std::uint8_t type,
                                            std::uint8_t index, std::uint16_t language) {
  std::uint8_t request[8] = {};
  put_u32(request, recipient);
  request[4] = type;
  request[5] = index;
  put_u16(request + 6, language);
  const std::size_t room = in_out_size;
  return ioctl_sync(USB_GET_DESCRIPTOR, request, sizeof request, out, room, in_out_size);
}

std::uint32_t CUsbIo::set_configuration(const UsbSetConfiguration& request) {
  std::uint8_t block[260] = {};  // room for 32 interfaces, of which devices like this have one
  put_u16(block, request.configuration_index);
  put_u16(block + 2, request.interface_count);
  put_u16(block + 4, request.interface_index);
  put_u16(block + 6, request.alternate_setting);
  put_u32(block + 8, request.maximum_transfer_size);
  return ioctl_sync(USB_SET_CONFIGURATION, block, sizeof block);
}

std::uint32_t CUsbIo::reset_device() {
  return ioctl_sync(USB_RESET_DEVICE, nullptr, 0);
}

std::unique_ptr<UsbDeviceList> CUsbIo::create_device_list(const UsbClassGuid& class_guid) {
  return usb_driver().list(class_guid);
}

CUsbIoPipe::~CUsbIoPipe() {
  close();
}

std::uint32_t CUsbIoPipe::bind(int index, std::uint8_t endpoint, const UsbDeviceList* device_info,
                               const UsbClassGuid* class_guid) {
  const std::uint32_t code = open(index, device_info, class_guid);
  if (code != USB_OK) return code;
  return ioctl_sync(USB_BIND_PIPE, &endpoint, 1);
}

bool CUsbIoPipe::submit(UsbTransferBuffer& buffer, bool write) {
  buffer.bytes_transferred = 0;
  buffer.overlapped = {buffer.data, std::min(buffer.bytes_to_transfer, buffer.size), 0, 0};
  if (file_handle == nullptr) {
    buffer.status = USB_ERROR_CLOSED;
    return false;
  }
  buffer.status = write ? file_handle->start_write(buffer.overlapped)
                        : file_handle->start_read(buffer.overlapped);
  if (buffer.status == USB_OK) buffer.bytes_transferred = buffer.overlapped.transferred;
  return buffer.status == USB_OK || buffer.status == USB_PENDING;
}

bool CUsbIoPipe::submit_read(UsbTransferBuffer& buffer) {
  return submit(buffer, false);
}

bool CUsbIoPipe::submit_write(UsbTransferBuffer& buffer) {
  return submit(buffer, true);
}

std::uint32_t CUsbIoPipe::wait_for_completion(UsbTransferBuffer& buffer, int timeout_ms) {
  if (buffer.status != USB_PENDING) return buffer.status;
  if (file_handle == nullptr) return buffer.status = USB_ERROR_CLOSED;
  if (!file_handle->has_ended(buffer.overlapped, timeout_ms)) return USB_ERROR_TIMEOUT;
  buffer.bytes_transferred = buffer.overlapped.transferred;
  return buffer.status = buffer.overlapped.status;
}
