// The files of the books, in the order in which they are stored.
#pragma once

#include <cstddef>

enum BookNumber {
  BOOK_AUDITS,
  BOOK_AUDITS_BACKUP,
  BOOK_HISTOGRAM,
  BOOK_PREFS,
  BOOK_PREFS_BACKUP,
  BOOK_COUNT,
};

struct BookFile {
  const char* name;
  const char* magic;
};
inline constexpr BookFile BOOK_FILES[BOOK_COUNT] = {{R"(d:\audits)", "810A"},
                                                    {R"(d:\audbak)", "810A"},
                                                    {R"(d:\histo)", "500H"},
                                                    {R"(d:\prefs)", "030P"},
                                                    {R"(d:\prefbak)", "030P"}};

// `book_read` and `book_store` of one of them. `store_report` and the journal get the first store
// that fails and the first one that works again. One thread at a time.
bool book_load(BookNumber number, void* data, std::size_t size);
bool book_keep(BookNumber number, const void* data, std::size_t size);
