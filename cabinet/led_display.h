// The LED board: six-byte commands in, a number that stands or blinks. It knows nothing of
// pseudo-terminals.
#pragma once

#include <string>

struct LedDisplay {
  bool powered = true;
  bool deaf = false;  // it takes and says nothing
  int value = -1;     // what it shows; -1: nothing yet
  bool blink = false;
  long types = 0;      // times that it was asked what it is
  long malformed = 0;  // bytes that were no part of a command
  std::string received;
  std::string to_host;  // bytes for the line; the caller takes them
};

// Takes it off its power, and puts it back: it shows nothing until it is told.
void led_display_power(LedDisplay& display, bool on);

// Takes bytes from the host.
void led_display_receive(LedDisplay& display, const std::string& bytes);

// What one would read on it: the number, with a * while it blinks, or "dark".
std::string led_display_text(const LedDisplay& display);
