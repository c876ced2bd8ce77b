#include "books/book_list.h"

#include <cstdint>
#include <string_view>

#include "books/book_file.h"
#include "books/journal.h"

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

constinit bool fails[BOOK_COUNT]{};  // its last store did

}  // namespace

bool book_load(BookNumber number, void* data, std::size_t size) {
  return book_read(BOOK_FILES[number].name, BOOK_FILES[number].magic, data, size);
}

bool book_keep(BookNumber number, const void* data, std::size_t size) {
  const bool stored = book_store(BOOK_FILES[number].name, BOOK_FILES[number].magic, data, size);
  if (stored == fails[number])
    journal_put(stored ? JOURNAL_STORED : JOURNAL_NOT_STORED, {static_cast<std::int32_t>(number)});
  fails[number] = !stored;
  return stored;
}
