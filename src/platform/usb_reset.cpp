#include "platform/usb_reset.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace {

// -1 if it isn't a file with a hexadecimal number.
int read_hex(const std::filesystem::path& file) {
  std::ifstream in(file);
  int value = -1;
  return in >> std::hex >> value ? value : -1;
}

bool write_digit(const std::filesystem::path& file, char digit) {
  std::ofstream out(file);
  out << digit;
  out.close();
  return out.good();
}

}  // namespace

bool usb_reset_below(const std::string& root, std::uint16_t vendor, std::uint16_t product) {
  std::error_code error;
  bool done = false;
  std::error_code ended;  // the bus may lose a device during the walk
  const std::filesystem::directory_iterator end;
  for (std::filesystem::directory_iterator at(root, ended); !ended && at != end;
       at.increment(ended)) {
    const std::filesystem::path& device = at->path();
    if (read_hex(device / "idVendor") != vendor || read_hex(device / "idProduct") != product) {
      continue;
    }
    const std::filesystem::path authorized = device / "authorized";
    if (!std::filesystem::exists(authorized, error)) continue;
    const bool off = write_digit(authorized, '0');
    done = (write_digit(authorized, '1') && off) || done;
  }
  return done;
}

bool usb_reset(std::uint16_t vendor, std::uint16_t product) {
  return usb_reset_below("/sys/bus/usb/devices", vendor, product);
}
