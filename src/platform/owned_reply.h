// Replies of an X server, which come from malloc.
#pragma once

#include <cstdlib>
#include <memory>

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};

// Frees the reply at the end of its scope. Null is a reply that didn't come.
template <typename T>
std::unique_ptr<T, FreeReply> owned(T* reply) {
  return std::unique_ptr<T, FreeReply>(reply);
}
