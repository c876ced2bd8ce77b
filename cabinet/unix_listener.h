// Sockets in the file system that the cabinet listens at.
#pragma once

#include <string>

// Listens at `path` with a socket of `type` (SOCK_STREAM or another) that doesn't block. Returns an
// error text, empty on success.
std::string unix_listen(const std::string& path, int type, int& listener);
