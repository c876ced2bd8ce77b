// The numeric LED display: a small board of its own on a serial port.
//
// All bytes are sent by one thread. What the game wants shown is noted and goes out within about a
// millisecond, so nobody waits for the board; only the latest value and blink count. See also
// io/led_value.h, the door that lower floors use.
#pragma once

#include <cstdint>

// Searches the ports for a board. Start-up, behind the I/O board's search. Takes some 17 ms for
// each port on which nobody answers.
void led_open();
// Starts the thread that feeds the board, looks after it every 30 s, and searches anew when it has
// gone. Start-up, when the field stands.
void led_start();
// Ends the thread. False if it doesn't end in three seconds: the port is its own then. Shutdown.
bool led_stop();
// Closes the port, behind led_stop or with it. Shutdown.
void led_close();

// The number on the display, held to 0 to 65535. Any thread; dropped while there is no board.
void led_set_value(std::int32_t value);

// 1 while a board answers.
bool led_active();
