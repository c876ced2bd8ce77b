#include "tests/io_lamps/serial_lines.h"

#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <cstdarg>

SerialLinesSeen serial_lines_seen{};

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (request == TIOCMBIS) serial_lines_seen.raised = *static_cast<int*>(argument);
  if (request == TIOCMBIC) serial_lines_seen.lowered = *static_cast<int*>(argument);
  if (request == TIOCOUTQ && serial_lines_seen.left != nullptr) {
    *static_cast<int*>(argument) = serial_lines_seen.asked ? 0 : 6;
    if (serial_lines_seen.asked) serial_lines_seen.left();
    serial_lines_seen.asked = true;
    return 0;
  }
  return static_cast<int>(syscall(SYS_ioctl, fd, request, argument));
}
