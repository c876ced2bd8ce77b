// A cabinet's drive d: as a reader has it. Nothing on it is changed.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "tools/books/journal_read.h"

struct Drive {
  std::string folder;
  bool has_audits = false, has_prefs = false;
  std::int64_t stored_s = 0;  // when the counters were stored
  Audits audits{};
  Prefs prefs{};
  Journal journal;
  std::vector<std::string> damages;  // what is missing or damaged, a line each
};

enum JournalPart {
  WHOLE_JOURNAL,
  LAST_RUN,  // from the last start on; of the file before it, only the last coin or swipe
};

// Reads all that can be read. Empty, or a line that says why there is nothing.
std::string drive_read(const std::string& folder, Drive& drive, JournalPart part = WHOLE_JOURNAL);

std::string counter_name(const AuditRow& row);

// Puts a text in place of a file in one step: a reader sees the old one or the new one. Empty, or a
// line that says what is wrong.
std::string file_replace(const std::string& path, const std::string& text);

// What the counters were at a collection, and when that was.
struct Collection {
  bool known = false;
  std::int64_t utc_ms = 0;
  std::map<std::string, std::int64_t> counts;  // by the counter's name
};
Collection collection_read(const std::string& path);
// Empty, or a line that says what is wrong.
std::string collection_write(const std::string& path, const Drive& drive, std::int64_t utc_ms);
