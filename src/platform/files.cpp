#include "platform/files.h"

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string_view>

namespace {

struct FileRoots {
  std::string drive_d;
  std::string program;
};

FileRoots& roots() {
  static FileRoots instance;
  return instance;
}

std::string folder_of(const std::string& path) {
  return std::filesystem::path(path).parent_path().string();
}

// The new name is safe only when its folder is on the disk too.
bool sync_folder(const std::string& folder) {
  const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool ok = fsync(fd) == 0;
  close(fd);
  return ok;
}

bool is_on_drive(std::string_view name) {
  return name.starts_with(R"(d:\)") || name.starts_with(R"(D:\)");
}

// The name in a folder that differs from this one at most in the case of letters.
std::string name_in_any_case(const std::filesystem::path& folder, const std::string& name) {
  std::error_code failed;
  if (std::filesystem::exists(folder / name, failed)) return name;
  const std::filesystem::directory_iterator end;
  for (std::filesystem::directory_iterator at(folder, failed); !failed && at != end;
       at.increment(failed)) {
    std::string other = at->path().filename().string();
    if (strcasecmp(other.c_str(), name.c_str()) == 0) return other;
  }
  return {};
}

// Only a regular file opens: a folder can't be read, and a pipe would block the caller.
std::FILE* plain_file_open(const char* path) {
  const int fd = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return nullptr;
  struct stat status{};
  std::FILE* stream =
      fstat(fd, &status) == 0 && S_ISREG(status.st_mode) ? fdopen(fd, "rb") : nullptr;
  if (stream == nullptr) close(fd);
  return stream;
}

// A new file beside `path`. Removes what a power cut left there, or takes another name if it can't
// be removed, like a folder with something in it.
int temporary_open(const std::string& path, std::string& temporary) {
  for (const char* ending : {".new", ".new2"}) {
    temporary = path + ending;
    do {
      const int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
      if (fd >= 0) return fd;
    } while (errno == EEXIST && std::remove(temporary.c_str()) == 0);
  }
  return -1;
}

}  // namespace

void files_use_roots(const std::string& drive_d, const std::string& program_folder) {
  roots() = {drive_d, program_folder};
  std::error_code ignored;  // if the drive can't be made, storing the books will show it
  std::filesystem::create_directories(drive_d, ignored);
}

std::string files_program() {
  std::error_code failed;
  const std::string program = std::filesystem::read_symlink("/proc/self/exe", failed).string();
  return failed ? std::string{} : program;
}

std::string files_program_folder() {
  const std::string program = files_program();
  return program.empty() ? "." : folder_of(program);
}

std::string files_path(const char* name) {
  std::string_view rest = name;
  const bool on_drive = is_on_drive(rest);
  if (on_drive) rest.remove_prefix(3);
  std::string path = on_drive ? roots().drive_d : roots().program;
  if (path.empty()) return {};
  while (!rest.empty()) {
    const std::size_t end = rest.find_first_of("\\/");
    const std::string_view part = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    if (part == "..") return {};
    if (part.empty() || part == ".") continue;
    path += '/';
    path += part;
  }
  return path;
}

bool files_sync_folder(const char* name) {
  return sync_folder(folder_of(files_path(name)));
}

struct ReadFile {
  std::FILE* stream;
};

ReadFile* read_open(const char* name) {
  const std::string path = files_path(name);
  std::FILE* stream = path.empty() ? nullptr : plain_file_open(path.c_str());
  return stream == nullptr ? nullptr : new ReadFile{stream};
}

ReadFile* read_open_any_case(const char* name) {
  if (ReadFile* file = read_open(name)) return file;
  // Walks down from the root, part by part.
  const std::filesystem::path wanted = files_path(name);
  if (wanted.empty()) return nullptr;
  const std::filesystem::path root = files_path(is_on_drive(name) ? R"(d:\)" : "");
  std::filesystem::path found = root;
  for (const auto& part : wanted.lexically_relative(root)) {
    const std::string match = name_in_any_case(found, part.string());
    if (match.empty()) return nullptr;
    found /= match;
  }
  std::FILE* stream = plain_file_open(found.c_str());
  return stream == nullptr ? nullptr : new ReadFile{stream};
}

std::size_t read_bytes(ReadFile* file, void* data, std::size_t size) {
  return std::fread(data, 1, size, file->stream);
}

// The kernel gives less than is asked for only where the file ends, or on an error.
std::size_t read_at(ReadFile* file, std::uint64_t offset, void* data, std::size_t size) {
  const ssize_t count = pread(fileno(file->stream), data, size, static_cast<off_t>(offset));
  return count < 0 ? 0 : static_cast<std::size_t>(count);
}

bool read_failed(const ReadFile* file) {
  return std::ferror(file->stream) != 0;
}

std::uint64_t read_size(const ReadFile* file) {
  struct stat status{};
  return fstat(fileno(file->stream), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

void read_prefetch(ReadFile* file, std::uint64_t offset, std::size_t size) {
  posix_fadvise(fileno(file->stream), static_cast<off_t>(offset), static_cast<off_t>(size),
                POSIX_FADV_WILLNEED);
}

void read_close(ReadFile* file) {
  std::fclose(file->stream);
  delete file;
}

struct StoreFile {
  int fd = -1;
  int error = 0;  // errno of the write that failed
  std::string path, temporary;
};

StoreFile* store_open(const char* name) {
  const std::string path = files_path(name);
  errno = 0;
  if (path.empty()) return nullptr;
  std::string temporary;
  const int fd = temporary_open(path, temporary);
  if (fd < 0) return nullptr;
  auto* const file = new StoreFile;
  file->fd = fd;
  file->path = path;
  file->temporary = temporary;
  return file;
}

void store_bytes(StoreFile* file, const void* data, std::size_t size) {
  if (file->error != 0) return;
  // A disk takes all of it, unless it is full or fails.
  const ssize_t count = write(file->fd, data, size);
  if (count != static_cast<ssize_t>(size)) file->error = count < 0 ? errno : ENOSPC;
}

namespace {

// Notes the first step that fails.
void step(StoreFile* file, bool good) {
  if (!good && file->error == 0) file->error = errno;
}

// Replaces the old file by what was written, if that is whole.
bool take_place(StoreFile* file) {
  close(file->fd);
  if (file->error == 0) step(file, rename(file->temporary.c_str(), file->path.c_str()) == 0);
  if (file->error != 0) unlink(file->temporary.c_str());
  return file->error == 0;
}

// The end of the record. False with errno if a step failed.
bool store_end(StoreFile* file) {
  const int error = file->error;
  delete file;
  if (error != 0) errno = error;
  return error == 0;
}

}  // namespace

bool store_close(StoreFile* file) {
  if (file->error == 0) step(file, fsync(file->fd) == 0);
  if (take_place(file)) step(file, sync_folder(folder_of(file->path)));
  return store_end(file);
}

bool note_store(const char* name, const void* data, std::size_t size) {
  StoreFile* const file = store_open(name);
  if (!file) return false;
  store_bytes(file, data, size);
  take_place(file);
  return store_end(file);
}
