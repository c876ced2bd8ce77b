#include "platform/environment.h"

#include <cstdlib>
#include <string_view>

namespace {

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string{} : std::string{value};
}

std::string default_drive() {
  const std::string data = variable("XDG_DATA_HOME");
  if (!data.empty()) return data + "/lilyhop";
  const std::string home = variable("HOME");
  return home.empty() ? std::string{} : home + "/.local/share/lilyhop";
}

std::string complaint(const char* name, const std::string& value, const char* allowed) {
  return std::string{name} + "=\"" + value + "\": " + allowed;
}

// The path after "unix:", or empty.
std::string socket_path(const std::string& value) {
  constexpr std::string_view prefix = "unix:";
  return value.starts_with(prefix) ? value.substr(prefix.size()) : std::string{};
}

bool read_usbio(std::string& error) {
  const std::string value = variable("LILYHOP_USBIO");
  environment.usbio_socket = socket_path(value);
  if (value.empty() || value == "none") {
    environment.usbio = USBIO_NONE;
  } else if (value == "libusb") {
    environment.usbio = USBIO_LIBUSB;
  } else if (!environment.usbio_socket.empty()) {
    environment.usbio = USBIO_SOCKET;
  } else {
    error = complaint("LILYHOP_USBIO", value, "must be libusb, none or unix:PATH");
    return false;
  }
  return true;
}

bool read_sound(std::string& error) {
  const std::string value = variable("LILYHOP_SOUND");
  environment.sound_socket = socket_path(value);
  if (value.empty() || value == "sdl") {
    environment.sound = SOUND_SDL;
  } else if (value == "none") {
    environment.sound = SOUND_NONE;
  } else if (!environment.sound_socket.empty()) {
    environment.sound = SOUND_SOCKET;
  } else {
    error = complaint("LILYHOP_SOUND", value, "must be sdl, none or unix:PATH");
    return false;
  }
  return true;
}

}  // namespace

bool environment_read(std::string& error) {
  environment = Environment{};

  environment.drive_d = variable("LILYHOP_DRIVE_D");
  if (environment.drive_d.empty()) environment.drive_d = default_drive();
  if (environment.drive_d.empty()) {
    error = complaint("LILYHOP_DRIVE_D", "", "must name a folder, because HOME is not set either");
    return false;
  }

  for (int i = 0; i < 16; ++i) {
    const std::string name = "LILYHOP_COM" + std::to_string(i + 1);
    environment.com[i] = variable(name.c_str());
    if (!environment.com[i].empty() && environment.com[i][0] != '/') {
      error = complaint(name.c_str(), environment.com[i], "must be the full path of a device");
      return false;
    }
  }

  if (!read_usbio(error) || !read_sound(error)) return false;

  const std::string power = variable("LILYHOP_POWER");
  if (!power.empty() && power != "off" && power != "reboot") {
    error = complaint("LILYHOP_POWER", power, "must be off or reboot");
    return false;
  }
  environment.power_reboot = power == "reboot";

  const std::string keys = variable("LILYHOP_KEYS");
  environment.keys_socket = socket_path(keys);
  if (!keys.empty() && environment.keys_socket.empty()) {
    error = complaint("LILYHOP_KEYS", keys, "must be unix:PATH");
    return false;
  }
  return true;
}
