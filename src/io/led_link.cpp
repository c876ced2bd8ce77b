#include "io/led_link.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "io/jamma.h"  // jamma_port
#include "io/log.h"
#include "platform/clock.h"
#include "platform/serial.h"

namespace {

constexpr int BAUD = 9600;
constexpr int PORT_COUNT = 16;
constexpr int ANSWER_MS = 10;
constexpr int LISTEN_MS = 1200, LISTEN_STEP_MS = 50;  // an I/O board says something every second
constexpr std::int32_t DISPLAY_TYPE = 2;
constexpr int COMMAND_SIZE = 6;

enum LedCommand : std::uint8_t { LED_VALUE = 0x55, LED_TYPE = 0x57, LED_BLINK = 0x59 };

bool send(const LedLink& link, LedCommand command, std::int32_t operand) {
  if (link.port == nullptr) {
    errno = EBADF;
    return false;
  }
  const std::uint8_t bytes[COMMAND_SIZE] = {
      0x55, command, static_cast<std::uint8_t>(operand >> 8), static_cast<std::uint8_t>(operand),
      0xAA, 0};
  return serial_write(link.port, bytes, sizeof bytes) == static_cast<int>(sizeof bytes);
}

unsigned last_error() {
  return static_cast<unsigned>(errno);
}

// The I/O board's port is left alone, also while a pulled board's port is closed.
SerialPort* open_port(int n, const char* name, int* error) {
  *error = EBUSY;
  return n - 1 == jamma_port() ? nullptr : serial_open(name, error);
}

// An I/O board that wasn't found may be late, and it speaks without being asked. An LED board
// doesn't.
bool is_a_late_io_board(const LedLink& link) {
  if (jamma_port() != NO_PORT) return false;
  char bytes[32];
  for (int waited_ms = 0; waited_ms < LISTEN_MS; waited_ms += LISTEN_STEP_MS) {
    clock_sleep_ms(LISTEN_STEP_MS);
    if (serial_read(link.port, bytes, sizeof bytes) > 0) return true;
  }
  return false;
}

bool try_port(LedLink& link, int n) {
  char name[8];
  std::snprintf(name, sizeof name, "COM%d", n);
  log_message(io_log, "Attempting to open LED port %s", name);
  int error = 0;
  link.port = open_port(n, name, &error);
  if (link.port == nullptr) {
    log_error(io_log, "Open LED port failed with code 0x%x", static_cast<unsigned>(error));
  }
  log_message(io_log, "LED handle is 0x%zx", reinterpret_cast<std::uintptr_t>(link.port));
  if (link.port == nullptr) return false;
  if (serial_configure(link.port, BAUD, SERIAL_LINES_OFF) && led_set_type(link) == 0 &&
      !is_a_late_io_board(link)) {
    return true;
  }
  led_link_close(link);
  return false;
}

}  // namespace

void led_link_open(LedLink& link) {
  link = {};
  for (int n = 1; n <= PORT_COUNT; ++n) {
    if (!try_port(link, n)) continue;
    link.active = true;
    log_message(io_log, "LED is ACTIVE");
    return;
  }
}

void led_link_close(LedLink& link) {
  log_message(io_log, "Closing LED handle");
  if (link.port == nullptr) return;
  serial_close(link.port);
  link.port = nullptr;
}

int led_set_type(LedLink& link) {
  log_message(io_log, "Attempting to set LED type %d", DISPLAY_TYPE);
  if (!send(link, LED_TYPE, DISPLAY_TYPE)) {
    log_error(io_log, "Set LED type (write) failed with code 0x%x", last_error());
    return -1;
  }
  serial_drain(link.port, COMMAND_SIZE);
  clock_sleep_ms(ANSWER_MS);
  char text[33] = {};
  const int count = serial_read(link.port, text, sizeof text - 1);
  if (count < 0) {
    log_error(io_log, "Set LED type (read) failed with code 0x%x", last_error());
    return -1;
  }
  log_message(io_log, "LED board returned %s", text);
  if (count == 0) log_error(io_log, "Bad or no response from LED board");
  return count > 0 ? 0 : -1;
}

void led_send_value(LedLink& link, std::int32_t value) {
  if (!link.active) return;
  log_message(io_log, "Attempting to set LED value %d", value);
  if (!send(link, LED_VALUE, value)) {
    log_error(io_log, "Set LED value failed with code 0x%x", last_error());
  }
}

void led_send_blink(LedLink& link, std::int32_t on) {
  if (link.active) send(link, LED_BLINK, on);
}

void led_drain(LedLink& link) {
  if (link.port == nullptr) return;
  char bytes[32];
  serial_read(link.port, bytes, sizeof bytes);
}
