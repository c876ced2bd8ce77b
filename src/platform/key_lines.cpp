#include "platform/key_lines.h"

#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "platform/environment.h"
#include "platform/unix_socket.h"

namespace {

constinit int listener = -1;

void listener_close() {
  if (listener >= 0) close(listener);
  listener = -1;
}

bool line_write(const std::string& line) {
  return send(listener, line.data(), line.size(), MSG_NOSIGNAL | MSG_DONTWAIT) ==
         static_cast<ssize_t>(line.size());
}

}  // namespace

void key_line_send(bool pressed, const char* name) {
  const std::string& path = environment.keys_socket;
  if (path.empty() || name[0] == '\0') return;
  const std::string line = std::string(pressed ? "press " : "release ") + name + '\n';
  if (listener >= 0 && line_write(line)) return;
  // The old listener has gone, or its buffer is full and may hold part of a line: connect again.
  // Keys are rare, and connecting to a local socket is quick, so each key without a connection
  // tries.
  listener_close();
  listener = unix_socket_connect(path, SOCK_STREAM);
  if (listener >= 0 && !line_write(line)) listener_close();
}
