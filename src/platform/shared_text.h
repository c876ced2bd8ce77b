// A line of text that one thread writes and others read.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>

#include "platform/shared.h"

// Holds up to SIZE - 1 characters. During a change a reader may see letters of both lines, but
// never beyond the end.
template <std::size_t SIZE>
class SharedText {
 public:
  // Only the writer calls it. A text that is too long is cut.
  void set(const char* text) {
    std::size_t i = 0;
    for (; i + 1 < SIZE && text[i] != '\0'; ++i) letters_[i] = text[i];
    letters_[i] = '\0';
  }
  void format(const char* form, std::va_list arguments) {
    char line[SIZE];
    std::vsnprintf(line, SIZE, form, arguments);
    set(line);
  }

  // A copy of the present text.
  struct Copy {
    char text[SIZE];
  };
  [[nodiscard]] Copy copy() const {
    Copy copy;
    for (std::size_t i = 0; i < SIZE; ++i) copy.text[i] = letters_[i];
    copy.text[SIZE - 1] = '\0';
    return copy;
  }

 private:
  Shared<char> letters_[SIZE]{};
};
