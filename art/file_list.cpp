#include "art/file_list.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <vector>

#include "operator/list_sum.h"

namespace art {

namespace fs = std::filesystem;

namespace {

struct FileSum {
  uint64_t size;
  int32_t crc;  // signed, as the list has it
  bool whole;
};

FileSum file_sum(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<char> block(1 << 18);
  uint32_t sum = LIST_SUM_START;
  uint64_t size = 0;
  while (in.read(block.data(), static_cast<std::streamsize>(block.size())) || in.gcount() > 0) {
    const auto count = static_cast<size_t>(in.gcount());
    sum = list_sum(sum, block.data(), count);
    size += count;
  }
  return {size, static_cast<int32_t>(sum), in.eof() && !in.bad()};
}

bool is_program(const fs::directory_entry& entry, std::error_code& error) {
  return entry.is_regular_file(error) &&
         (entry.status(error).permissions() & fs::perms::owner_exec) != fs::perms::none;
}

// What an installation needs: its programs, and everything below images/ and sounds/.
std::vector<fs::path> files_listed(const fs::path& outdir, std::error_code& error) {
  std::vector<fs::path> paths;
  for (fs::directory_iterator it(outdir, error), end; !error && it != end; it.increment(error))
    if (is_program(*it, error)) paths.push_back(it->path());
  for (const char* folder : {"images", "sounds"}) {
    if (error || !fs::exists(outdir / folder, error)) continue;
    for (fs::recursive_directory_iterator it(outdir / folder, error), end; !error && it != end;
         it.increment(error))
      if (it->is_regular_file(error)) paths.push_back(it->path());
  }
  return paths;
}

// A half-written list must never look complete.
bool lines_write(const fs::path& list, const std::vector<std::string>& lines) {
  fs::path part = list;
  part += ".part";
  std::ofstream out(part, std::ios::binary);
  // The last line needs its line break too; otherwise the boot check ignores it.
  for (const std::string& line : lines) out << line << "\n";
  out.close();
  std::error_code error;
  if (out) fs::rename(part, list, error);
  return out && !error;
}

}  // namespace

int file_list_write(const std::string& outdir) {
  std::error_code error;
  const std::vector<fs::path> paths = files_listed(outdir, error);
  if (error || paths.empty()) return -1;
  std::vector<std::string> lines;
  for (const fs::path& path : paths) {
    const FileSum sum = file_sum(path);
    if (!sum.whole) return -1;
    std::string name = path.lexically_relative(outdir).generic_string();
    std::replace(name.begin(), name.end(), '/', '\\');
    lines.push_back(name + " " + std::to_string(sum.size) + " " + std::to_string(sum.crc));
  }
  std::sort(lines.begin(), lines.end());
  return lines_write(fs::path(outdir) / FILE_LIST_NAME, lines) ? static_cast<int>(lines.size())
                                                               : -1;
}

}  // namespace art
