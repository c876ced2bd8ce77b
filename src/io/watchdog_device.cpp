#include "io/watchdog_device.h"

#include <algorithm>
#include <cstddef>

#include "io/usb/usb_io.h"
#include "io/watchdog_words.h"

namespace {

constexpr UsbClassGuid DEVICE_CLASS = {
    0x325DDF96, 0x938C, 0x11D3, {0x9E, 0x34, 0x00, 0x80, 0xC8, 0x27, 0x27, 0xF4}};
constexpr std::uint32_t VENDOR = 0x0C70, PRODUCT = 0x0774;
constexpr int MOST_DEVICES = 127;
constexpr std::uint8_t DESCRIPTOR_DEVICE = 1;
constexpr std::uint8_t READ_ENDPOINT = 0x81, WRITE_ENDPOINT = 0x02;
constexpr UsbSetConfiguration CONFIGURATION = {0, 1, 0, 0, 8};

constinit std::uint8_t read_data[WATCHDOG_WORD_BYTES]{}, write_data[WATCHDOG_WORD_BYTES]{};

CUsbIo usb_device;
CUsbIoPipe usb_read_pipe, usb_write_pipe;
constinit UsbTransferBuffer usb_read_buffer{0, 0, 0, read_data, sizeof read_data, {}};
constinit UsbTransferBuffer usb_write_buffer{0, 0, 0, write_data, sizeof write_data, {}};
constinit WatchdogDecoder decoder{};

bool is_watchdog() {
  std::uint8_t descriptor[18] = {};
  std::size_t size = sizeof descriptor;
  const std::uint32_t code =
      usb_device.get_device_descriptor(descriptor, size, 0, DESCRIPTOR_DEVICE, 0, 0);
  const int vendor = descriptor[8] | descriptor[9] << 8;
  const int product = descriptor[10] | descriptor[11] << 8;
  return code == USB_OK && size >= 12 && vendor == VENDOR && product == PRODUCT;
}

// Opens the watchdog and returns its index in the list, or -1.
int find(const UsbDeviceList& list) {
  for (int index = 0; index < MOST_DEVICES; ++index) {
    if (usb_device.open(index, &list, &DEVICE_CLASS) != USB_OK) return -1;
    if (is_watchdog()) return index;
    usb_device.close();
  }
  return -1;
}

// Drops the data of an earlier device.
void forget_transfers() {
  for (UsbTransferBuffer* buffer : {&usb_read_buffer, &usb_write_buffer}) {
    buffer->status = USB_OK;
    buffer->bytes_transferred = 0;
  }
  decoder = {};
}

// Starts the next read and hands out the bytes of the last. False if there are none.
bool take_block(std::uint8_t (&block)[WATCHDOG_WORD_BYTES]) {
  const bool whole = usb_read_buffer.bytes_transferred == WATCHDOG_WORD_BYTES;
  std::copy_n(read_data, WATCHDOG_WORD_BYTES, block);
  usb_read_buffer.bytes_to_transfer = WATCHDOG_WORD_BYTES;
  usb_read_pipe.submit_read(usb_read_buffer);
  return whole;
}

}  // namespace

bool watchdog_open_device() {
  watchdog_close_device();
  const auto list = CUsbIo::create_device_list(DEVICE_CLASS);
  if (list == nullptr) return false;
  const int index = find(*list);
  if (index < 0) return false;
  forget_transfers();
  return usb_device.set_configuration(CONFIGURATION) == USB_OK &&
         usb_read_pipe.bind(index, READ_ENDPOINT, list.get(), &DEVICE_CLASS) == USB_OK &&
         usb_write_pipe.bind(index, WRITE_ENDPOINT, list.get(), &DEVICE_CLASS) == USB_OK;
}

void watchdog_close_device() {
  usb_read_pipe.close();
  usb_write_pipe.close();
  usb_device.close();
}

bool watchdog_device_gone() {
  return usb_write_pipe.wait_for_completion(usb_write_buffer, 0) == USB_ERROR_GONE ||
         usb_read_pipe.wait_for_completion(usb_read_buffer, 0) == USB_ERROR_GONE;
}

WatchdogResult watchdog_write_word(std::uint16_t word) {
  const std::uint32_t last = usb_write_pipe.wait_for_completion(usb_write_buffer, 0);
  if (last != USB_OK) return last == USB_ERROR_GONE ? WATCHDOG_TROUBLE : WATCHDOG_NOTHING;
  watchdog_encode(word, write_data);
  usb_write_buffer.bytes_to_transfer = WATCHDOG_WORD_BYTES;
  usb_write_pipe.submit_write(usb_write_buffer);
  return WATCHDOG_OK;
}

WatchdogResult watchdog_read_word(std::uint16_t& word) {
  while (!watchdog_decode(decoder, word)) {
    const std::uint32_t last = usb_read_pipe.wait_for_completion(usb_read_buffer, 0);
    if (last == USB_ERROR_NEEDS_RESET) {
      usb_device.reset_device();
      usb_read_buffer.status = USB_OK;  // reading begins again
      return WATCHDOG_TROUBLE;
    }
    if (last != USB_OK) return WATCHDOG_NOTHING;
    std::uint8_t block[WATCHDOG_WORD_BYTES];
    if (!take_block(block)) return WATCHDOG_NOTHING;
    for (const std::uint8_t byte : block) {
      if (!watchdog_ring_put(decoder, byte)) return WATCHDOG_NOTHING;
    }
  }
  return WATCHDOG_OK;
}
