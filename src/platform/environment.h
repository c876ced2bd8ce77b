// The program's environment variables.
#pragma once

#include <string>

enum UsbIoKind { USBIO_NONE, USBIO_LIBUSB, USBIO_SOCKET };
enum SoundKind { SOUND_SDL, SOUND_NONE, SOUND_SOCKET };

struct Environment {
  std::string drive_d;  // folder that is drive d:
  std::string com[16];  // devices for "COM1" to "COM16"; empty: no such port
  UsbIoKind usbio = USBIO_NONE;
  std::string usbio_socket;  // for USBIO_SOCKET
  SoundKind sound = SOUND_SDL;
  std::string sound_socket;   // for SOUND_SOCKET
  bool power_reboot = false;  // an ordered reboot really reboots the machine
  std::string keys_socket;    // receives keys pressed in the window; empty: none
};

inline Environment environment;

// Reads the LILYHOP_ variables into `environment`. On a wrong value returns false, with one line in
// `error` that names the variable, the value and what is allowed. Called once, before anything
// else.
bool environment_read(std::string& error);
