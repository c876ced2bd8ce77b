#include "sound/playlist_expressions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "sound/playlist_lines.h"  // playlist_trim

namespace {

std::int32_t held(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

bool has_hex_prefix(std::string_view text) {
  return text.starts_with("0x") || text.starts_with("0X");
}

// Only digits of `base`.
bool digits(std::string_view text, int base, std::int64_t& value) {
  if (text.empty() || text.front() == '-') return false;  // from_chars would accept the sign
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, base);
  if (error == std::errc::result_out_of_range) value = std::numeric_limits<std::int64_t>::max();
  return stop == end && error != std::errc::invalid_argument;
}

bool term_value(std::string_view term, const JpsConstants& constants, std::int64_t& value) {
  if (has_hex_prefix(term)) return digits(term.substr(2), 16, value);
  if (digits(term, 10, value)) return true;
  const JpsConstant* const end = constants.rows + constants.count;
  const JpsConstant* const row = std::find_if(
      constants.rows, end, [term](const JpsConstant& constant) { return constant.name == term; });
  if (row == end) return false;
  value = row->value;
  return true;
}

}  // namespace

bool playlist_integer(std::string_view text, std::int32_t& value) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  std::int64_t size = 0;
  const bool good = has_hex_prefix(text)    ? digits(text.substr(2), 16, size)
                    : text.starts_with('0') ? digits(text, 8, size)
                                            : digits(text, 10, size);
  if (good) value = held(negative ? -size : size);
  return good;
}

bool playlist_seconds(std::string_view text, float& value, std::size_t& length) {
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  length = static_cast<std::size_t>(stop - text.data());
  return error == std::errc{} && std::isfinite(value);
}

bool playlist_expression(std::string_view text, const JpsConstants& constants, std::int32_t& value,
                         std::string_view& unknown) {
  std::int64_t sum = 0;
  std::int64_t sign = 1;
  if (text.starts_with('-') || text.starts_with('+')) {
    sign = text.front() == '-' ? -1 : 1;
    text.remove_prefix(1);
  }
  for (;;) {
    const std::size_t end = text.find_first_of("+-");
    const std::string_view term = playlist_trim(text.substr(0, end));
    std::int64_t size = 0;
    if (!term_value(term, constants, size)) {
      unknown = term;
      value = JPS_INVALID_VALUE;
      return false;
    }
    sum = held(sum + sign * held(size));
    if (end == std::string_view::npos) break;
    sign = text[end] == '-' ? -1 : 1;
    text.remove_prefix(end + 1);
  }
  value = static_cast<std::int32_t>(sum);
  return true;
}
