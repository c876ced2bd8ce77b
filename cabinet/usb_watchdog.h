// The USB watchdog: words in and out, and the time that it does without food. It knows nothing of
// sockets.
#pragma once

#include <cstdint>
#include <string>

struct UsbWatchdog {
  bool plugged = true;
  bool configured = false;      // a host has chosen its configuration
  bool resets_machine = false;  // a bite ends the game and starts it again
  bool bit = false;             // it has bitten just now; the caller takes it
  bool reset_seen = false;      // told once a second until the host says that it heard
  std::int64_t tell_at_ms = 0;  // when next
  std::int64_t bite_at_ms = 0;  // 0: it was not fed yet
  int allowance = 0;            // seconds, of the last food
  int last = 0;                 // word from the host
  long fed = 0, words = 0, bites = 0;
  long malformed = 0;   // bytes and requests that mean nothing
  std::string word;     // bytes of a word that isn't whole yet
  std::string to_host;  // bytes that the host has yet to read
};

// Pulls it, or plugs it in. It lives on the PC's power: all that it knew is gone.
void usb_watchdog_plug(UsbWatchdog& device, bool plugged);

// A host has chosen its configuration, or has reset it.
void usb_watchdog_configure(UsbWatchdog& device);

// Takes the bytes of a write.
void usb_watchdog_receive(UsbWatchdog& device, const std::string& bytes, std::int64_t now_ms);

// Says a word.
void usb_watchdog_say(UsbWatchdog& device, int word);

// Lets time pass.
void usb_watchdog_advance(UsbWatchdog& device, std::int64_t now_ms);

// What one would like to know of it, in a few words.
std::string usb_watchdog_text(const UsbWatchdog& device);
