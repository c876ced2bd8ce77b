// The numeric LED display: a separate board on a serial port.
//
// One thread sends all bytes. The game sets the value and the blinking, and the thread sends the
// latest of each within about a millisecond, so the game never waits for the board. Lower floors
// use io/led_value.h.
#pragma once

#include <cstdint>

// Searches the ports for a board. Start-up, after the I/O board's search. Takes about 17 ms for
// each port without an answer.
void led_open();
// Starts the thread that sends to the board, checks it every 30 s, and searches again when it has
// gone. Start-up, after the playfield.
void led_start();
// Ends the thread. False if it doesn't end in three seconds; it then keeps the port. Shutdown.
bool led_stop();
// Ends the thread, if it still runs, and closes the port. Shutdown.
void led_close();

// The number on the display, limited to 0 to 65535. Any thread; dropped while there is no board.
void led_set_value(std::int32_t value);

// 1 while a board answers.
bool led_active();
