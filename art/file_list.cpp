#include "art/file_list.h"

#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace art {

int32_t file_crc(const std::vector<uint8_t>& bytes) {
  // zlib inverts a sum on the way in and out; this one is inverted at neither end. The reader takes
  // signed decimals, so a sum with its top bit set has a minus sign.
  constexpr uint32_t kStart = 0x63046310;
  if (bytes.empty()) return static_cast<int32_t>(kStart);  // zlib takes no data for a request
  return static_cast<int32_t>(~static_cast<uint32_t>(crc32_z(~kStart, bytes.data(), bytes.size())));
}

int file_list_write(const std::string& outdir) {
  namespace fs = std::filesystem;
  std::error_code error;
  std::vector<fs::path> paths;
  for (const char* folder : {"images", "sounds"}) {
    if (!fs::exists(fs::path(outdir) / folder, error)) continue;
    for (fs::recursive_directory_iterator it(fs::path(outdir) / folder, error), end;
         !error && it != end; it.increment(error))
      if (it->is_regular_file(error)) paths.push_back(it->path());
  }
  if (error || paths.empty()) return -1;
  std::vector<std::string> lines;
  for (const fs::path& path : paths) {
    std::ifstream in(path, std::ios::binary);
    std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
    if (!in && !in.eof()) return -1;
    std::string name = fs::relative(path, outdir, error).generic_string();
    std::replace(name.begin(), name.end(), '/', '\\');
    lines.push_back(name + " " + std::to_string(bytes.size()) + " " +
                    std::to_string(file_crc(bytes)));
  }
  std::sort(lines.begin(), lines.end());
  std::ofstream out(fs::path(outdir) / "lhpcrc.txt", std::ios::binary);
  // The last line needs its line break too, or the boot check does not see it.
  for (const std::string& line : lines) out << line << "\n";
  out.close();
  return out ? static_cast<int>(lines.size()) : -1;
}

}  // namespace art
