#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/unix_socket.h"
#include "platform/usb_backends.h"

namespace {

// For the requests of a search, at start-up and every few minutes; a simulation answers at once.
constexpr int CONTROL_BOUND_MS = 100;
constexpr std::size_t HEAD = 5;  // kind and code of an answer

using Packet = std::vector<std::uint8_t>;

void put_u32(Packet& packet, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) {
    packet.push_back(static_cast<std::uint8_t>(value >> shift));
  }
}

std::uint32_t get_u32(const std::uint8_t* bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

class SocketFile final : public UsbFile {
 public:
  explicit SocketFile(int fd) : fd_(fd) {}
  ~SocketFile() override { close(fd_); }

  std::uint32_t control(std::uint32_t code, const std::uint8_t* in, std::size_t in_size,
                        std::uint8_t* out, std::size_t out_size, std::size_t& returned) override {
    returned = 0;
    Packet request{'C'};
    put_u32(request, code);
    put_u32(request, static_cast<std::uint32_t>(out_size));
    request.insert(request.end(), in, in + in_size);
    if (!send_packet(request)) return USB_ERROR_GONE;
    Packet answer;
    if (!take('C', CONTROL_BOUND_MS, answer)) return gone_ ? USB_ERROR_GONE : USB_ERROR_TIMEOUT;
    returned = std::min(answer.size() - HEAD, out_size);
    std::copy_n(answer.begin() + HEAD, returned, out);
    return get_u32(&answer[1]);
  }

  std::uint32_t start_read(UsbOverlapped& transfer) override {
    kind_ = 'R';
    Packet request{'R'};
    put_u32(request, transfer.size);
    return send_packet(request) ? USB_PENDING : USB_ERROR_GONE;
  }

  std::uint32_t start_write(UsbOverlapped& transfer) override {
    kind_ = 'W';
    Packet request{'W'};
    request.insert(request.end(), transfer.data, transfer.data + transfer.size);
    return send_packet(request) ? USB_PENDING : USB_ERROR_GONE;
  }

  bool has_ended(UsbOverlapped& transfer, int timeout_ms) override {
    Packet answer;
    if (!take(kind_, timeout_ms, answer)) {
      transfer.transferred = 0;
      transfer.status = USB_ERROR_GONE;
      return gone_;
    }
    const std::size_t count = answer.size() - HEAD;
    transfer.status = count > transfer.size ? USB_ERROR_NEEDS_RESET : get_u32(&answer[1]);
    transfer.transferred = static_cast<std::uint32_t>(std::min<std::size_t>(count, transfer.size));
    if (kind_ == 'R') std::copy_n(answer.begin() + HEAD, transfer.transferred, transfer.data);
    if (kind_ == 'W') transfer.transferred = transfer.size;
    return true;
  }

 private:
  bool send_packet(const Packet& packet) {
    const ssize_t sent = send(fd_, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    return sent == static_cast<ssize_t>(packet.size());
  }

  // The next packet, if it is an answer of this kind; false for any other.
  bool take(std::uint8_t kind, int timeout_ms, Packet& answer) {
    pollfd watched{fd_, POLLIN, 0};
    if (poll(&watched, 1, timeout_ms) <= 0) return false;
    std::uint8_t bytes[512];
    const ssize_t count = recv(fd_, bytes, sizeof bytes, MSG_DONTWAIT);
    if (count < 0) {
      gone_ = errno != EAGAIN && errno != EINTR;
      return false;
    }
    gone_ = count == 0;
    if (count < static_cast<ssize_t>(HEAD) || bytes[0] != kind) return false;
    answer.assign(bytes, bytes + count);
    return true;
  }

  int fd_;
  std::uint8_t kind_ = 0;  // of the transfer that was started last
  bool gone_ = false;
};

class SocketDriver final : public UsbDriver {
 public:
  explicit SocketDriver(std::string path) : path_(std::move(path)) {}

  std::unique_ptr<UsbDeviceList> list(const UsbClassGuid& /*class_guid*/) override {
    auto list = std::make_unique<UsbDeviceList>();
    const int fd = unix_socket_connect(path_, SOCK_SEQPACKET);
    if (fd < 0) return list;
    close(fd);
    list->paths.push_back(path_);
    return list;
  }

  std::unique_ptr<UsbFile> open(const std::string& path) override {
    const int fd = unix_socket_connect(usb_device_number(path) == 0 ? path_ : path, SOCK_SEQPACKET);
    return fd < 0 ? nullptr : std::make_unique<SocketFile>(fd);
  }

 private:
  std::string path_;
};

}  // namespace

UsbDriver& usb_socket_driver(const std::string& path) {
  // Never destroyed: otherwise the files of static objects would outlive it.
  static SocketDriver& driver = *new SocketDriver(path);
  return driver;
}
