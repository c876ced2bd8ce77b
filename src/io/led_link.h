// The LED board's port and its six-byte commands. LED thread; start-up before it exists.
#pragma once

#include <cstdint>

struct SerialPort;

struct LedLink {
  SerialPort* port;  // null: none open
  bool active;       // a board answered: commands go out only while this is set
};

// Searches "COM1" to "COM16" for a port on which anything answers the type command. Ports that are
// held by others, the I/O board's among them, are passed over, and so is one that speaks without
// being asked while no I/O board is known, which takes a second.
void led_link_open(LedLink& link);
void led_link_close(LedLink& link);

// Tells the board its type. 0 if it answered within 10 ms of the last byte, with whatever text.
// Without a port, as with one that has gone, the command can't be written.
int led_set_type(LedLink& link);
void led_send_value(LedLink& link, std::int32_t value);
void led_send_blink(LedLink& link, std::int32_t on);

// Drops what has arrived.
void led_drain(LedLink& link);
