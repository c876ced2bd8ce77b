#include "books/book_file.h"

#include <cstring>

#include "platform/files.h"  // read_open, store_open, ...

constexpr std::size_t MAGIC_SIZE = 4;

bool book_read(const char* name, const char* magic, void* data, std::size_t size) {
  ReadFile* file = read_open(name);
  if (file == nullptr) return false;
  char head[MAGIC_SIZE];
  const bool good =
      read_bytes(file, head, MAGIC_SIZE) == MAGIC_SIZE && std::memcmp(head, magic, MAGIC_SIZE) == 0;
  if (good) read_bytes(file, data, size);
  read_close(file);
  return good;
}

bool book_store(const char* name, const char* magic, const void* data, std::size_t size) {
  StoreFile* file = store_open(name);
  if (file == nullptr) return false;
  store_bytes(file, magic, MAGIC_SIZE);
  store_bytes(file, data, size);
  return store_close(file);
}
