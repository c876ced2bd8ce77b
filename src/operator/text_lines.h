// Lines of the text files that come with an installation, wherever they were written.
#pragma once

#include <cstddef>
#include <string>

struct ReadFile;  // platform/files.h

// Reads up to and with the next line break, but no more than `most` characters; what is longer
// comes in pieces. Carriage returns are left out, as systems that write them leave them out of
// text. Empty behind the last line.
std::string text_line(ReadFile* file, std::size_t most);
