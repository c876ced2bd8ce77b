// USB devices through libusb. It answers the driver's requests from what libusb knows about a
// device. Only a reset takes time; it runs on its own thread.
#include <libusb-1.0/libusb.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/thread.h"
#include "platform/usb_backends.h"

namespace {

constexpr std::uint16_t INTERFACE_VERSION = 0x0141;  // that the program was written for
constexpr std::uint8_t DESCRIPTOR_DEVICE = 1;
constexpr std::size_t MOST_BYTES = 64;  // of one transfer: a packet at full speed

std::uint32_t code_of(int error) {
  return error == LIBUSB_ERROR_NO_DEVICE ? USB_ERROR_GONE : USB_ERROR_REQUEST;
}

std::uint32_t get_u16(const std::uint8_t* at) {
  return at[0] | at[1] << 8;
}

// One device, shared by all files that are opened on it, because the system gives an interface to
// only one handle.
struct Device {
  explicit Device(libusb_device* found) : device(libusb_ref_device(found)) {}
  ~Device() {
    if (handle != nullptr) libusb_close(handle);
    libusb_unref_device(device);
  }
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  libusb_device* device;
  libusb_device_handle* handle = nullptr;  // from the first configuration on
  int claimed = -1;                        // the interface
  std::atomic<bool> resetting{false};
  std::atomic<bool> gone{false};
};
using DevicePointer = std::shared_ptr<Device>;

std::uint32_t configure(Device& device, const std::uint8_t* in) {
  const auto configuration = static_cast<std::uint8_t>(get_u16(in));
  const int interface = static_cast<int>(get_u16(in + 4));
  const int alternate = static_cast<int>(get_u16(in + 6));
  if (get_u16(in + 2) != 1) return USB_ERROR_REQUEST;
  if (device.handle == nullptr && libusb_open(device.device, &device.handle) != 0) {
    return USB_ERROR_NOT_OPENED;
  }
  libusb_config_descriptor* descriptor = nullptr;
  int error = libusb_get_config_descriptor(device.device, configuration, &descriptor);
  if (error != 0) return code_of(error);
  const int wanted = descriptor->bConfigurationValue;
  libusb_free_config_descriptor(descriptor);

  // The system has already set the first configuration; setting it again would reset the device.
  int active = 0;
  libusb_set_auto_detach_kernel_driver(device.handle, 1);
  error = libusb_get_configuration(device.handle, &active);
  if (error == 0 && active != wanted) error = libusb_set_configuration(device.handle, wanted);
  if (error == 0 && device.claimed != interface) {
    error = libusb_claim_interface(device.handle, interface);
    if (error == 0) device.claimed = interface;
  }
  if (error == 0 && alternate != 0) {
    error = libusb_set_interface_alt_setting(device.handle, interface, alternate);
  }
  return error == 0 ? std::uint32_t{USB_OK} : code_of(error);
}

// The type of an endpoint of the active configuration, or -1 if there is none with this address.
int endpoint_kind(const Device& device, std::uint8_t address) {
  libusb_config_descriptor* configuration = nullptr;
  if (libusb_get_active_config_descriptor(device.device, &configuration) != 0) return -1;
  int kind = -1;
  for (int i = 0; i < configuration->bNumInterfaces; ++i) {
    const libusb_interface& interface = configuration->interface[i];
    if (interface.num_altsetting < 1) continue;
    const libusb_interface_descriptor& setting = interface.altsetting[0];
    for (int e = 0; e < setting.bNumEndpoints; ++e) {
      const libusb_endpoint_descriptor& endpoint = setting.endpoint[e];
      if (endpoint.bEndpointAddress == address) {
        kind = endpoint.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK;
      }
    }
  }
  libusb_free_config_descriptor(configuration);
  return kind;
}

void reset_thread(const Thread& /*self*/, void* context) {
  const std::unique_ptr<DevicePointer> device(static_cast<DevicePointer*>(context));
  if (libusb_reset_device((*device)->handle) != 0) (*device)->gone = true;
  (*device)->resetting = false;
}

std::uint32_t reset(const DevicePointer& device) {
  if (device->handle == nullptr) return USB_ERROR_REQUEST;
  if (device->resetting.exchange(true)) return USB_OK;
  auto context = std::make_unique<DevicePointer>(device);
  if (thread_start("usb-reset", THREAD_PRIORITY_NORMAL, reset_thread, context.get()) == nullptr) {
    device->resetting = false;
    return USB_ERROR_NO_MEMORY;
  }
  (void)context.release();  // the thread owns it now
  return USB_OK;
}

// A transfer with its memory, which libusb uses until it reports the end.
struct Slot {
  explicit Slot(DevicePointer of) : device(std::move(of)), transfer(libusb_alloc_transfer(0)) {}
  ~Slot() { libusb_free_transfer(transfer); }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;

