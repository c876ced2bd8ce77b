// A folder of the test's own, gone with the test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class TempFolder {
 public:
  TempFolder() {
    std::string made = (std::filesystem::temp_directory_path() / "lilyhop-XXXXXX").string();
    path_ = mkdtemp(made.data());
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] std::string path() const { return path_; }
  [[nodiscard]] std::string file(const std::string& name) const { return path_ + "/" + name; }

  void write(const std::string& name, const std::string& bytes) const {
    std::ofstream(file(name), std::ios::binary) << bytes;
  }
  [[nodiscard]] std::string read(const std::string& name) const {
    std::ifstream stream(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  [[nodiscard]] bool has(const std::string& name) const {
    return std::filesystem::exists(file(name));
  }

 private:
  std::string path_;
};
