// Power cuts at each write, fsync and rename of a store. Files that were not synced by then are cut
// in half. The next start has to read the old books or the new ones, whole.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <system_error>

#include "books/audits.h"
#include "books/book_file.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "platform/files.h"
#include "tests/temp_folder.h"

extern "C" {
ssize_t __real_write(int fd, const void* data, size_t size);
int __real_fsync(int fd);
int __real_rename(const char* from, const char* to);
}

namespace {

int steps_seen = 0;
int cut_at = -1;  // the step of the power cut; -1: none
std::map<std::string, bool> unsynced;
bool folders_fail = false;  // fsync of a folder fails, and so does reading behind its first file

bool is_folder(int fd) {
  struct stat status{};
  return fstat(fd, &status) == 0 && S_ISDIR(status.st_mode);
}

std::string path_of(int fd) {
  return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(fd));
}

[[noreturn]] void power_cut() {
  for (const auto& [path, dirty] : unsynced) {
    std::error_code gone;
    const auto size = std::filesystem::file_size(path, gone);
    if (dirty && !gone) std::filesystem::resize_file(path, size / 2, gone);
  }
  _exit(0);
}

bool step() {
  return ++steps_seen == cut_at;
}

}  // namespace

extern "C" {

ssize_t __wrap_write(int fd, const void* data, size_t size) {
  if (cut_at >= 0 && fd > 2) {
    unsynced[path_of(fd)] = true;
    if (step()) {
      __real_write(fd, data, size / 2);
      power_cut();
    }
  } else if (fd > 2) {
    ++steps_seen;
  }
  return __real_write(fd, data, size);
}

int __wrap_fsync(int fd) {
  if (step()) power_cut();
  unsynced[path_of(fd)] = false;
  if (folders_fail && is_folder(fd)) {
    errno = EIO;
    return -1;
  }
  return __real_fsync(fd);
}

// Also called by the library's directory iterators.
dirent* readdir(DIR* folder) {
  static const auto real = reinterpret_cast<dirent* (*)(DIR*)>(dlsym(RTLD_NEXT, "readdir"));
  static bool file_seen = false;
  if (folders_fail && file_seen) {
    errno = EIO;
    return nullptr;
  }
  dirent* const entry = real(folder);
  file_seen = entry != nullptr && entry->d_name[0] != '.';
  return entry;
}

int __wrap_rename(const char* from, const char* to) {
  if (step()) power_cut();
  const bool dirty = unsynced[from];
  unsynced.erase(from);
  unsynced[to] = dirty;
  return __real_rename(from, to);
}
}

