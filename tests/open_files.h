// How many files the program has open.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

inline std::ptrdiff_t open_files() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator());
}
