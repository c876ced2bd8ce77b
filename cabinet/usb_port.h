// The socket that simulates the USB port and its driver. The game opens it once for each handle. A
// packet makes a request or starts a transfer, and a packet of the same kind ends it.
#pragma once

#include <poll.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cabinet/usb_watchdog.h"

struct UsbFile {
  int socket;
  int endpoint;         // that it was bound to; 0: none
  std::size_t reading;  // bytes that its read waits for; 0: no read
};

struct UsbPort {
  UsbWatchdog device;
  std::string path;   // the socket; empty: there is no USB port
  int listener = -1;  // open while a device is plugged in
  std::vector<UsbFile> files;
};

// Makes the socket, in the caller's folder. Returns an error text, empty on success.
std::string usb_port_open(UsbPort& port, const std::string& folder);
void usb_port_close(UsbPort& port);

// Pulls the device, or plugs it in. Returns an error text, empty on success.
std::string usb_port_plug(UsbPort& port, bool plugged);

// 1 while both endpoints are bound.
bool usb_port_is_open(const UsbPort& port);

// Adds the sockets to poll.
void usb_port_watch(const UsbPort& port, std::vector<pollfd>& files);

// Takes packets that came and answers those that wait. Doesn't wait.
void usb_port_exchange(UsbPort& port, std::int64_t now_ms);
