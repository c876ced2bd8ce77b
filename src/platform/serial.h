// Serial ports, raw 8N1 without flow control, opened by name "COM1" to "COM16".
#pragma once

#include <cstddef>

struct SerialPort;

// Opens a port for this process only. Null if the name has no device, the device can't be opened,
// or another handle has it, even one of this process; `*error` is then the system's error number,
// never 0.
SerialPort* serial_open(const char* name, int* error);

// The lines DTR and RTS, kept on or off while the port is open.
enum SerialLines { SERIAL_LINES_OFF, SERIAL_LINES_ON };

// Sets speed (9600 or 115200 baud), framing and lines. False if the device refuses.
bool serial_configure(SerialPort* port, int baud, SerialLines lines = SERIAL_LINES_ON);

// Discards what has arrived and what was not sent yet.
void serial_purge(SerialPort* port);

// Waits until a byte has arrived, at most `timeout_ms` (-1: for ever). Returns 1 if there is
// something to read, 0 after the time or when woken, -1 if the port failed.
int serial_wait(SerialPort* port, int timeout_ms);

// Ends a `serial_wait` of another thread, or the next one if none is waiting.
void serial_wake(SerialPort* port);

// Reads what has arrived, without waiting. Returns the count, 0 if there is nothing, -1 if the port
// failed.
int serial_read(SerialPort* port, void* data, std::size_t size);

// Writes all bytes. Returns the count, or -1 if the port failed or didn't accept them within 100
// ms.
int serial_write(SerialPort* port, const void* data, std::size_t size);

// Waits until the last `bytes` written have been on the line: at most 100 ms until the system has
// passed them on, then as long as a device needs to send them.
void serial_drain(SerialPort* port, int bytes);

void serial_close(SerialPort* port);
