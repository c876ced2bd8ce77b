// The external USB watchdog, which restarts the machine unless it is fed.
//
// The game runs without the device too, and searches for it now and then. A lost word is not
// repeated: the next one is sent after 20 s.
#pragma once

#include <cstdint>

#include "io/watchdog_device.h"  // WatchdogResult
#include "platform/shared.h"     // Shared

enum WatchdogWord : std::uint16_t {
  WATCHDOG_WORD_LONG = 0xB03C,         // feeds it while the game runs
  WATCHDOG_WORD_SHORT = 0xB008,        // the operator's test: it resets after seconds
  WATCHDOG_WORD_REBOOT = 0xB0FF,       // before an ordered reboot
  WATCHDOG_WORD_STATUS = 0xC040,       // asks for its status, and clears it
  WATCHDOG_WORD_ACKNOWLEDGE = 0xC080,  // the status has arrived
  WATCHDOG_WORD_RESET_HEARD = 0xC081,  // the status with a reset has arrived
};

struct WatchdogFeed {           // game thread
  Shared<std::int32_t> paused;  // the operator's test stops the heartbeat
  Shared<std::int64_t>
      next_time;  // ms of the game clock: the next heartbeat, or search for a device
};
extern WatchdogFeed watchdog_feed;

void watchdog_boot();         // start-up, before the game thread: looks for the device
void watchdog_heartbeat();    // game thread, each tick
void watchdog_reboot_word();  // before an ordered reboot

// Sends a word if a device is open and took the last one. Never waits. Game thread.
WatchdogResult watchdog_send_word(std::uint16_t word);

// Closes the device and forgets everything, as at process start.
void watchdog_reset();
