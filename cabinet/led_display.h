// The LED board: it receives six-byte commands and shows a number, steady or blinking. It knows
// nothing of pseudo-terminals.
#pragma once

#include <string>

struct LedDisplay {
  bool powered = true;
  bool deaf = false;  // ignores commands and sends nothing
  int value = -1;     // the number shown; -1: none yet
  bool blink = false;
  long types = 0;      // how often it was asked for its type
  long malformed = 0;  // bytes outside of any command
  std::string received;
  std::string to_host;  // bytes for the line; the caller takes them
};

// Power off and on: it shows nothing until the next command.
void led_display_power(LedDisplay& display, bool on);

// Takes bytes from the host.
void led_display_receive(LedDisplay& display, const std::string& bytes);

// What the display shows: the number, with a * while it blinks, or "dark".
std::string led_display_text(const LedDisplay& display);
