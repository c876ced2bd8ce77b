// The external USB watchdog, which restarts the machine unless it is fed.
//
// A missing device is a state like any other: the game runs, and a search is made now and then. A
// word that is lost is not said again, for the next one is 20 s away.
#pragma once

#include <cstdint>

#include "io/watchdog_device.h"  // WatchdogResult
#include "platform/shared.h"     // Shared

enum WatchdogWord : std::uint16_t {
  WATCHDOG_WORD_LONG = 0xB03C,         // fed while the game runs
  WATCHDOG_WORD_SHORT = 0xB008,        // the operator's test: seconds are left
  WATCHDOG_WORD_REBOOT = 0xB0FF,       // ahead of an ordered reboot
  WATCHDOG_WORD_STATUS = 0xC040,       // asks for its status, and that it forget the last
  WATCHDOG_WORD_ACKNOWLEDGE = 0xC080,  // the status was heard
  WATCHDOG_WORD_RESET_HEARD = 0xC081,  // and that there has been a reset
};

struct WatchdogFeed {           // game thread
  Shared<std::int32_t> paused;  // the operator's test holds the heartbeat back
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
