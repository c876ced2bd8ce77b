#include "cabinet/unix_listener.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cerrno>
#include <cstring>

std::string unix_listen(const std::string& path, int type, int& listener) {
  constexpr int BACKLOG = 8;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return path + ": the path is too long";
  std::memcpy(address.sun_path, path.c_str(), path.size());
  listener = socket(AF_UNIX, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (listener >= 0 && bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      listen(listener, BACKLOG) == 0) {
    return {};
  }
  return path + ": " + std::strerror(errno);
}
