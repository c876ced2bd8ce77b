#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

#include "platform/sound_backends.h"

namespace {

constexpr std::int64_t TRY_US = 200'000;  // between two attempts to find a listener

int connect_to(const std::string& path) {
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path) return -1;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.c_str(), path.size());
  const int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (fd < 0) return -1;
  if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return fd;
  close(fd);
  return -1;
}

}  // namespace

SoundSocket::~SoundSocket() {
  if (socket_ >= 0) close(socket_);
}

bool SoundSocket::connected(std::int64_t time_us) {
  if (socket_ >= 0) return true;
  if (time_us < next_try_us_) return false;
  next_try_us_ = time_us + TRY_US;
  socket_ = connect_to(path_);
  return socket_ >= 0;
}

void SoundSocket::send(std::int64_t frame, std::int64_t time_us, const std::int16_t* samples,
                       int frames) {
  if (!connected(time_us)) return;
  SoundPacketHead head{frame, time_us, frames, 0};
  iovec parts[] = {{&head, sizeof head},
                   {const_cast<std::int16_t*>(samples), static_cast<std::size_t>(frames) * 4}};
  msghdr packet{};
  packet.msg_iov = parts;
  packet.msg_iovlen = 2;
  if (sendmsg(socket_, &packet, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0) return;
  if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR || errno == ENOBUFS) return;
  close(socket_);
  socket_ = -1;
}
