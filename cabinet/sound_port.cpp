#include "cabinet/sound_port.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <thread>
#include <utility>

#include "cabinet/unix_listener.h"
#include "platform/mutex.h"

struct SoundPort {
  std::string path;
  int listener = -1, connection = -1, ending = -1;
  std::thread thread;
  Mutex mutex;
  std::condition_variable_any came;
  std::deque<std::shared_ptr<const SoundBlock>> blocks GUARDED_BY(mutex);  // newest last
};

namespace {

constexpr std::size_t BLOCKS_KEPT = 43;  // half a second
constexpr std::size_t PACKET_MAX = SOUND_PORT_HEAD + std::size_t{4} * 8192;

// Null if it is not a packet of sound.
std::shared_ptr<SoundBlock> read_packet(const char* bytes, std::size_t size) {
  if (size <= SOUND_PORT_HEAD) return nullptr;
  auto block = std::make_shared<SoundBlock>();
  std::int32_t frames = 0;
  std::memcpy(&block->frame, bytes, 8);
  std::memcpy(&block->time_us, bytes + 8, 8);
  std::memcpy(&frames, bytes + 16, 4);
  if (frames <= 0 || block->frame < 0) return nullptr;
  if (size != SOUND_PORT_HEAD + static_cast<std::size_t>(frames) * 4) return nullptr;
  block->frames = frames;
  block->packet.assign(bytes, size);
  return block;
}

// The number of the newest block, 0 if there is none.
long newest(const SoundPort& port) REQUIRES(port.mutex) {
  return port.blocks.empty() ? 0 : port.blocks.back()->number;
}

void keep(SoundPort& port, std::shared_ptr<SoundBlock> block) {
  const MutexLock lock(port.mutex);
  block->number = newest(port) + 1;
  port.blocks.push_back(std::move(block));
  if (port.blocks.size() > BLOCKS_KEPT) port.blocks.pop_front();
  port.came.notify_all();
}

// A restarted game opens a new connection, perhaps before the end of the old one is noticed.
void take_connection(SoundPort& port) {
  const int connection = accept4(port.listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (connection < 0) return;
  if (port.connection >= 0) close(port.connection);
  port.connection = connection;
}

void take_packets(SoundPort& port) {
  std::array<char, PACKET_MAX> bytes;
  while (port.connection >= 0) {
    const ssize_t size = recv(port.connection, bytes.data(), bytes.size(), 0);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0 && errno == EAGAIN) return;
    if (size <= 0) {
      close(port.connection);
      port.connection = -1;
      return;
    }
    auto block = read_packet(bytes.data(), static_cast<std::size_t>(size));
    if (block) keep(port, std::move(block));
  }
}

void run(SoundPort& port) {
  for (;;) {
    std::array<pollfd, 3> files = {
        {{port.ending, POLLIN, 0}, {port.listener, POLLIN, 0}, {port.connection, POLLIN, 0}}};
    poll(files.data(), files.size(), -1);
    if (files[0].revents != 0) return;
    if (files[2].revents != 0) take_packets(port);
    if (files[1].revents != 0) take_connection(port);
  }
}

}  // namespace

SoundPort* sound_port_open(const std::string& path, std::string& error) {
  auto* port = new SoundPort;
  port->path = path;
  port->ending = eventfd(0, EFD_CLOEXEC);
  error = port->ending < 0 ? std::string("eventfd: ") + std::strerror(errno)
                           : unix_listen(path, SOCK_SEQPACKET, port->listener);
  if (error.empty()) {
    port->thread = std::thread([port] { run(*port); });
    return port;
  }
  sound_port_close(port);
  return nullptr;
}

void sound_port_close(SoundPort* port) {
  if (port == nullptr) return;
  if (port->thread.joinable()) {
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t n = write(port->ending, &one, sizeof one);
    port->thread.join();
    unlink(port->path.c_str());
  }
  for (const int file : {port->listener, port->connection, port->ending}) {
    if (file >= 0) close(file);
  }
  delete port;
}

std::shared_ptr<const SoundBlock> sound_port_next(SoundPort& port, long number, int wait_ms) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(wait_ms);
  const MutexLock lock(port.mutex);
  while (newest(port) <= number) {
    if (port.came.wait_until(port.mutex, end) == std::cv_status::timeout) break;
  }
  if (newest(port) <= number) return nullptr;
  const long oldest = port.blocks.front()->number;
  if (number + 1 < oldest) return port.blocks.back();
  return port.blocks[static_cast<std::size_t>(number + 1 - oldest)];
}

long sound_port_newest(SoundPort& port) {
  const MutexLock lock(port.mutex);
  return newest(port);
}

bool sound_card_is_there() {
  namespace fs = std::filesystem;
  std::error_code none;
  for (const auto& entry : fs::directory_iterator("/dev/snd", none)) {
    const std::string name = entry.path().filename();
    if (name.compare(0, 3, "pcm") == 0 && name.back() == 'p') return true;
  }
  if (std::getenv("PULSE_SERVER") != nullptr) return true;
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  return runtime != nullptr && fs::exists(std::string(runtime) + "/pulse/native", none);
}
