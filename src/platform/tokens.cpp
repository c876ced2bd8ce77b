#include "platform/tokens.h"

#include <cctype>
#include <cstring>

namespace {

constexpr std::size_t LINE_LIMIT = 256;

bool ends_token(char c) {
  return c == 0 || std::strchr(" ,\n\t()\r", c) != nullptr;
}

}  // namespace

char token_table[TOKEN_SLOTS][TOKEN_SIZE];

int app_tokenize_line(const char* line) {
  if (std::strlen(line) >= LINE_LIMIT) return 0;
  int count = 0;
  while (count < TOKEN_SLOTS) {
    while (*line == ' ' || *line == '\t') ++line;
    if (*line == 0 || *line == ';' || *line == '\n') break;
    char* slot = token_table[count];
    int length = 0;
    for (; !ends_token(*line); ++line) {
      if (length < TOKEN_SIZE - 1) {
        slot[length++] = static_cast<char>(std::toupper(static_cast<unsigned char>(*line)));
      }
    }
    slot[length] = 0;
    ++count;
    if (*line == 0) break;
    ++line;
  }
  return count;
}
