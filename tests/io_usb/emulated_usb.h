// Emulated USB devices: umockdev holds their entries below /sys and /dev, and this answers libusb's
// requests of the kernel.
#pragma once

#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <umockdev.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

// The kernel's side of one device's file. Its handler runs on a thread of umockdev.
class EmulatedDevice {
 public:
  EmulatedDevice() : handler_(umockdev_ioctl_base_new()) {
    g_signal_connect(handler_, "handle-ioctl", G_CALLBACK(handle), this);
  }
  ~EmulatedDevice() { g_object_unref(handler_); }
  EmulatedDevice(const EmulatedDevice&) = delete;
  EmulatedDevice& operator=(const EmulatedDevice&) = delete;
  UMockdevIoctlBase* handler() { return handler_; }

  void say(const Bytes& bytes) {
    const std::lock_guard lock(mutex_);
    says_.push_back(bytes);
  }
  // The next read ends with this error.
  void fail_read(int error) {
    const std::lock_guard lock(mutex_);
    read_error_ = error;
  }
  void pull() {
    const std::lock_guard lock(mutex_);
    gone_ = true;
  }
  // Another program has its interface.
  void hold_interface() {
    const std::lock_guard lock(mutex_);
    taken_ = true;
  }
  void hold_writes(bool hold) {
    const std::lock_guard lock(mutex_);
    holds_ = hold;
  }
  // What it has heard since the last call.
  std::vector<Bytes> heard() {
    const std::lock_guard lock(mutex_);
    return std::exchange(heard_, {});
  }
  // How often a request came: "claim", "reset" and so on, or "submit 81 interrupt 4".
  int count(const std::string& request) {
    const std::lock_guard lock(mutex_);
    return counts_[request];
  }
  std::string requests() {
    const std::lock_guard lock(mutex_);
    std::string text;
    for (const auto& [name, count] : counts_) text += name + " x" + std::to_string(count) + "\n";
    return text;
  }

 private:
  struct Urb {
    UMockdevIoctlData* request;
    UMockdevIoctlData* buffer;
    [[nodiscard]] usbdevfs_urb* urb() const {
      return reinterpret_cast<usbdevfs_urb*>(request->data);
    }
  };

  static gboolean handle(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client, gpointer self) {
    return static_cast<EmulatedDevice*>(self)->answer(client) ? 1 : 0;
  }

  bool answer(UMockdevIoctlClient* client) {
    const std::lock_guard lock(mutex_);
    UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
    const auto done = [&](glong result, int error) {
      umockdev_ioctl_client_complete(client, result, error);
      return true;
    };
    const gulong request = umockdev_ioctl_client_get_request(client);
    if (gone_ && request != USBDEVFS_REAPURBNDELAY) return done(-1, ENODEV);
    switch (request) {
      case USBDEVFS_GET_CAPABILITIES: {
        UMockdevIoctlData* data = umockdev_ioctl_data_resolve(argument, 0, 4, nullptr);
        const std::uint32_t none = 0;
        umockdev_ioctl_data_update(data, 0,
                                   reinterpret_cast<guint8*>(const_cast<std::uint32_t*>(&none)), 4);
        g_object_unref(data);
        return done(0, 0);
      }
      case USBDEVFS_DISCONNECT_CLAIM:
      case USBDEVFS_CLAIMINTERFACE:
        ++counts_["claim"];
        return taken_ ? done(-1, EBUSY) : done(0, 0);
      case USBDEVFS_RELEASEINTERFACE:
        ++counts_["release"];
        return done(0, 0);
      case USBDEVFS_SETCONFIGURATION:
        ++counts_["set configuration"];
        return done(0, 0);
      case USBDEVFS_RESET:
        ++counts_["reset"];
        return done(0, 0);
      case USBDEVFS_SUBMITURB:
        submit(argument);
        return done(0, 0);
      case USBDEVFS_DISCARDURB:
        ++counts_["discard"];
        return discard(*reinterpret_cast<gulong*>(argument->data)) ? done(0, 0) : done(-1, EINVAL);
      case USBDEVFS_REAPURB:
      case USBDEVFS_REAPURBNDELAY:
        if (reap(argument)) return done(0, 0);
        return done(-1, gone_ ? ENODEV : EAGAIN);
      case USBDEVFS_GETDRIVER:
        return done(-1, ENODATA);
      case USBDEVFS_IOCTL:  // reattaches the interface's own driver
        return done(-1, ENODATA);
      default:
        ++counts_["other " + std::to_string(request)];
        return done(-1, ENOTTY);
    }
  }

  void submit(UMockdevIoctlData* argument) {
    Urb urb{umockdev_ioctl_data_resolve(argument, 0, sizeof(usbdevfs_urb), nullptr), nullptr};
    const auto length = static_cast<gsize>(urb.urb()->buffer_length);
    urb.buffer =
        umockdev_ioctl_data_resolve(urb.request, offsetof(usbdevfs_urb, buffer), length, nullptr);
    char name[48];
    std::snprintf(name, sizeof name, "submit %02x %s %d", urb.urb()->endpoint,
                  urb.urb()->type == USBDEVFS_URB_TYPE_INTERRUPT ? "interrupt" : "bulk",
                  urb.urb()->buffer_length);
    ++counts_[name];
    if ((urb.urb()->endpoint & 0x80) == 0) {
      heard_.emplace_back(urb.buffer->data, urb.buffer->data + length);
    }
    pending_.push_back(urb);
  }

