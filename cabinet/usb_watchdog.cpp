#include "cabinet/usb_watchdog.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int WORD_BYTES = 4;
constexpr std::int64_t TELL_EVERY_MS = 1000;
constexpr int STATUS_RESET = 0xC001, RESET_HEARD = 0xC081;

void hear(UsbWatchdog& device, int word, std::int64_t now_ms) {
  ++device.words;
  device.last = word;
  if (word >> 8 == 0xB0) {
    ++device.fed;
    device.allowance = word & 0xFF;
    device.bite_at_ms = now_ms + device.allowance * 1000;
  } else if (word == RESET_HEARD) {
    device.reset_seen = false;
  }
}

int value_of(const std::string& bytes) {
  int word = 0;
  for (const char byte : bytes) word = word << 4 | (byte & 0x0F);
  return word;
}

}  // namespace

void usb_watchdog_plug(UsbWatchdog& device, bool plugged) {
  device.plugged = plugged;
  device.configured = false;
  device.reset_seen = false;
  device.bite_at_ms = 0;
  device.word.clear();
  device.to_host.clear();
}

void usb_watchdog_configure(UsbWatchdog& device) {
  device.configured = true;
  device.tell_at_ms = 0;
  device.word.clear();
  device.to_host.clear();
}

void usb_watchdog_receive(UsbWatchdog& device, const std::string& bytes, std::int64_t now_ms) {
  for (const char byte : bytes) {
    const int tag = static_cast<unsigned char>(byte) >> 4;
    if (tag == 1) {
      device.malformed += static_cast<long>(device.word.size());
      device.word.clear();
    }
    if (tag != static_cast<int>(device.word.size()) + 1) {
      device.malformed += static_cast<long>(device.word.size()) + 1;
      device.word.clear();
      continue;
    }
    device.word += byte;
    if (static_cast<int>(device.word.size()) < WORD_BYTES) continue;
    hear(device, value_of(device.word), now_ms);
    device.word.clear();
  }
}

void usb_watchdog_say(UsbWatchdog& device, int word) {
  if (!device.configured) return;
  for (int i = 0; i < WORD_BYTES; ++i) {
    device.to_host += static_cast<char>((i + 1) << 4 | (word >> (12 - 4 * i) & 0x0F));
  }
}

void usb_watchdog_advance(UsbWatchdog& device, std::int64_t now_ms) {
  if (device.bite_at_ms != 0 && now_ms >= device.bite_at_ms) {
    device.bite_at_ms = 0;
    ++device.bites;
    device.bit = true;
    device.reset_seen = true;
    std::printf("the USB watchdog bites: it was not fed for %d s\n", device.allowance);
    std::fflush(stdout);
  }
  const bool heard_out = device.to_host.empty();
  if (device.reset_seen && device.configured && heard_out && now_ms >= device.tell_at_ms) {
    device.tell_at_ms = now_ms + TELL_EVERY_MS;
    usb_watchdog_say(device, STATUS_RESET);
  }
}

std::string usb_watchdog_text(const UsbWatchdog& device) {
  if (!device.plugged) return "unplugged";
  std::string text = device.bite_at_ms == 0 ? "not fed"
                                            : "fed " + std::to_string(device.fed) + " for " +
                                                  std::to_string(device.allowance) + " s";
  if (device.bites > 0) text += ", " + std::to_string(device.bites) + " bites";
  return text;
}
