#include "platform/key_lines.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "platform/environment.h"
#include "platform/unix_socket.h"

namespace {

constinit int listener = -1;

void listener_close() {
  if (listener >= 0) close(listener);
  listener = -1;
}

bool line_write(const char* line, std::size_t size) {
  return send(listener, line, size, MSG_NOSIGNAL | MSG_DONTWAIT) == static_cast<ssize_t>(size);
}

}  // namespace

void key_line_send(bool pressed, const char* name) {
  const std::string& path = environment.keys_socket;
  if (path.empty() || name[0] == '\0') return;
  char line[96];
  const int length =
      std::snprintf(line, sizeof line, "%s %s\n", pressed ? "press" : "release", name);
  if (length <= 0 || length >= static_cast<int>(sizeof line)) return;
  const auto size = static_cast<std::size_t>(length);
  if (listener >= 0 && line_write(line, size)) return;
  // The old listener has gone, or its buffer is full and may hold part of a line: connect again.
  // Keys are rare, and connecting to a local socket is quick, so each key without a connection
  // tries.
  listener_close();
  listener = unix_socket_connect(path, SOCK_STREAM);
  if (listener >= 0 && !line_write(line, size)) listener_close();
}
