// The journal as a reader has it: its lines, checked against the kinds of books/journal_list.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "books/journal_list.h"

struct JournalLine {
  std::int64_t utc_ms = 0;
  std::int64_t boot = 0;
  JournalKind kind = JOURNAL_STOP;
  std::string_view fields[JOURNAL_FIELDS_MOST];  // without their names
  std::string_view text;                         // the whole line
};

// The value of a field, empty if the kind has none of that name.
std::string_view field_of(const JournalLine& line, std::string_view name);
std::int64_t number_of(const JournalLine& line, std::string_view name);
// 0 for left.
int side_of(const JournalLine& line);

// False if it isn't a whole line of a known kind.
bool journal_parse(std::string_view text, JournalLine& line);

struct Journal {
  std::vector<std::string> texts;  // what the lines point into
  std::vector<JournalLine> lines;  // oldest first
};

// Adds the lines of a file. A last line without its end is torn and ignored. Empty, or a line that
// says how many lines can't be read.
std::string journal_add(Journal& journal, const std::string& name, std::string text);
