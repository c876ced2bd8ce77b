#include "operator/text_lines.h"

#include "platform/files.h"

std::string text_line(ReadFile* file, std::size_t most) {
  std::string line;
  char c = 0;
  while (line.size() < most && read_bytes(file, &c, 1) == 1) {
    if (c == '\r') continue;
    line += c;
    if (c == '\n') break;
  }
  return line;
}
