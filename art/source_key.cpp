#include "art/source_key.h"

#include <cairo.h>
#include <pango/pango.h>

#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace art {

namespace {

struct Hash {
  uint64_t value = 14695981039346656037ull;
  void add(const std::string& bytes) {
    for (char c : bytes) value = (value ^ static_cast<uint8_t>(c)) * 1099511628211ull;
  }
};

std::string file_text(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// Adds a source and everything that it includes to the set.
void collect(const std::string& root, const std::string& file, std::set<std::string>& found) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(root + "/" + file, error) || !found.insert(file).second)
    return;
  std::istringstream text(file_text(root + "/" + file));
  for (std::string line; std::getline(text, line);) {
    const std::string start = "#include \"";
    if (!line.starts_with(start)) continue;
    collect(root, line.substr(start.size(), line.find('"', start.size()) - start.size()), found);
  }
  // The .cpp file beside a header has its implementation.
  if (file.ends_with(".h")) collect(root, file.substr(0, file.size() - 2) + ".cpp", found);
}

}  // namespace

std::string source_key_below(const std::string& root, const std::string& source_file) {
  std::set<std::string> files;
  collect(root, source_file, files);
  Hash hash;
  hash.add(__VERSION__);
  hash.add(cairo_version_string());
  hash.add(pango_version_string());
  for (const std::string& file : files) {
    hash.add(file);
    std::string path = root;
    path.append("/").append(file);
    hash.add(file_text(path));
  }
  char text[32];
  std::snprintf(text, sizeof text, "%016" PRIx64, hash.value);
  return text;
}

std::string source_key(const std::string& source_file) {
  return source_key_below(ART_SOURCE_ROOT, source_file);
}

}  // namespace art
