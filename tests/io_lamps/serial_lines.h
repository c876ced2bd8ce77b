// Control lines of a pseudo-terminal, which has none: an ioctl of the test program's own stands in
// for the system's and notes them.
#pragma once

#include <atomic>

struct SerialLinesSeen {
  std::atomic<int> raised, lowered;  // TIOCM_ bits of the last order to raise or to lower lines
  void (*left)();  // if set, bytes wait to be sent when it is asked first, and this is called when
                   // it is asked again: they have left
  bool asked;
};
extern SerialLinesSeen serial_lines_seen;
