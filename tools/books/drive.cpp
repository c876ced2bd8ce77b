#include "tools/books/drive.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "books/book_list.h"
#include "books/journal.h"  // JOURNAL_FILE
#include "tools/books/moment.h"

namespace {

constexpr std::string_view COLLECTION_HEAD = "Lily Hop collection ";

std::string bare(const char* name) {
  return name + std::strlen(R"(d:\)");
}

bool read_file(const std::string& path, std::string& bytes) {
  std::error_code failed;
  if (!std::filesystem::is_regular_file(path, failed)) return false;
  const auto size = std::filesystem::file_size(path, failed);
  std::ifstream stream(path, std::ios::binary);
  bytes.resize(failed ? 0 : size);
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return !stream.bad() && !bytes.empty();
}

std::int64_t changed_s(const std::string& path) {
  struct stat about{};
  return stat(path.c_str(), &about) == 0 ? static_cast<std::int64_t>(about.st_mtime) : 0;
}

// Empty, or what is wrong with the file.
std::string read_book(const Drive& drive, BookNumber number, void* data, std::size_t size) {
  const BookFile& book = BOOK_FILES[number];
  const std::string name = bare(book.name);
  std::string bytes;
  if (!read_file(drive.folder + "/" + name, bytes)) return name + ": is missing or can't be read";
  if (!bytes.starts_with(book.magic)) return name + ": doesn't begin with " + book.magic;
  const std::size_t head = std::strlen(book.magic);
  if (bytes.size() != head + size) {
    return name + ": has " + std::to_string(bytes.size()) + " bytes instead of " +
           std::to_string(head + size);
  }
  std::memcpy(data, bytes.data() + head, size);
  return {};
}

bool read_pair(Drive& drive, BookNumber main, BookNumber backup, void* data, std::size_t size) {
  const std::string wrong = read_book(drive, main, data, size);
  if (wrong.empty()) return true;
  const std::string wrong_too = read_book(drive, backup, data, size);
  const std::string backup_name = bare(BOOK_FILES[backup].name);
  drive.damages.push_back(
      wrong + (wrong_too.empty() ? "; " + backup_name + " is read instead" : "; " + wrong_too));
  return wrong_too.empty();
}

std::string journal_path(const Drive& drive, const char* name) {
  return drive.folder + "/" + bare(name);
}

// A running game may turn the file over meanwhile: then it is read again.
void read_texts(const Drive& drive, std::string& old_text, std::string& text) {
  std::string old_again;
  for (int tries = 0; tries < 3; ++tries) {
    old_text.clear();
    old_again.clear();
    read_file(journal_path(drive, JOURNAL_OLD_FILE), old_text);
    read_file(journal_path(drive, JOURNAL_FILE), text);
    read_file(journal_path(drive, JOURNAL_OLD_FILE), old_again);
    if (old_text == old_again) break;
  }
}

// The last line of a coin or swipe, or nothing. Most lines aren't looked at closely: there are
// many.
std::string_view last_coin(std::string_view text) {
  constexpr std::size_t BOOT_AT = 25;  // behind the time
  while (!text.empty()) {
    const std::size_t begin = text.size() < 2 ? 0 : text.rfind('\n', text.size() - 2) + 1;
    const std::string_view one = text.substr(begin);
    const std::string_view kind = one.substr(std::min(one.find(' ', BOOT_AT), one.size()));
    if (kind.starts_with(" coin ") || kind.starts_with(" swipe ")) return one;
    text.remove_suffix(one.size());
  }
  return {};
}

// Cuts off what is before the last start, but for the last coin. False if there is no start.
bool keep_last_run(std::string& text) {
  const std::size_t start = text.rfind(" start version=");
  if (start == std::string::npos) return false;
  const std::size_t run = text.rfind('\n', start) + 1;  // 0 if it is the first line
  const std::string_view coin = last_coin(text);
  const bool before = !coin.empty() && coin.data() < text.data() + run;
  text.replace(0, run, before ? std::string(coin) : std::string());
  return true;
}

void read_journal(Drive& drive, JournalPart part) {
  std::string old_text, text;
  if (part == WHOLE_JOURNAL || !read_file(journal_path(drive, JOURNAL_FILE), text) ||
      !keep_last_run(text)) {
    read_texts(drive, old_text, text);
    if (part == LAST_RUN) keep_last_run(text.insert(0, std::exchange(old_text, {})));
  }
  if (old_text.empty() && text.empty()) {
    drive.damages.push_back(bare(JOURNAL_FILE) + ": is missing or can't be read");
  }
  for (auto* half : {&old_text, &text}) {
    const std::string name = bare(half == &text ? JOURNAL_FILE : JOURNAL_OLD_FILE);
    const std::string wrong = journal_add(drive.journal, name, std::move(*half));
    if (!wrong.empty()) drive.damages.push_back(wrong);
  }
}

}  // namespace

std::string drive_read(const std::string& folder, Drive& drive, JournalPart part) {
  std::error_code failed;
  if (!std::filesystem::is_directory(folder, failed)) {
    return folder + ": isn't a folder; an archive has to be unpacked first";
  }
  drive.folder = folder;
  // The books first: the journal of a running game is never behind them.
  drive.has_audits =
      read_pair(drive, BOOK_AUDITS, BOOK_AUDITS_BACKUP, drive.audits, sizeof drive.audits);
  drive.has_prefs =
      read_pair(drive, BOOK_PREFS, BOOK_PREFS_BACKUP, drive.prefs, sizeof drive.prefs);
  drive.stored_s = changed_s(folder + "/" + bare(BOOK_FILES[BOOK_AUDITS].name));
  read_journal(drive, part);
  if (!drive.has_audits && drive.journal.lines.empty()) {
    return folder + ": has neither books nor a journal";
  }
  return {};
}

std::string counter_name(const AuditRow& row) {
  const std::string_view name(row.name, sizeof row.name);
  return std::string(name.substr(0, name.find('\0')));
}

std::string file_replace(const std::string& path, const std::string& text) {
  const std::string temporary = path + ".new";
  std::FILE* const file = std::fopen(temporary.c_str(), "wb");
  int error = file == nullptr ? errno : 0;
  if (file != nullptr) {
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size()) error = errno;
    if (std::fclose(file) != 0 && error == 0) error = errno;
  }
  if (error == 0 && std::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
  return error == 0 ? std::string() : path + ": can't be written: " + std::strerror(error);
}

Collection collection_read(const std::string& path) {
  Collection collection;
  std::string text;
  if (!read_file(path, text) || !text.starts_with(COLLECTION_HEAD)) return collection;
  std::istringstream lines(text);
  std::string line;
  std::getline(lines, line);
  collection.known = moment_from_journal(line.substr(COLLECTION_HEAD.size()), collection.utc_ms);
  while (std::getline(lines, line)) {
    const std::size_t at = line.rfind('=');
    if (at == std::string::npos) continue;
    collection.counts[line.substr(0, at)] = std::strtoll(line.c_str() + at + 1, nullptr, 10);
  }
  return collection;
}

std::string collection_write(const std::string& path, const Drive& drive, std::int64_t utc_ms) {
  std::string text = std::string(COLLECTION_HEAD) + moment_for_files(utc_ms) + '\n';
  for (const AuditRow& row : drive.audits) {
    text += counter_name(row) + '=' + std::to_string(row.count) + '\n';
  }
  return file_replace(path, text);
}
