#include "io/led_board.h"

#include <algorithm>
#include <atomic>
#include <memory>

#include "books/prefs.h"
#include "frame/game_clock.h"  // is_due
#include "frame/sides.h"
#include "io/led_link.h"
#include "io/led_value.h"
#include "io/log.h"
#include "platform/clock.h"
#include "platform/shared.h"
#include "platform/thread.h"
#include "platform/usb_reset.h"
#include "playfield/paytable.h"   // jackpot_value
#include "playfield/playfield.h"  // station_idle

namespace {

constexpr std::int64_t CHECK_EVERY_MS = 30000;
constexpr int RESTART_MS = 2000;  // the adapter comes back within it
constexpr int JOIN_BOUND_MS = 3000;
constexpr std::uint16_t ADAPTER_VENDOR = 0xC1CA;
constexpr std::uint16_t ADAPTER_PRODUCT = 0x0004;

enum Wanted : std::uint32_t { WANT_TYPE = 1, WANT_VALUE = 2, WANT_BLINK = 4 };

struct LedBoard {
  LedLink link;  // LED thread; start-up before it exists
  Shared<std::int32_t> active;
  std::atomic<std::uint32_t> wanted;  // set after the words, cleared before they are read
  std::atomic<std::int32_t> value, blink;
  std::int64_t next_check;  // ms of the game clock; LED thread
};
constinit LedBoard board{};

std::shared_ptr<Thread>& led_thread_handle() {
  static std::shared_ptr<Thread> instance;
  return instance;
}

void find_board() {
  led_link_open(board.link);
  board.active = board.link.active ? 1 : 0;
}

void send_wanted() {
  const std::uint32_t wanted = board.wanted.exchange(0);
  if ((wanted & WANT_TYPE) != 0) led_set_type(board.link);
  if ((wanted & WANT_VALUE) != 0) led_send_value(board.link, board.value);
  if ((wanted & WANT_BLINK) != 0) led_send_blink(board.link, board.blink);
}

// Has the effect of pulling the board's adapter and plugging it in.
void led_restart_usb() {
  usb_reset(ADAPTER_VENDOR, ADAPTER_PRODUCT);
}

// A sleep that ends when the thread has to.
void wait(const Thread& self, int ms) {
  for (int i = 0; i < ms && !thread_stop_requested(self); ++i) clock_sleep_ms(1);
}

void restart(const Thread& self) {
  log_message(io_log, "Restarting LED board");
  led_restart_usb();
  wait(self, RESTART_MS);
  led_link_close(board.link);
  board.link.active = false;
  board.active = 0;
  log_message(io_log, "LED is INACTIVE");
  find_board();
  led_update();
}

// While frogs are in play the board is left alone until the next check.
void check(const Thread& self) {
  if (!is_due(board.next_check)) return;
  if (station_idle(SIDE_LEFT) && station_idle(SIDE_RIGHT)) {
    led_drain(board.link);
    if (led_set_type(board.link) != 0) restart(self);
  }
  board.next_check = now_ms() + CHECK_EVERY_MS;
}

void led_thread(const Thread& self, void* /*context*/) {
  while (!thread_stop_requested(self)) {
    check(self);
    send_wanted();
    clock_sleep_ms(1);
  }
}

void want(std::uint32_t what) {
  board.wanted |= what;
}

}  // namespace

void led_open() {
  board.next_check = 0;
  find_board();
}

void led_start() {
  led_thread_handle() = thread_start("led", THREAD_PRIORITY_NORMAL, led_thread, nullptr);
}

bool led_stop() {
  std::shared_ptr<Thread>& thread = led_thread_handle();
  if (thread == nullptr) return true;
  thread_request_stop(*thread);
  if (!thread_join(*thread, JOIN_BOUND_MS)) return false;
  thread = nullptr;
  return true;
}

void led_close() {
  if (!led_stop()) return;
  led_link_close(board.link);
  board.link.active = false;
  board.active = 0;
  log_message(io_log, "LED is INACTIVE");
}

bool led_active() {
  return board.active != 0;
}

void led_set_value(std::int32_t value) {
  board.value = std::clamp(value, 0, 65535);
  want(WANT_VALUE);
}

void led_set_blink(int on) {
  board.blink = std::clamp(on, 0, 255);
  want(WANT_BLINK);
}

void led_update() {
  const bool shown = pref_on(PREF_TICKET_USE) && !pref_on(PREF_FIXED_TICKET);
  want(WANT_TYPE);
  led_set_value(shown ? jackpot_value() : 0);
  led_set_blink(0);
}
