// Connections to a socket in the file system.
#pragma once

#include <string>

// Connects to the listener at `path`, whose socket is of `type` (SOCK_STREAM or another). Returns
// the socket, which doesn't block, or -1. A listener with a full backlog counts as none.
int unix_socket_connect(const std::string& path, int type);
