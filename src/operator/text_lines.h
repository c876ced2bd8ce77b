// Reading of the installation's text files, with line ends of any system.
#pragma once

#include <cstddef>
#include <string>

struct ReadFile;  // platform/files.h

// Reads a line with its line break, at most `most` characters; a longer line comes in pieces.
// Carriage returns are skipped. Empty after the last line.
std::string text_line(ReadFile* file, std::size_t most);
