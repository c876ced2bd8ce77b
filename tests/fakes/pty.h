// A pseudo-terminal whose far end a test holds: what it writes there arrives at the port.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>

class Pty {
 public:
  Pty() : fd_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (fd_ < 0 || grantpt(fd_) != 0 || unlockpt(fd_) != 0) abort();
    char name[64];
    if (ptsname_r(fd_, name, sizeof name) != 0) abort();
    path_ = name;
    termios raw{};  // no echo while nobody has the port open
    tcgetattr(fd_, &raw);
    cfmakeraw(&raw);
    tcsetattr(fd_, TCSANOW, &raw);
  }
  ~Pty() { unplug(); }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] int fd() const { return fd_; }

  void send(const std::string& bytes) const {
    if (write(fd_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) abort();
  }

  // What has come, waiting at most `wait_ms` for the first byte.
  [[nodiscard]] std::string receive(int wait_ms) const {
    pollfd watched{fd_, POLLIN, 0};
    if (poll(&watched, 1, wait_ms) <= 0) return {};
    if (!(watched.revents & POLLIN)) {
      poll(nullptr, 0, wait_ms);  // nobody has the port open: a poll of it doesn't wait
      return {};
    }
    char bytes[4096];
    const ssize_t count = read(fd_, bytes, sizeof bytes);
    return count > 0 ? std::string(bytes, static_cast<std::size_t>(count)) : std::string();
  }

  // The far end goes away; the port hangs up.
  void unplug() {
    if (fd_ >= 0) close(fd_);
    fd_ = -1;
  }

 private:
  int fd_;
  std::string path_;
};
