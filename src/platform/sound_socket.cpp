#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/sound_backends.h"
#include "platform/unix_socket.h"

namespace {

constexpr std::int64_t TRY_US = 200'000;  // between two attempts to find a listener

}  // namespace

SoundSocket::~SoundSocket() {
  if (socket_ >= 0) close(socket_);
}

bool SoundSocket::connected(std::int64_t time_us) {
  if (socket_ >= 0) return true;
  if (time_us < next_try_us_) return false;
  next_try_us_ = time_us + TRY_US;
  socket_ = unix_socket_connect(path_, SOCK_SEQPACKET);
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
