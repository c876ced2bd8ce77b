#include "books/book_list.h"

#include <cerrno>
#include <cstdint>
#include <string_view>

#include "books/book_file.h"
#include "books/journal.h"
#include "books/store_report.h"

namespace {

constexpr bool journal_names_books() {
  for (std::size_t i = 0; i < BOOK_COUNT; ++i) {
    if (journal_word(journal_words("file"), i) != std::string_view(BOOK_FILES[i].name).substr(3)) {
      return false;
    }
  }
  return true;
}
static_assert(journal_names_books());

}  // namespace

bool book_load(BookNumber number, void* data, std::size_t size) {
  return book_read(BOOK_FILES[number].name, BOOK_FILES[number].magic, data, size);
}

bool book_keep(BookNumber number, const void* data, std::size_t size) {
  const bool stored = book_store(BOOK_FILES[number].name, BOOK_FILES[number].magic, data, size);
  const int error = stored ? 0 : errno;
  if (store_report(BOOK_FILES[number].name, error)) {
    journal_put(error == 0 ? JOURNAL_STORED : JOURNAL_NOT_STORED,
                {static_cast<std::int32_t>(number)});
  }
  return stored;
}
