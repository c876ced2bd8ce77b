#include "cabinet/usb_port.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "cabinet/unix_listener.h"

namespace {

constexpr int IN_ENDPOINT = 0x81, OUT_ENDPOINT = 0x02;
constexpr std::uint32_t GOOD = 0, BAD_REQUEST = 0xE0001000;

// Of the driver; its version, 0x0141, comes first.
const std::string DRIVER_INFO("\x41\x01\0\0\0\0\0\0\0\0\0\0", 12);
// USB 1.1, packets of 8, vendor 0x0C70, product 0x0774, one configuration.
const std::string DESCRIPTOR("\x12\x01\x10\x01\0\0\0\x08\x70\x0C\x74\x07\0\x01\0\0\0\x01", 18);
const std::string DESCRIPTOR_REQUEST("\0\0\0\0\x01\0\0\0", 8);

std::string configuration_request() {
  std::string request(260, '\0');
  request[2] = 1;  // interface
  request[8] = 8;  // maximum number of bytes
  return request;
}

std::uint32_t u32_at(const std::string& packet, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) {
    value = value << 8 | static_cast<unsigned char>(packet[at + i]);
  }
  return value;
}

void answer(const UsbFile& file, char kind, std::uint32_t code, const std::string& bytes) {
  std::string packet(1, kind);
  for (int shift = 0; shift < 32; shift += 8) packet += static_cast<char>(code >> shift & 0xFF);
  packet += bytes;
  send(file.socket, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

std::uint32_t do_request(UsbPort& port, UsbFile& file, std::uint32_t code, const std::string& in,
                         std::string& out) {
  switch (code) {
    case 0x8094206C:
      out = DRIVER_INFO;
      return in.empty() ? GOOD : BAD_REQUEST;
    case 0x80942006:
      out = DESCRIPTOR;
      return in == DESCRIPTOR_REQUEST ? GOOD : BAD_REQUEST;
    case 0x80942024:
      if (in != configuration_request()) return BAD_REQUEST;
      usb_watchdog_configure(port.device);
      return GOOD;
    case 0x80942054:
      if (port.device.configured) usb_watchdog_configure(port.device);
      return GOOD;
    case 0x80942078:
      if (in.size() != 1 || !port.device.configured) return BAD_REQUEST;
      file.endpoint = static_cast<unsigned char>(in[0]);
      return file.endpoint == IN_ENDPOINT || file.endpoint == OUT_ENDPOINT ? GOOD : BAD_REQUEST;
    default:
      return BAD_REQUEST;
  }
}

void take_packet(UsbPort& port, UsbFile& file, const std::string& packet, std::int64_t now_ms) {
  if (packet[0] == 'C' && packet.size() >= 9) {
    std::string out;
    const std::uint32_t code = do_request(port, file, u32_at(packet, 1), packet.substr(9), out);
    if (code != GOOD) ++port.device.malformed;
    answer(file, 'C', code, code == GOOD ? out.substr(0, u32_at(packet, 5)) : "");
  } else if (packet[0] == 'R' && packet.size() == 5 && file.endpoint == IN_ENDPOINT) {
    file.reading = u32_at(packet, 1);
  } else if (packet[0] == 'W' && file.endpoint == OUT_ENDPOINT) {
    usb_watchdog_receive(port.device, packet.substr(1), now_ms);
    answer(file, 'W', GOOD, "");
  } else {
    ++port.device.malformed;
  }
}

// False once the game has closed the connection.
bool take_packets(UsbPort& port, UsbFile& file, std::int64_t now_ms) {
  for (;;) {
    char buffer[512];
    const ssize_t n = recv(file.socket, buffer, sizeof buffer, MSG_DONTWAIT);
    if (n < 0) return errno == EAGAIN || errno == EINTR;
    if (n == 0) return false;
    take_packet(port, file, std::string(buffer, static_cast<std::size_t>(n)), now_ms);
  }
}

void give(UsbPort& port, UsbFile& file) {
  std::string& bytes = port.device.to_host;
  if (file.reading == 0 || bytes.empty()) return;
  const std::size_t count = std::min(file.reading, bytes.size());
  answer(file, 'R', GOOD, bytes.substr(0, count));
  bytes.erase(0, count);
  file.reading = 0;
}

void leave(UsbPort& port) {
  for (const UsbFile& file : port.files) close(file.socket);
  port.files.clear();
  if (port.listener < 0) return;
  close(port.listener);
  port.listener = -1;
  unlink(port.path.c_str());
}

}  // namespace

std::string usb_port_open(UsbPort& port, const std::string& folder) {
  port.path = folder + "/usb";
  return unix_listen(port.path, SOCK_SEQPACKET, port.listener);
}

void usb_port_close(UsbPort& port) {
  leave(port);
  port.path.clear();
}

std::string usb_port_plug(UsbPort& port, bool plugged) {
  if (port.path.empty()) return "this cabinet was started without USB";
  if (plugged == port.device.plugged) return {};
  usb_watchdog_plug(port.device, plugged);
  if (plugged) return unix_listen(port.path, SOCK_SEQPACKET, port.listener);
  leave(port);
  return {};
}

bool usb_port_is_open(const UsbPort& port) {
  const auto bound = [&](int endpoint) {
    return std::any_of(port.files.begin(), port.files.end(),
                       [=](const UsbFile& file) { return file.endpoint == endpoint; });
  };
  return bound(IN_ENDPOINT) && bound(OUT_ENDPOINT);
}

void usb_port_watch(const UsbPort& port, std::vector<pollfd>& files) {
  if (port.listener >= 0) files.push_back({port.listener, POLLIN, 0});
  for (const UsbFile& file : port.files) files.push_back({file.socket, POLLIN, 0});
}

void usb_port_exchange(UsbPort& port, std::int64_t now_ms) {
  usb_watchdog_advance(port.device, now_ms);
  while (port.listener >= 0) {
    const int socket = accept4(port.listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (socket < 0) break;
    port.files.push_back({socket, 0, 0});
  }
  std::vector<UsbFile> stay;
  for (UsbFile& file : port.files) {
    if (take_packets(port, file, now_ms)) {
      give(port, file);
      stay.push_back(file);
    } else {
      close(file.socket);
    }
  }
  port.files = std::move(stay);
}