  DevicePointer device;
  libusb_transfer* transfer;
  std::uint8_t bytes[MOST_BYTES] = {};
  bool parked = false;     // waits for the end of a reset
  bool under_way = false;  // libusb is using it
};

void LIBUSB_CALL transfer_ended(libusb_transfer* transfer) {
  static_cast<Slot*>(transfer->user_data)->under_way = false;
}

class LibusbDriver final : public UsbDriver {
 public:
  LibusbDriver() {
    const int error = libusb_init(&context_);
    if (error == 0) return;
    context_ = nullptr;
    std::fprintf(stderr, "no USB: libusb says %s\n", libusb_error_name(error));
  }

  std::unique_ptr<UsbDeviceList> list(const UsbClassGuid& class_guid) override;
  std::unique_ptr<UsbFile> open(const std::string& path) override;

  void handle_events(int timeout_ms) {
    timeval bound{timeout_ms / 1000, timeout_ms % 1000 * 1000};
    libusb_handle_events_timeout_completed(context_, &bound, nullptr);
    std::erase_if(abandoned_, [](const auto& slot) { return !slot->under_way; });
  }

  // A closed file leaves this behind: libusb uses its memory until the cancelling has ended.
  void abandon(std::unique_ptr<Slot> slot) {
    if (slot == nullptr) return;
    if (slot->under_way) {
      libusb_cancel_transfer(slot->transfer);
      abandoned_.push_back(std::move(slot));
    }
    handle_events(0);
  }

 private:
  DevicePointer shared(libusb_device* found);

  libusb_context* context_ = nullptr;
  std::vector<std::weak_ptr<Device>> devices_;  // that are open
  std::vector<std::unique_ptr<Slot>> abandoned_;
};

LibusbDriver& driver() {
  // Never destroyed: files in static objects are closed at the very end.
  static LibusbDriver& instance = *new LibusbDriver;
  return instance;
}

class LibusbFile final : public UsbFile {
 public:
  explicit LibusbFile(DevicePointer device) : device_(std::move(device)) {}
  ~LibusbFile() override { driver().abandon(std::move(slot_)); }

  std::uint32_t control(std::uint32_t code, const std::uint8_t* in, std::size_t in_size,
                        std::uint8_t* out, std::size_t out_size, std::size_t& returned) override {
    returned = 0;
    switch (code) {
      case USB_GET_DRIVER_INFO:
        if (out_size < 12) return USB_ERROR_REQUEST;
        std::fill_n(out, 12, 0);
        out[0] = INTERFACE_VERSION & 0xFF;
        out[1] = INTERFACE_VERSION >> 8;
        returned = 12;
        return USB_OK;
      case USB_GET_DESCRIPTOR:
        return in_size == 8 ? descriptor(in, out, out_size, returned)
                            : std::uint32_t{USB_ERROR_REQUEST};
      case USB_SET_CONFIGURATION:
        return in_size == 260 ? configure(*device_, in) : std::uint32_t{USB_ERROR_REQUEST};
      case USB_RESET_DEVICE:
        return reset(device_);
      case USB_BIND_PIPE:
        return in_size == 1 ? bind(in[0]) : std::uint32_t{USB_ERROR_REQUEST};
      default:
        return USB_ERROR_REQUEST;
    }
  }

  std::uint32_t start_read(UsbOverlapped& transfer) override {
    return start(transfer, LIBUSB_ENDPOINT_IN);
  }

  std::uint32_t start_write(UsbOverlapped& transfer) override {
    return start(transfer, LIBUSB_ENDPOINT_OUT);
  }

  bool has_ended(UsbOverlapped& transfer, int timeout_ms) override {
    if (slot_->parked && !device_->resetting) {
      slot_->parked = false;
      transfer.status = submit();
      if (transfer.status != USB_PENDING) return true;
    }
    driver().handle_events(timeout_ms);
    if (slot_->parked || slot_->under_way) return false;
    const libusb_transfer& ended = *slot_->transfer;
    transfer.transferred = static_cast<std::uint32_t>(ended.actual_length);
    transfer.status = status_of(ended);
    if (reads()) std::copy_n(slot_->bytes, transfer.transferred, transfer.data);
    return true;
  }

 private:
  [[nodiscard]] bool reads() const { return (endpoint_ & LIBUSB_ENDPOINT_IN) != 0; }

  // libusb has the device's descriptor from when it was plugged in, so nothing is opened for it.
  std::uint32_t descriptor(const std::uint8_t* in, std::uint8_t* out, std::size_t out_size,
                           std::size_t& returned) const {
    const bool wanted = get_u16(in) == 0 && get_u16(in + 2) == 0 && in[4] == DESCRIPTOR_DEVICE;
    libusb_device_descriptor d{};
    if (!wanted || in[5] != 0 || libusb_get_device_descriptor(device_->device, &d) != 0) {
      return USB_ERROR_REQUEST;
    }
    const auto low = [](int n) { return static_cast<std::uint8_t>(n); };
    const auto high = [](int n) { return static_cast<std::uint8_t>(n >> 8); };
    const std::uint8_t bytes[18] = {d.bLength,         d.bDescriptorType, low(d.bcdUSB),
                                    high(d.bcdUSB),    d.bDeviceClass,    d.bDeviceSubClass,
                                    d.bDeviceProtocol, d.bMaxPacketSize0, low(d.idVendor),
                                    high(d.idVendor),  low(d.idProduct),  high(d.idProduct),
                                    low(d.bcdDevice),  high(d.bcdDevice), d.iManufacturer,
                                    d.iProduct,        d.iSerialNumber,   d.bNumConfigurations};
    returned = std::min(out_size, sizeof bytes);
    std::copy_n(bytes, returned, out);
    return USB_OK;
  }

