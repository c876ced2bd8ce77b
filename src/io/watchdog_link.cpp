#include "io/watchdog_link.h"

#include "books/audits.h"
#include "books/journal.h"
#include "frame/game_clock.h"  // is_due, now_ms
#include "frame/game_mode.h"

namespace {

constexpr std::int64_t FEED_EVERY_MS = 20'000;
constexpr std::int64_t SEARCH_EVERY_MS = 300'000;

struct WatchdogLink {
  bool open;           // both endpoints are bound
  bool reset_counted;  // "Watchdog Count" was raised in this run
};
constinit WatchdogLink watchdog_link{};

void feed() {
  watchdog_feed.next_time = now_ms() + FEED_EVERY_MS;
  if (watchdog_device_gone()) {
    watchdog_link.open = false;
    watchdog_close_device();
    return;
  }
  watchdog_send_word(WATCHDOG_WORD_LONG);
}

void search() {
  watchdog_link.open = watchdog_open_device();
  if (!watchdog_link.open) {
    watchdog_feed.next_time = now_ms() + SEARCH_EVERY_MS;
    return;
  }
  watchdog_feed.next_time = now_ms();  // it is fed in the next tick
  watchdog_send_word(WATCHDOG_WORD_STATUS);
}

// Resets in operator mode are intended and not counted.
void count_reset() {
  if (watchdog_link.reset_counted || game_mode == MODE_OPERATOR) return;
  audit_add(AUDIT_WATCHDOG_COUNT, 1);
  journal_put(JOURNAL_WATCHDOG);
  audits_save();
  watchdog_link.reset_counted = true;
}

void answer(std::uint16_t word) {
  switch (word & 0xFF00) {
    case 0xC000:  // its status; bit 0: it has reset the machine
      if ((word & 1) == 0) {
        watchdog_send_word(WATCHDOG_WORD_STATUS);
      } else {
        count_reset();
        watchdog_send_word(WATCHDOG_WORD_RESET_HEARD);
      }
      break;
    case 0xD000:
      watchdog_send_word(WATCHDOG_WORD_ACKNOWLEDGE);
      break;
    default:  // 0xF0nn: a byte of information that is not used here
      break;
  }
}

}  // namespace

constinit WatchdogFeed watchdog_feed{};

void watchdog_boot() {
  watchdog_link.open = watchdog_open_device();
  watchdog_send_word(WATCHDOG_WORD_ACKNOWLEDGE);
}

void watchdog_heartbeat() {
  if (is_due(watchdog_feed.next_time) && watchdog_feed.paused == 0) {
    if (watchdog_link.open) {
      feed();
    } else {
      search();
    }
  }
  std::uint16_t word = 0;
  while (watchdog_link.open && watchdog_read_word(word) == WATCHDOG_OK) answer(word);
}

void watchdog_reboot_word() {
  watchdog_send_word(WATCHDOG_WORD_REBOOT);
}

WatchdogResult watchdog_send_word(std::uint16_t word) {
  return watchdog_link.open ? watchdog_write_word(word) : WATCHDOG_NOTHING;
}

void watchdog_reset() {
  watchdog_close_device();
  watchdog_link = {};
  watchdog_feed.paused = 0;
  watchdog_feed.next_time = 0;
}
