// Whether a rendered file is up to date is told by what it was made from, not by its age: a key of
// the source file, of all sources that it pulls in, and of the tools that turn them into a file.
#pragma once

#include <string>

namespace art {

// A key of 16 hexadecimal digits that changes whenever the named source file does, or any of the
// project's headers that it includes, or the .cpp file of the same name beside such a header.
// source_file counts from the project's root ("art/frog.cpp"); a file that can't be read counts as
// empty. Any thread.
std::string source_key(const std::string& source_file);

// The same for sources below another root.
std::string source_key_below(const std::string& root, const std::string& source_file);

}  // namespace art
