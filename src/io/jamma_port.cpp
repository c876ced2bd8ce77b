// Which of the serial ports the board sits on.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "io/jamma_link.h"
#include "io/log.h"
#include "platform/clock.h"

namespace {

constexpr int BAUD = 115200;
constexpr int OPEN_TRIES = 10, ASK_TRIES = 10, JAMMA_OPEN_TRIES = 11;
constexpr int RETRY_MS = 10;

constexpr const char* PORT_NAMES[NO_PORT] = {
    "COM1", "COM2",  "COM3",  "COM4",  "COM5",  "COM6",  "COM7",  "COM8",
    "COM9", "COM10", "COM11", "COM12", "COM13", "COM14", "COM15", "COM16",
};

// The board's checksum mode is not known yet. A board that expects checksums gets them; another one
// ignores two digits between frames.
constexpr char RESET_CONFIG[] = "\nC0001\r1B";
constexpr char CHECKSUMS_OFF[] = "\nU00\rCC";
constexpr char ASK_VERSION[] = "\nv\r8D";
constexpr std::size_t ASK_VERSION_BARE = 3;  // without its checksum

SerialPort* open_port(const char* name) {
  for (int i = 0; i < OPEN_TRIES; ++i) {
    log_message(io_log, "Attempting to open port %s", name);
    int error = 0;
    if (SerialPort* port = serial_open(name, &error)) return port;
    log_error(io_log, "Open port failed with code 0x%x", static_cast<unsigned>(error));
    clock_sleep_ms(RETRY_MS);
  }
  return nullptr;
}

bool board_answers(SerialPort* port) {
  serial_purge(port);
  serial_write(port, RESET_CONFIG, std::strlen(RESET_CONFIG));
  serial_write(port, CHECKSUMS_OFF, std::strlen(CHECKSUMS_OFF));
  for (int i = 0; i < ASK_TRIES; ++i) {
    serial_write(port, ASK_VERSION, std::strlen(ASK_VERSION));
    clock_sleep_ms(RETRY_MS);
    char answer[256];
    const int count = serial_read(port, answer, sizeof answer);
    if (count == 7 && answer[0] == '\n' && answer[1] == 'v' && answer[6] == '\r') return true;
    if (count < 0) serial_write(port, ASK_VERSION, ASK_VERSION_BARE);
  }
  return false;
}

}  // namespace

std::int32_t jamma_find_port(const Thread* searcher) {
  for (std::int32_t index = 0; index < NO_PORT; ++index) {
    if (searcher && thread_stop_requested(*searcher)) break;
    SerialPort* port = open_port(PORT_NAMES[index]);
    if (!port) continue;
    const bool found = serial_configure(port, BAUD) && board_answers(port);
    serial_close(port);
    if (found) return index;
  }
  return NO_PORT;
}

std::int32_t jamma_open(JammaLink& link) {
  for (int i = 0; i < JAMMA_OPEN_TRIES && !link.port; ++i) {
    if (i > 0) clock_sleep_ms(RETRY_MS);
    link.which_port = jamma_find_port();
    std::printf("JAMMA: jamma_open: whichPort = %d\n", link.which_port.get());
    if (link.which_port < 0 || link.which_port >= NO_PORT) return JAMMA_ERR_PORT_OPEN;
    int error = 0;
    link.port = serial_open(PORT_NAMES[link.which_port], &error);
  }
  if (!link.port) return JAMMA_ERR_PORT_OPEN;

  std::int32_t result = 0;
  if (!serial_configure(link.port, BAUD)) {
    result = JAMMA_ERR_PORT_SET;
  } else {
    serial_purge(link.port);
    link.alive = 1;  // before the reader looks at it: a link that opens starts without an error
    if (!jamma_start_threads(link)) result = JAMMA_ERR_THREAD;
  }
  if (result < 0) jamma_close(link);
  return result;
}
