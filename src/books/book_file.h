// A file of the books: a 4-byte magic, then one block of data.
#pragma once

#include <cstddef>

// Reads the data of a file into `data` if the file opens and begins with `magic` (4 characters). If
// the file ends early, the rest of `data` stays as it was. False if the file is missing or has
// another magic.
bool book_read(const char* name, const char* magic, void* data, std::size_t size);

// Stores magic and data. False if the file can't be written: the old content stays, and errno says
// why (0 without a drive, as in the payout lab).
bool book_store(const char* name, const char* magic, const void* data, std::size_t size);