namespace {

const char* const FILES[] = {"prefs", "prefbak", "audits", "audbak", "histo"};

void set_state(int value) {
  for (auto& row : prefs) row.int_value = value;
  for (auto& row : audits) row.count = value;
  for (auto& side : histogram) {
    for (auto& cell : side) cell = static_cast<std::uint32_t>(value);
  }
}

void store_all() {
  prefs_save();
  audits_save();
}

TEST(PowerCut, AtAnyStepLeavesOldOrNewBooks) {
  TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  prefs_reset();
  audits_reset();

  set_state(2);
  steps_seen = 0;
  store_all();
  const int steps = steps_seen;
  ASSERT_EQ(steps, 5 * 5) << "two writes, a sync, a rename and the folder's sync for each file";
  std::map<std::string, std::string> after;
  for (const char* name : FILES) after[name] = drive.read(name);
  set_state(1);
  store_all();
  std::map<std::string, std::string> before;
  for (const char* name : FILES) before[name] = drive.read(name);

  for (int cut = 1; cut <= steps; ++cut) {
    SCOPED_TRACE(testing::Message() << "power cut at step " << cut);
    for (const char* name : FILES) drive.write(name, before[name]);
    const pid_t child = fork();
    if (child == 0) {
      steps_seen = 0;
      cut_at = cut;
      set_state(2);
      store_all();
      _exit(1);  // not cut
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);

    bool older = false;  // files are stored in order: none is new behind an old one
    for (const char* name : FILES) {
      const std::string now = drive.read(name);
      EXPECT_TRUE(now == before[name] || now == after[name]) << name;
      EXPECT_FALSE(older && now == after[name]) << name;
      older = now == before[name];
    }

    prefs_load();
    audits_load();
    const int value = pref_int(PREF_VOLUME);
    EXPECT_TRUE(value == 1 || value == 2);
    for (const auto& row : prefs) EXPECT_EQ(row.int_value, value);
    const int count = audit_count(AUDIT_BUGS);
    EXPECT_TRUE(count == 1 || count == 2);
    for (int i = AUDIT_COIN_DROPS; i < AUDIT_COUNT; ++i) EXPECT_EQ(audits[i].count, count);
    const std::uint32_t cell = histogram[0][0];
    EXPECT_TRUE(cell == 1 || cell == 2);
    EXPECT_EQ(histogram[1][1399], cell);
  }
}

// A coin is in the journal on the disk before the books count it, and its line is whole.
TEST(PowerCut, AtAnyStepJournalIsNotBehindTheBooks) {
  constexpr const char* LINE = " 5 coin side=left coins=1 part=0 credits=1\n";
  TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  int seen_first = 0;
  for (int cut = 1; cut < 30; ++cut) {
    SCOPED_TRACE(testing::Message() << "power cut at step " << cut);
    set_state(1);
    audits_save();
    const std::string before = drive.read("audits");
    std::filesystem::remove(drive.file("journal"));
    const pid_t child = fork();
    if (child == 0) {
      journal_open("1", 5);
      steps_seen = 0;
      cut_at = cut;
      journal_put(JOURNAL_COIN, {SIDE_LEFT, 1, 0, 1});
      set_state(2);
      audits_save();
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    const bool in_journal = drive.read("journal").ends_with(LINE);
    const bool in_books = drive.read("audits") != before;
    EXPECT_TRUE(in_journal || !in_books);
    seen_first += in_journal && !in_books ? 1 : 0;
    journal_open("1", 6);
    journal_close();
    const std::string after = drive.read("journal");
    EXPECT_EQ(after.find(LINE) != std::string::npos, in_journal);
  }
  EXPECT_GT(seen_first, 0);
}

TEST(FailingFolder, StoreFailsWhenFolderCannotBeSynced) {
  TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  ASSERT_TRUE(book_store(R"(d:\prefs)", "030P", "old", 3));
  folders_fail = true;
  EXPECT_FALSE(book_store(R"(d:\prefs)", "030P", "new", 3));
  EXPECT_EQ(errno, EIO);
  folders_fail = false;
  EXPECT_EQ(drive.read("prefs"), "030Pnew");
}

TEST(FullDisk, HalfOfAFileDoesNotReplaceTheOldOne) {
  TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  ASSERT_TRUE(book_store(R"(d:\prefs)", "030P", "old", 3));
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit room{};
  getrlimit(RLIMIT_FSIZE, &room);
  rlimit full = room;
  full.rlim_cur = 6;
  setrlimit(RLIMIT_FSIZE, &full);
  EXPECT_FALSE(book_store(R"(d:\prefs)", "030P", "new", 3));
  EXPECT_EQ(errno, ENOSPC);
  setrlimit(RLIMIT_FSIZE, &room);
  EXPECT_EQ(drive.read("prefs"), "030Pold");
  EXPECT_FALSE(drive.has("prefs.new"));
}

TEST(FailingFolder, NameInAnyCaseIsNotFound) {
  TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  drive.write("one", "1");
  drive.write("two", "2");
  folders_fail = true;
  EXPECT_NO_THROW(EXPECT_EQ(read_open_any_case(R"(d:\THREE)"), nullptr));
  folders_fail = false;
}

}  // namespace
