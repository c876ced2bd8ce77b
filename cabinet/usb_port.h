// The socket that stands for the USB port and its driver. The game opens it once for each handle;
// a packet asks for something or starts a transfer, and a packet of the same kind ends that.
#pragma once

#include <poll.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cabinet/usb_watchdog.h"

struct UsbFile {
  int socket;
  int endpoint;         // it was bound to; 0: none
  std::size_t reading;  // bytes that it waits for; 0: it doesn't
};

struct UsbPort {
  UsbWatchdog device;
  std::string path;   // the socket; empty: there is no USB port
  int listener = -1;  // while a device is plugged in
  std::vector<UsbFile> files;
};

// Makes the socket, in a folder of the caller's. Returns an error text, empty if all went well.
std::string usb_port_open(UsbPort& port, const std::string& folder);
void usb_port_close(UsbPort& port);

// Pulls the device, or plugs it in. Returns an error text, empty if all went well.
std::string usb_port_plug(UsbPort& port, bool plugged);

// 1 while both endpoints are bound.
bool usb_port_is_open(const UsbPort& port);

// Adds what a poll has to look at.
void usb_port_watch(const UsbPort& port, std::vector<pollfd>& files);

// Takes what came and gives what is waited for. Doesn't wait.
void usb_port_exchange(UsbPort& port, std::int64_t now_ms);
