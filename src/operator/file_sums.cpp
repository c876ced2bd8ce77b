#include "operator/file_sums.h"

#include <cstdlib>
#include <vector>

#include "operator/list_sum.h"
#include "operator/text_lines.h"
#include "platform/files.h"
#include "platform/tokens.h"

namespace {

constexpr std::size_t BLOCK = 1 << 18;
constexpr std::size_t LINE_MOST = 254;

// A last line without a line break doesn't count.
bool next_line(ReadFile* list, std::string& line) {
  line = text_line(list, LINE_MOST);
  return line.ends_with('\n') || line.size() == LINE_MOST;
}

std::int32_t decimal(const char* text) {
  return static_cast<std::int32_t>(std::strtol(text, nullptr, 10));
}

FileCheck check_file(const char* name, std::int32_t size, std::int32_t crc) {
  ReadFile* file = read_open_any_case(name);
  if (file == nullptr) return FILE_MISSING;
  std::int32_t found_size = 0;
  std::int32_t found_crc = 0;
  if (!crc_file_sum(file, &found_size, &found_crc)) return FILE_DAMAGED;
  return found_size == size && found_crc == crc ? FILES_GOOD : FILE_DAMAGED;
}

}  // namespace

bool crc_file_sum(ReadFile* file, std::int32_t* size, std::int32_t* crc) {
  std::vector<unsigned char> block(BLOCK);
  std::uint32_t sum = LIST_SUM_START;
  std::uint32_t total = 0;
  for (std::size_t count; (count = read_bytes(file, block.data(), BLOCK)) > 0;) {
    sum = list_sum(sum, block.data(), count);
    total += static_cast<std::uint32_t>(count);
  }
  const bool whole = !read_failed(file);
  read_close(file);
  *size = static_cast<std::int32_t>(total);
  *crc = static_cast<std::int32_t>(sum);
  return whole;
}

FileCheck file_list_check(std::string& current, void (*checked)()) {
  ReadFile* list = read_open_any_case(FILE_LIST_NAME);
  if (list == nullptr) return LIST_MISSING;
  FileCheck result = FILES_GOOD;
  for (std::string line; result == FILES_GOOD && next_line(list, line);) {
    if (app_tokenize_line(line.c_str()) != 3) continue;
    current = token_table[0];
    result = check_file(token_table[0], decimal(token_table[1]), decimal(token_table[2]));
    if (result == FILES_GOOD) checked();
  }
  // The files in the unread part would never be checked.
  if (read_failed(list)) result = LIST_MISSING;
  read_close(list);
  return result;
}
