// A line of text that one thread writes and others read.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>

#include "platform/shared.h"

// Holds up to SIZE - 1 characters. A reader that comes in the middle of a change sees some letters
// of each line, never past the end.
template <std::size_t SIZE>
class SharedText {
 public:
  // The writer alone. What is too long is cut off.
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

  // A copy of what stands there.
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
