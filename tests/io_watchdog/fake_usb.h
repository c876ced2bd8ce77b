// Fake USB devices: what they are, what they send, and what was requested and sent to them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/headless/usb_control.h"
#include "platform/usb_device.h"

using Bytes = std::vector<std::uint8_t>;

struct FakeDevice {
  int vendor = 0x0C70, product = 0x0774;
  int version = 0x0141;
  std::uint32_t bind_code = 0;   // how the binding of an endpoint ends
  bool gone = false;             // every transfer ends with it
  bool busy = false;             // a write that starts now ends when this does
  std::uint32_t write_code = 0;  // how a write ends otherwise
  std::uint32_t read_code = 0;   // what ends the next read
  std::deque<Bytes> says;        // each ends one read
  std::vector<Bytes> heard;      // of each write
  std::vector<std::pair<std::uint32_t, Bytes>> requests;
  int open_files = 0;

  void say(std::uint16_t word) { says.push_back(wire(word)); }
  static Bytes wire(std::uint16_t word) {
    Bytes bytes;
    for (int i = 0; i < 4; ++i) {
      bytes.push_back(static_cast<std::uint8_t>((i + 1) << 4 | (word >> (12 - 4 * i) & 15)));
    }
    return bytes;
  }
  // The words heard since the last call.
  std::vector<std::uint16_t> words() {
    std::vector<std::uint16_t> words;
    for (const Bytes& bytes : heard) {
      std::uint16_t word = 0;
      for (const std::uint8_t byte : bytes)
        word = static_cast<std::uint16_t>(word << 4 | (byte & 15));
      words.push_back(bytes == wire(word) ? word : 0);
    }
    heard.clear();
    return words;
  }
};

class FakeFile final : public UsbFile {
 public:
  explicit FakeFile(std::shared_ptr<FakeDevice> device) : device_(std::move(device)) {
    ++device_->open_files;
  }
  ~FakeFile() override { --device_->open_files; }

  std::uint32_t control(std::uint32_t code, const std::uint8_t* in, std::size_t in_size,
                        std::uint8_t* out, std::size_t out_size, std::size_t& returned) override {
    device_->requests.emplace_back(code, Bytes(in, in + in_size));
    if (device_->gone) return USB_ERROR_GONE;
    Bytes answer;
    if (code == USB_GET_DESCRIPTOR) {
      answer = {18, 1, 0, 2, 0, 0, 0, 8};
      for (const int n : {device_->vendor, device_->product}) {
        answer.push_back(static_cast<std::uint8_t>(n));
        answer.push_back(static_cast<std::uint8_t>(n >> 8));
      }
      answer.resize(18);
    } else if (code == USB_GET_DRIVER_INFO) {
      answer = {static_cast<std::uint8_t>(device_->version),
                static_cast<std::uint8_t>(device_->version >> 8)};
      answer.resize(12);
    }
    returned = std::min(out_size, answer.size());
    std::copy_n(answer.begin(), returned, out);
    return code == USB_BIND_PIPE ? device_->bind_code : 0;
  }

  std::uint32_t start_read(UsbOverlapped&) override { return start(false); }
  std::uint32_t start_write(UsbOverlapped& transfer) override {
    if (!device_->gone) device_->heard.emplace_back(transfer.data, transfer.data + transfer.size);
    return start(true);
  }

  bool has_ended(UsbOverlapped& transfer, int) override {
    transfer.status = device_->gone ? std::uint32_t{USB_ERROR_GONE}
                      : writes_     ? device_->write_code
                                    : std::exchange(device_->read_code, 0U);
    if (transfer.status != 0) return true;
    if (writes_) return !(held_ && device_->busy);
    if (device_->says.empty()) return false;
    const Bytes block = device_->says.front();
    device_->says.pop_front();
    transfer.transferred = static_cast<std::uint32_t>(std::min<std::size_t>(block.size(), 4));
    std::copy_n(block.begin(), transfer.transferred, transfer.data);
    return true;
  }

 private:
  std::uint32_t start(bool write) {
    writes_ = write;
    held_ = device_->busy;
    return device_->gone ? USB_ERROR_GONE : USB_PENDING;
  }
  std::shared_ptr<FakeDevice> device_;
  bool writes_ = false, held_ = false;
};

class FakeUsb final : public UsbDriver {
 public:
  FakeUsb() { headless_usb_driver = this; }
  ~FakeUsb() override { headless_usb_driver = nullptr; }

  std::shared_ptr<FakeDevice> plug() {
    devices.push_back(std::make_shared<FakeDevice>());
    return devices.back();
  }
  void pull(const std::shared_ptr<FakeDevice>& device) {
    device->gone = true;
    devices.erase(std::find(devices.begin(), devices.end(), device));
  }

  std::unique_ptr<UsbDeviceList> list(const UsbClassGuid& guid) override {
    ++searches;
    class_first = guid.a;
    auto list = std::make_unique<UsbDeviceList>();
    for (std::size_t i = 0; i < devices.size(); ++i) list->paths.push_back(std::to_string(i));
    return list;
  }
  std::unique_ptr<UsbFile> open(const std::string& path) override {
    opened.push_back(path);
    return std::make_unique<FakeFile>(devices[path.back() - '0']);
  }

  std::vector<std::shared_ptr<FakeDevice>> devices;
  std::vector<std::string> opened;
  int searches = 0;
  std::uint32_t class_first = 0;
};
