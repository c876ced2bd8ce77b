// A rendered file is out of date if its sources have changed, whatever its age. The key covers the
// source file, all sources that it includes, and the tools that turn them into a file.
#pragma once

#include <string>

namespace art {

// A key of 16 hexadecimal digits. It changes whenever the named source file, a project header that
// it includes, or the .cpp file of the same name beside such a header changes. source_file is
// relative to the project's root ("art/frog.cpp"); a file that can't be read counts as empty. Any
// thread.
std::string source_key(const std::string& source_file);

// The same with another root.
std::string source_key_below(const std::string& root, const std::string& source_file);

}  // namespace art