  std::uint32_t bind(std::uint8_t address) {
    if (device_->claimed < 0) return USB_ERROR_REQUEST;
    kind_ = endpoint_kind(*device_, address);
    const bool good = kind_ == LIBUSB_TRANSFER_TYPE_BULK || kind_ == LIBUSB_TRANSFER_TYPE_INTERRUPT;
    if (!good) return USB_ERROR_REQUEST;
    endpoint_ = address;
    if (slot_ == nullptr) slot_ = std::make_unique<Slot>(device_);
    return slot_->transfer == nullptr ? USB_ERROR_NO_MEMORY : USB_OK;
  }

  std::uint32_t start(UsbOverlapped& transfer, int direction) {
    const bool fits = slot_ != nullptr && (endpoint_ & LIBUSB_ENDPOINT_IN) == direction &&
                      !slot_->under_way && transfer.size <= MOST_BYTES;
    if (!fits) return USB_ERROR_REQUEST;
    if (device_->gone) return USB_ERROR_GONE;
    if (!reads()) std::copy_n(transfer.data, transfer.size, slot_->bytes);
    libusb_fill_bulk_transfer(slot_->transfer, device_->handle, endpoint_, slot_->bytes,
                              static_cast<int>(transfer.size), transfer_ended, slot_.get(), 0);
    slot_->transfer->type = static_cast<std::uint8_t>(kind_);
    slot_->parked = device_->resetting;
    return slot_->parked ? USB_PENDING : submit();
  }

  std::uint32_t submit() {
    if (device_->gone) return USB_ERROR_GONE;
    slot_->under_way = true;
    const int error = libusb_submit_transfer(slot_->transfer);
    if (error == 0) return USB_PENDING;
    slot_->under_way = false;
    return reads() ? code_of(error) : USB_ERROR_GONE;
  }

  // After a failed write the device must be closed and opened again, as if it had gone; after a
  // failed read it must be reset.
  [[nodiscard]] std::uint32_t status_of(const libusb_transfer& ended) const {
    if (ended.status == LIBUSB_TRANSFER_COMPLETED) return USB_OK;
    if (ended.status == LIBUSB_TRANSFER_NO_DEVICE || device_->gone || !reads()) {
      return USB_ERROR_GONE;
    }
    return USB_ERROR_NEEDS_RESET;
  }

  DevicePointer device_;
  std::uint8_t endpoint_ = 0;
  int kind_ = -1;
  std::unique_ptr<Slot> slot_;  // valid once it is bound
};

std::string path_of(libusb_device* device) {
  return std::to_string(libusb_get_bus_number(device)) + ":" +
         std::to_string(libusb_get_device_address(device));
}

// The devices that are plugged in now. Releasing the list releases their references.
class Present {
 public:
  explicit Present(libusb_context* context) : count_(libusb_get_device_list(context, &devices_)) {}
  ~Present() {
    if (devices_ != nullptr) libusb_free_device_list(devices_, 1);
  }
  Present(const Present&) = delete;
  Present& operator=(const Present&) = delete;
  [[nodiscard]] libusb_device** begin() const { return devices_; }
  [[nodiscard]] libusb_device** end() const { return devices_ + std::max<ssize_t>(count_, 0); }

 private:
  libusb_device** devices_ = nullptr;
  ssize_t count_;
};

DevicePointer LibusbDriver::shared(libusb_device* found) {
  std::erase_if(devices_, [](const auto& device) { return device.expired(); });
  for (const auto& known : devices_) {
    DevicePointer device = known.lock();
    if (device != nullptr && device->device == found) return device;
  }
  auto device = std::make_shared<Device>(found);
  devices_.push_back(device);
  return device;
}

std::unique_ptr<UsbDeviceList> LibusbDriver::list(const UsbClassGuid& /*class_guid*/) {
  if (context_ == nullptr) return nullptr;
  auto list = std::make_unique<UsbDeviceList>();
  for (libusb_device* device : Present(context_)) list->paths.push_back(path_of(device));
  return list;
}

std::unique_ptr<UsbFile> LibusbDriver::open(const std::string& path) {
  if (context_ == nullptr) return nullptr;
  const int number = usb_device_number(path);
  int index = 0;
  for (libusb_device* device : Present(context_)) {
    if (path_of(device) == path || index++ == number)
      return std::make_unique<LibusbFile>(shared(device));
  }
  return nullptr;
}

}  // namespace

UsbDriver& usb_libusb_driver() {
  return driver();
}
