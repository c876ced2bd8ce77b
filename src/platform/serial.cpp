#include "platform/serial.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <system_error>
#include <thread>

#include "platform/environment.h"
#include "platform/mutex.h"

using Steady = std::chrono::steady_clock;

struct SerialPort {
  std::string path;
  unsigned kind = 0;  // of the device that was opened first
  int fd = -1;        // never changes: a repair puts the new device under the same number
  int wake_fd = -1;
  std::atomic<int> baud{0};  // 0 until configured
  std::atomic<SerialLines> lines{SERIAL_LINES_ON};
  std::atomic<bool> lost{false};
  Mutex repair_mutex;
  Steady::time_point next_repair GUARDED_BY(repair_mutex);
};

namespace {

constexpr auto REPAIR_EVERY = std::chrono::milliseconds(250);
constexpr int LOST_PAUSE_MS = 100;
constexpr auto WRITE_BOUND = std::chrono::milliseconds(100);
constexpr auto DRAIN_BOUND = std::chrono::milliseconds(100);
constexpr int BITS_OF_A_BYTE = 10;  // with start and stop bits

// The device for "COM1" to "COM16", or null.
const std::string* device_of(const char* name) {
  if (std::strncmp(name, "COM", 3) != 0) return nullptr;
  const char* const end = name + std::strlen(name);
  int number = 0;
  const auto [stop, error] = std::from_chars(name + 3, end, number);
  if (error != std::errc{} || stop != end || number < 1 || number > 16) return nullptr;
  const std::string& path = environment.com[number - 1];
  return path.empty() ? nullptr : &path;
}

// The driver of an open device, as a number.
unsigned device_kind(int fd) {
  struct stat status{};
  return fstat(fd, &status) == 0 && S_ISCHR(status.st_mode) ? major(status.st_rdev) : 0;
}

bool is_pseudo_terminal(unsigned kind) {
  constexpr unsigned FIRST = 136;
  constexpr unsigned LAST = 143;
  return kind >= FIRST && kind <= LAST;
}

// Exclusive mode belongs to the terminal, not to the handle. While another process holds the
// terminal open, the mode stays on and locks us out too. The far end of a pseudo-terminal holds it
// open, and a killed program can't switch the mode off.
bool exclusive_set(int fd, bool on) {
  if (is_pseudo_terminal(device_kind(fd))) return true;
  return ioctl(fd, on ? TIOCEXCL : TIOCNXCL) == 0;
}

// Opens a device for this handle only, or returns the negative error number. The lock works between
// our own handles and as root; exclusive mode keeps other programs out.
int device_open(const std::string& path) {
  const int fd = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return -errno;
  if (!isatty(fd) || flock(fd, LOCK_EX | LOCK_NB) != 0 || !exclusive_set(fd, true)) {
    const int error = errno;
    close(fd);
    return -error;
  }
  return fd;
}

void device_release(int fd) {
  exclusive_set(fd, false);
  flock(fd, LOCK_UN);
}

// True if the path leads to a device of the same driver as the lost one. Checked before it is
// opened, because opening a device already raises its DTR and RTS lines.
bool leads_back(const SerialPort& port) {
  struct stat found{};
  return stat(port.path.c_str(), &found) == 0 && S_ISCHR(found.st_mode) &&
         major(found.st_rdev) == port.kind;
}

bool device_configure(int fd, int baud, SerialLines lines) {
  const speed_t speed = baud == 9600 ? B9600 : baud == 115200 ? B115200 : B0;
  termios state{};
  if (speed == B0 || tcgetattr(fd, &state) != 0) return false;
  cfmakeraw(&state);
  state.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | CRTSCTS | HUPCL);
  state.c_cflag |= CS8 | CREAD | CLOCAL;
  state.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY | INPCK);
  state.c_cc[VMIN] = 1;  // so that a read of nothing is a distinct error, and 0 means gone
  state.c_cc[VTIME] = 0;
  cfsetispeed(&state, speed);
  cfsetospeed(&state, speed);
  if (tcsetattr(fd, TCSANOW, &state) != 0) return false;
  int both = TIOCM_DTR | TIOCM_RTS;  // a pseudo-terminal has no such lines
  ioctl(fd, lines == SERIAL_LINES_ON ? TIOCMBIS : TIOCMBIC, &both);
  return true;
}

// Opens a lost port's device again, if it is time to try.
void repair(SerialPort& port) REQUIRES(port.repair_mutex) {
  const auto now = Steady::now();
  if (!port.lost || now < port.next_repair) return;
  port.next_repair = now + REPAIR_EVERY;

  device_release(port.fd);
  if (!leads_back(port)) return;
  const int fresh = device_open(port.path);
  if (fresh < 0) return;
  const int baud = port.baud;
  const bool good = device_kind(fresh) == port.kind &&
                    (baud == 0 || device_configure(fresh, baud, port.lines)) &&
                    dup3(fresh, port.fd, O_CLOEXEC) == port.fd;
  if (!good) device_release(fresh);
  close(fresh);
  port.lost = !good;
}

