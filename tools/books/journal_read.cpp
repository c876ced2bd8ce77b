#include "tools/books/journal_read.h"

#include <charconv>
#include <cstddef>
#include <system_error>
#include <utility>

#include "tools/books/moment.h"

namespace {

// Takes a text up to `end` off the front. False if there is no `end`.
bool take(std::string_view& rest, char end, std::string_view& taken) {
  const std::size_t at = rest.find(end);
  if (at == std::string_view::npos) return false;
  taken = rest.substr(0, at);
  rest.remove_prefix(at + 1);
  return true;
}

bool whole_number(std::string_view text, std::int64_t& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc{} && end == text.data() + text.size();
}

bool kind_of(std::string_view name, JournalKind& kind) {
  for (const JournalRow& row : JOURNAL_ROWS) {
    if (row.name != name) continue;
    kind = row.kind;
    return true;
  }
  return false;
}

// A value has no blank, or is quoted.
bool take_value(std::string_view& rest, std::string_view& value) {
  if (rest.starts_with('"')) {
    rest.remove_prefix(1);
    if (!take(rest, '"', value)) return false;
    if (rest.starts_with(' ')) rest.remove_prefix(1);
    return true;
  }
  if (take(rest, ' ', value)) return true;
  value = std::exchange(rest, {});
  return true;
}

// Whether a field that is a word or a number is one.
bool fits(JournalKind kind, std::string_view name, std::string_view value) {
  const std::string_view words = journal_words(name);
  if (!words.empty()) {
    for (std::size_t i = 0; !journal_word(words, i).empty(); ++i) {
      if (journal_word(words, i) == value) return true;
    }
    return false;
  }
  std::int64_t number = 0;
  return kind == JOURNAL_START || kind == JOURNAL_SETTING || whole_number(value, number);
}

bool take_fields(std::string_view rest, JournalLine& line) {
  for (std::size_t i = 0; i < JOURNAL_FIELDS_MOST; ++i) {
    const std::string_view name = journal_word(JOURNAL_ROWS[line.kind].fields, i);
    if (name.empty()) break;
    std::string_view found;
    if (!take(rest, '=', found) || found != name) return false;
    if (!take_value(rest, line.fields[i]) || !fits(line.kind, name, line.fields[i])) return false;
  }
  return rest.empty();
}

}  // namespace

std::string_view field_of(const JournalLine& line, std::string_view name) {
  for (std::size_t i = 0; i < JOURNAL_FIELDS_MOST; ++i) {
    if (journal_word(JOURNAL_ROWS[line.kind].fields, i) == name) return line.fields[i];
  }
  return {};
}

std::int64_t number_of(const JournalLine& line, std::string_view name) {
  std::int64_t value = 0;
  whole_number(field_of(line, name), value);
  return value;
}

int side_of(const JournalLine& line) {
  return field_of(line, "side") == "right" ? 1 : 0;
}

bool journal_parse(std::string_view text, JournalLine& line) {
  line = {};
  line.text = text;
  std::string_view rest = text, time, boot;
  if (!take(rest, ' ', time) || !moment_from_journal(time, line.utc_ms)) return false;
  if (!take(rest, ' ', boot) || !whole_number(boot, line.boot)) return false;
  std::string_view kind = rest;
  if (!take(rest, ' ', kind)) rest = {};
  return kind_of(kind, line.kind) && take_fields(rest, line);
}

std::string journal_add(Journal& journal, const std::string& name, std::string text) {
  // The lines point into the text, which must not move any more.
  journal.texts.reserve(8);
  std::string_view rest = journal.texts.emplace_back(std::move(text));
  constexpr std::size_t BYTES_A_LINE = 60;
  journal.lines.reserve(journal.lines.size() + rest.size() / BYTES_A_LINE);
  std::size_t number = 0, unread = 0, first = 0;
  for (std::string_view one; take(rest, '\n', one);) {
    ++number;
    JournalLine line;
    if (journal_parse(one, line)) {
      journal.lines.push_back(line);
    } else if (++unread == 1) {
      first = number;
    }
  }
  if (unread == 0) return {};
  return name + ": " + std::to_string(unread) + (unread == 1 ? " line" : " lines") +
         " can't be read, the first is line " + std::to_string(first);
}
