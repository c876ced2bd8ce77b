#include "tools/books/table.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdio>

namespace {

// As JSON has it: digits, perhaps with a sign in front and a point within, but no leading zero.
bool is_number(const std::string& text) {
  const std::size_t begin = text.starts_with('-') ? 1 : 0;
  const std::size_t point = std::min(text.find('.'), text.size());
  const auto digits = [&](std::size_t from, std::size_t to) {
    return to > from && std::all_of(text.begin() + static_cast<std::ptrdiff_t>(from),
                                    text.begin() + static_cast<std::ptrdiff_t>(to),
                                    [](unsigned char c) { return std::isdigit(c) != 0; });
  };
  if (!digits(begin, point) || (text[begin] == '0' && point > begin + 1)) return false;
  return point == text.size() || digits(point + 1, text.size());
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < ' ') {
      char code[8];
      std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
      result += code;
      continue;
    }
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

std::string csv_value(const std::string& text) {
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  std::string result = "\"";
  for (const char c : text) result += c == '"' ? std::string("\"\"") : std::string(1, c);
  return result + '"';
}

std::string csv_line(const std::vector<std::string>& values) {
  std::string line;
  for (const std::string& value : values)
    line += (&value == values.data() ? "" : ",") + csv_value(value);
  return line + '\n';
}

std::string json_row(const Table& table, const std::vector<std::string>& row) {
  std::string line = "    {";
  for (std::size_t i = 0; i < row.size(); ++i) {
    line += (i > 0 ? ", " : "") + quoted(table.columns[i]) + ": " +
            (row[i].empty()      ? "null"
             : is_number(row[i]) ? row[i]
                                 : quoted(row[i]));
  }
  return line + "}";
}

}  // namespace

std::string table_text(const Table& table) {
  std::vector<std::size_t> widths;
  widths.reserve(table.columns.size());
  for (const std::string& column : table.columns) widths.push_back(column.size());
  for (const auto& row : table.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string text;
  const auto add = [&](const std::vector<std::string>& row) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string space(widths[i] - row[i].size(), ' ');
      const bool to_the_right = is_number(table.rows.empty() ? "" : table.rows[0][i]);
      line += (i > 0 ? "  " : "") + (to_the_right ? space + row[i] : row[i] + space);
    }
    text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  };
  add(table.columns);
  for (const auto& row : table.rows) add(row);
  return text;
}

std::string table_csv(const Table& table) {
  std::string text = csv_line(table.columns);
  for (const auto& row : table.rows) text += csv_line(row);
  return text;
}

std::string table_json(const Table& table, const std::vector<std::string>& damages) {
  std::string text = "{\n  " + quoted(table.name) + ": [";
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    text += (i > 0 ? ",\n" : "\n") + json_row(table, table.rows[i]);
  }
  text += "],\n  \"damaged\": [";
  for (std::size_t i = 0; i < damages.size(); ++i) text += (i > 0 ? ", " : "") + quoted(damages[i]);
  return text + "]\n}\n";
}