  bool discard(gulong address) {
    for (Urb& urb : pending_) {
      if (urb.request->client_addr != address) continue;
      discarded_.push_back(address);
      return true;
    }
    return false;
  }

  // Ends the first transfer that can end.
  bool reap(UMockdevIoctlData* argument) {
    for (auto it = pending_.begin(); it != pending_.end(); ++it) {
      if (!finish(*it)) continue;
      UMockdevIoctlData* place = umockdev_ioctl_data_resolve(argument, 0, sizeof(void*), nullptr);
      umockdev_ioctl_data_set_ptr(place, 0, it->request);
      for (UMockdevIoctlData* data : {place, it->request, it->buffer}) g_object_unref(data);
      pending_.erase(it);
      return true;
    }
    return false;
  }

  bool finish(Urb& pending) {
    usbdevfs_urb& urb = *pending.urb();
    const bool reads = (urb.endpoint & 0x80) != 0;
    urb.actual_length = 0;
    if (std::erase(discarded_, pending.request->client_addr) > 0) {
      urb.status = -ENOENT;
      return true;
    }
    urb.status = gone_ ? -ESHUTDOWN : reads ? -std::exchange(read_error_, 0) : 0;
    if (urb.status != 0) return true;
    if (!reads) {
      urb.actual_length = urb.buffer_length;
      return !holds_;
    }
    if (says_.empty()) return false;
    Bytes bytes = says_.front();
    says_.pop_front();
    bytes.resize(std::min(bytes.size(), static_cast<std::size_t>(urb.buffer_length)));
    umockdev_ioctl_data_update(pending.buffer, 0, bytes.data(), static_cast<gint>(bytes.size()));
    urb.actual_length = static_cast<int>(bytes.size());
    return true;
  }

  UMockdevIoctlBase* handler_;
  std::mutex mutex_;
  std::deque<Bytes> says_;
  std::vector<Bytes> heard_;
  std::vector<Urb> pending_;
  std::vector<gulong> discarded_;
  std::map<std::string, int> counts_;
  int read_error_ = 0;
  bool gone_ = false, holds_ = false, taken_ = false;
};

// The bus: devices are plugged and pulled.
class EmulatedBus {
 public:
  EmulatedBus() : bed_(umockdev_testbed_new()) {}

  // Descriptors of a device with one interrupt endpoint each way.
  static std::string descriptors(int vendor, int product) {
    char text[200];
    std::snprintf(text, sizeof text,
                  "1201100100000008%02X%02X%02X%02X000100000001"
                  "090220000101008032"
                  "0904000002FF000000"
                  "0705810308000A"
                  "0705020308000A",
                  vendor & 0xFF, vendor >> 8, product & 0xFF, product >> 8);
    return text;
  }

  void plug(int number, int vendor, int product, EmulatedDevice* device) {
    const std::string hex = descriptors(vendor, product);
    char entry[1000];
    std::snprintf(entry, sizeof entry,
                  "P: /devices/usb1/1-%d\nN: bus/usb/001/%03d=%s\nE: SUBSYSTEM=usb\n"
                  "E: DEVNAME=/dev/bus/usb/001/%03d\nE: DEVTYPE=usb_device\nE: BUSNUM=001\n"
                  "E: DEVNUM=%03d\nA: busnum=1\\n\nA: devnum=%d\\n\nA: speed=12\\n\n"
                  "A: bConfigurationValue=1\\n\nA: idVendor=%04x\\n\nA: idProduct=%04x\\n\n"
                  "H: descriptors=%s\n",
                  number, number, hex.c_str(), number, number, number, vendor, product,
                  hex.c_str());
    GError* error = nullptr;
    umockdev_testbed_add_from_string(bed_, entry, &error);
    if (error != nullptr) g_error("%s", error->message);
    umockdev_testbed_attach_ioctl(bed_, node(number).c_str(), device->handler(), &error);
    if (error != nullptr) g_error("%s", error->message);
    umockdev_testbed_uevent(bed_, path(number).c_str(), "add");
  }

  void pull(int number, EmulatedDevice* device) {
    device->pull();
    umockdev_testbed_uevent(bed_, path(number).c_str(), "remove");
    umockdev_testbed_detach_ioctl(bed_, node(number).c_str(), nullptr);
    umockdev_testbed_remove_device(bed_, path(number).c_str());
  }

 private:
  static std::string path(int number) { return "/sys/devices/usb1/1-" + std::to_string(number); }
  static std::string node(int number) {
    char name[40];
    std::snprintf(name, sizeof name, "/dev/bus/usb/001/%03d", number);
    return name;
  }
  UMockdevTestbed* bed_;
};
