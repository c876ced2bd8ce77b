// The LED board's port and its six-byte commands. LED thread; start-up before it exists.
#pragma once

#include <cstdint>

struct SerialPort;

struct LedLink {
  SerialPort* port;  // null: none open
  bool active;       // a board answered: commands go out only while this is set
};

// Searches "COM1" to "COM16" for a port on which anything answers the type command. Ports in use
// elsewhere are skipped, and so is the I/O board's. While no I/O board is known, a port that speaks
// without being asked is skipped too, which takes a second.
void led_link_open(LedLink& link);
void led_link_close(LedLink& link);

// Sends the board its type. 0 if it sent any text within 10 ms of the last byte. Fails without a
// port, and with one that has gone.
int led_set_type(LedLink& link);
void led_send_value(LedLink& link, std::int32_t value);
void led_send_blink(LedLink& link, std::int32_t on);

// Drops received bytes.
void led_drain(LedLink& link);