// True if the port can be used. If its device has gone, looks for one of the same kind by its path,
// a few times a second, so that an adapter works again after it is pulled and plugged in.
bool usable(SerialPort* port) {
  if (!port->lost) return true;
  if (!port->repair_mutex.try_lock()) return false;  // another thread is at it
  repair(*port);
  const bool repaired = !port->lost;
  port->repair_mutex.unlock();
  return repaired;
}

// Slows down a caller that loops on a lost port.
int lost_pause(SerialPort* port, int timeout_ms) {
  const int pause_ms = timeout_ms < 0 ? LOST_PAUSE_MS : std::min(timeout_ms, LOST_PAUSE_MS);
  pollfd wake{port->wake_fd, POLLIN, 0};
  if (poll(&wake, 1, pause_ms) <= 0) return -1;
  std::uint64_t count = 0;
  return read(port->wake_fd, &count, sizeof count) > 0 ? 0 : -1;
}

bool bytes_waiting(int fd) {
  int count = 0;
  return ioctl(fd, FIONREAD, &count) == 0 && count > 0;
}

}  // namespace

SerialPort* serial_open(const char* name, int* error) {
  const std::string* path = device_of(name);
  if (!path) {
    *error = ENODEV;
    return nullptr;
  }
  const int fd = device_open(*path);
  if (fd < 0) {
    *error = -fd;
    return nullptr;
  }
  auto port = std::make_unique<SerialPort>();
  port->path = *path;
  port->kind = device_kind(fd);
  port->fd = fd;
  port->wake_fd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (port->wake_fd < 0) {
    *error = errno;
    device_release(fd);
    close(fd);
    return nullptr;
  }
  return port.release();
}

bool serial_configure(SerialPort* port, int baud, SerialLines lines) {
  if (!device_configure(port->fd, baud, lines)) return false;
  port->lines = lines;
  port->baud = baud;
  return true;
}

void serial_purge(SerialPort* port) {
  tcflush(port->fd, TCIOFLUSH);
}

int serial_wait(SerialPort* port, int timeout_ms) {
  if (!usable(port)) return lost_pause(port, timeout_ms);
  pollfd watched[2] = {{port->fd, POLLIN, 0}, {port->wake_fd, POLLIN, 0}};
  if (poll(watched, 2, timeout_ms) < 0) return errno == EINTR ? 0 : -1;
  if ((watched[0].revents & (POLLHUP | POLLERR | POLLNVAL)) && !bytes_waiting(port->fd)) {
    port->lost = true;
    return lost_pause(port, timeout_ms);
  }
  if (watched[0].revents) return 1;
  std::uint64_t count = 0;
  if (watched[1].revents && read(port->wake_fd, &count, sizeof count) < 0) return -1;
  return 0;
}

void serial_wake(SerialPort* port) {
  const std::uint64_t one = 1;
  // It fails only if 2^64 - 2 wakes are waiting.
  [[maybe_unused]] const auto written = write(port->wake_fd, &one, sizeof one);
}

int serial_read(SerialPort* port, void* data, std::size_t size) {
  if (!usable(port)) return -1;
  const ssize_t count = read(port->fd, data, size);
  if (count > 0) return static_cast<int>(count);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return 0;
  port->lost = true;
  return -1;
}

int serial_write(SerialPort* port, const void* data, std::size_t size) {
  if (!usable(port)) return -1;
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  const auto deadline = Steady::now() + WRITE_BOUND;
  for (std::size_t sent = 0; sent < size;) {
    const ssize_t count = write(port->fd, bytes + sent, size - sent);
    if (count > 0) {
      sent += static_cast<std::size_t>(count);
      continue;
    }
    if (count < 0 && errno != EAGAIN && errno != EINTR) {
      port->lost = true;
      return -1;
    }
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Steady::now()).count();
    if (left <= 0) return -1;
    pollfd room{port->fd, POLLOUT, 0};
    poll(&room, 1, static_cast<int>(left));
  }
  return static_cast<int>(size);
}

// Not tcdrain, which has no time limit: an adapter that hangs would block its caller for ever.
void serial_drain(SerialPort* port, int bytes) {
  const auto deadline = Steady::now() + DRAIN_BOUND;
  int queued = 0;
  while (ioctl(port->fd, TIOCOUTQ, &queued) == 0 && queued > 0 && Steady::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  // Bytes that the adapter itself holds are in no queue.
  if (port->baud == 0) return;
  const std::int64_t bits = std::int64_t{bytes} * BITS_OF_A_BYTE;
  std::this_thread::sleep_for(std::chrono::microseconds(bits * 1'000'000 / port->baud));
}

void serial_close(SerialPort* port) {
  device_release(port->fd);
  close(port->fd);
  close(port->wake_fd);
  delete port;
}
