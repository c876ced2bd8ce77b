// The parts of the game's books on disk that the cabinet uses: it reads audits to compare them with
// what came out, and writes settings before a game starts.
#pragma once

#include <string>

#include "books/audit_list.h"  // AuditIndex

struct BooksValue {
  bool found = false;
  double value = 0;
  std::string why;  // why it wasn't found
};

// The value of an audit row by its display name, from `drive`/audits. Times are in milliseconds.
BooksValue books_audit(const std::string& drive, const std::string& name);
// The same of a counter that each side has.
BooksValue books_audit(const std::string& drive, AuditIndex row, int side);

// The value of a setting by its display name, from `drive`/prefs.
BooksValue books_pref(const std::string& drive, const std::string& name);

// Changes a setting in both files of `drive`. Creates missing files with the settings of a new
// cabinet. The game must not be running. Returns an error text, empty on success.
std::string books_set_pref(const std::string& drive, const std::string& name,
                           const std::string& value);
