// The USB watchdog's device and its two endpoints, as words in and out. Nothing here waits.
// Start-up, then the game thread. The exchange that gives the words a meaning: io/watchdog_link.h.
#pragma once

#include <cstdint>

enum WatchdogResult {
  WATCHDOG_OK = 0,
  WATCHDOG_NOTHING = 1,  // read: no word now; write: the word is dropped
  WATCHDOG_TROUBLE = 2,  // read: the device was reset; write: it has gone
};

// Looks for the device and binds both endpoints; what an earlier try left open is closed first.
// True when they are bound.
bool watchdog_open_device();
void watchdog_close_device();

// Has a transfer ended because the device isn't there any more?
bool watchdog_device_gone();

// Sends a word if the last one has been taken.
WatchdogResult watchdog_write_word(std::uint16_t word);

// The next word that the device has sent.
WatchdogResult watchdog_read_word(std::uint16_t& word);
