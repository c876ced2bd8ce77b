#include "cabinet/cable.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

std::string failure(const char* what) {
  return std::string(what) + ": " + std::strerror(errno);
}

}  // namespace

std::string cable_open(Cable& cable) {
  cable.near = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (cable.near < 0) return failure("no pseudo-terminal");
  char name[128];
  if (grantpt(cable.near) != 0 || unlockpt(cable.near) != 0 ||
      ptsname_r(cable.near, name, sizeof name) != 0) {
    return failure("the pseudo-terminal can't be used");
  }
  cable.path = name;
  cable.far = open(name, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (cable.far < 0) return failure(name);
  termios settings{};
  if (tcgetattr(cable.far, &settings) != 0) return failure(name);
  cfmakeraw(&settings);
  cfsetspeed(&settings, B115200);
  if (tcsetattr(cable.far, TCSANOW, &settings) != 0) return failure(name);
  return {};
}

void cable_close(Cable& cable) {
  if (cable.near >= 0) close(cable.near);
  if (cable.far >= 0) close(cable.far);
  cable.near = cable.far = -1;
}

void cable_reset(Cable& cable) {
  if (cable.far < 0) return;
  ioctl(cable.far, TIOCNXCL);
  tcflush(cable.far, TCIOFLUSH);
}

void cable_send(Cable& cable, const std::string& bytes) {
  if (cable.near < 0) return;
  if (!cable.plugged) {
    cable.lost_bytes += static_cast<long>(bytes.size());
    return;
  }
  const std::string out = line_faults_apply(cable.to_host, bytes);
  std::size_t sent = 0;
  while (sent < out.size()) {
    const ssize_t n = write(cable.near, out.data() + sent, out.size() - sent);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;  // a serial line doesn't wait for its reader
    sent += static_cast<std::size_t>(n);
  }
  cable.lost_bytes += static_cast<long>(out.size() - sent);
}

std::string cable_take(Cable& cable) {
  std::string in;
  if (cable.near < 0) return in;
  char buffer[4096];
  for (;;) {
    const ssize_t n = read(cable.near, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    in.append(buffer, static_cast<std::size_t>(n));
  }
  if (!cable.plugged) {
    cable.lost_bytes += static_cast<long>(in.size());
    return {};
  }
  return line_faults_apply(cable.to_board, in);
}
