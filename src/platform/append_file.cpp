#include "platform/append_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "platform/files.h"

struct AppendFile {
  int fd = -1;
  std::uint64_t size = 0;
};

namespace {

// Where the last whole line ends; 0 if there is none.
off_t end_of_lines(int fd, off_t size) {
  char block[4096];
  while (size > 0) {
    const off_t begin = size > static_cast<off_t>(sizeof block) ? size - sizeof block : 0;
    const ssize_t count = pread(fd, block, static_cast<std::size_t>(size - begin), begin);
    if (count != size - begin) return 0;
    const std::size_t last = std::string_view(block, static_cast<std::size_t>(count)).rfind('\n');
    if (last != std::string_view::npos) return begin + static_cast<off_t>(last) + 1;
    size = begin;
  }
  return 0;
}

// False if the file is none that can grow.
bool cut_torn_line(AppendFile& file) {
  struct stat status{};
  if (fstat(file.fd, &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const off_t end = end_of_lines(file.fd, status.st_size);
  if (end != status.st_size && ftruncate(file.fd, end) != 0) return false;
  file.size = static_cast<std::uint64_t>(end);
  return true;
}

}  // namespace

AppendFile* append_open(const char* name) {
  const std::string path = files_path(name);
  if (path.empty()) return nullptr;
  AppendFile file;
  file.fd = open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0644);
  if (file.fd < 0) return nullptr;
  if (!cut_torn_line(file)) {
    close(file.fd);
    return nullptr;
  }
  if (file.size == 0) files_sync_folder(name);
  return new AppendFile(file);
}

std::uint64_t append_size(const AppendFile* file) {
  return file->size;
}

bool append_bytes(AppendFile* file, const void* data, std::size_t size) {
  // A disk takes all of it, unless it is full or fails.
  if (write(file->fd, data, size) == static_cast<ssize_t>(size)) {
    file->size += size;
    return true;
  }
  // If not even this works, the next opening cuts the torn line off.
  [[maybe_unused]] const int failed = ftruncate(file->fd, static_cast<off_t>(file->size));
  return false;
}

bool append_sync(AppendFile* file) {
  return fsync(file->fd) == 0;
}

void append_close(AppendFile* file) {
  close(file->fd);
  delete file;
}

bool append_rename(const char* from, const char* to) {
  const std::string old_path = files_path(from);
  const std::string new_path = files_path(to);
  return std::rename(old_path.c_str(), new_path.c_str()) == 0;
}
