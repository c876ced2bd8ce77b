// The USB watchdog: words in and out, and the time that it waits between feedings. It knows nothing
// of sockets.
#pragma once

#include <cstdint>
#include <string>

struct UsbWatchdog {
  bool plugged = true;
  bool configured = false;      // a host has set its configuration
  bool resets_machine = false;  // a bite ends the game and starts it again
  bool bit = false;             // it has just bitten; the caller clears this
  bool reset_seen = false;      // reported once a second until the host acknowledges it
  std::int64_t tell_at_ms = 0;  // when it reports next
  std::int64_t bite_at_ms = 0;  // 0: not fed yet
  int allowance = 0;            // seconds, from the last feeding
  int last = 0;                 // word from the host
  long fed = 0, words = 0, bites = 0;
  long malformed = 0;   // invalid bytes and requests
  std::string word;     // an incomplete word
  std::string to_host;  // bytes that the host has not read yet
};

// Pulls it, or plugs it in. It runs on the PC's power, so it forgets everything.
void usb_watchdog_plug(UsbWatchdog& device, bool plugged);

// A host has set its configuration, or has reset it.
void usb_watchdog_configure(UsbWatchdog& device);

// Takes the bytes of a write.
void usb_watchdog_receive(UsbWatchdog& device, const std::string& bytes, std::int64_t now_ms);

inline constexpr int USB_WATCHDOG_ASK = 0xD000;  // the host answers it with a word

// Sends a word.
void usb_watchdog_say(UsbWatchdog& device, int word);

// Advances its clock.
void usb_watchdog_advance(UsbWatchdog& device, std::int64_t now_ms);

// Its state in a few words.
std::string usb_watchdog_text(const UsbWatchdog& device);
