// A file of the books: a 4-byte magic, then one block of data.
#pragma once

#include <cstddef>

// Reads the data of a file over `data` if the file opens and begins with `magic` (4 characters). A
// file that ends early leaves the rest of `data` as it was. False with a missing file or another
// magic.
bool book_read(const char* name, const char* magic, void* data, std::size_t size);

// Stores magic and data. A file that can't be written is skipped: false, and what was there stays.
bool book_store(const char* name, const char* magic, const void* data, std::size_t size);
