// What a serial adapter would be told and would tell about its lines, on a pseudo-terminal, which
// has none: the test program's own `ioctl` stands before the system's.
#pragma once

#include <atomic>

struct SerialLinesSeen {
  std::atomic<int> raised, lowered;  // TIOCM_ bits of the last order to raise or to lower lines
  void (*left)();  // if set, bytes wait to be sent when it is asked first, and this is called when
                   // it is asked again: they have left
  bool asked;
};
extern SerialLinesSeen serial_lines_seen;
