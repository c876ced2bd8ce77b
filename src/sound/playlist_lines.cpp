#include "sound/playlist_lines.h"

#include <algorithm>

namespace {

constexpr std::string_view BLANKS = " \t";
// Both kinds of single quote that editors write in the cabinet's code page.
constexpr std::string_view QUOTES = "'\x91";

std::string_view skip_blanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
  return text;
}

// Removes a comment after the operands: from a ";" outside of a string.
std::string_view without_comment(std::string_view text) {
  bool in_string = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (playlist_is_quote(text[i])) in_string = !in_string;
    if (text[i] == ';' && !in_string) return text.substr(0, i);
  }
  return text;
}

}  // namespace

bool PlaylistLines::next(std::string_view& line) {
  const std::size_t end = text.find('\n', at);
  if (end == std::string_view::npos) return false;
  line = text.substr(at, end - at);
  if (line.ends_with('\r')) line.remove_suffix(1);
  too_long = line.size() > PLAYLIST_LINE_MAX;
  line = skip_blanks(line);
  at = end + 1;
  ++number;
  return true;
}

bool PlaylistLines::has_open_end() const {
  const std::size_t last = text.rfind('\n');
  const std::string_view open = text.substr(last == std::string_view::npos ? 0 : last + 1);
  return !playlist_line_is_idle(skip_blanks(open));
}

bool playlist_line_is_idle(std::string_view line) {
  return line.empty() || line.front() == ';';
}

std::string_view playlist_take_token(std::string_view& line) {
  line = skip_blanks(line);
  const std::string_view token = line.substr(0, line.find_first_of(BLANKS));
  line.remove_prefix(token.size());
  return token;
}

std::string_view playlist_trim(std::string_view text) {
  text = skip_blanks(text);
  const std::size_t last = text.find_last_not_of(BLANKS);
  return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

bool playlist_is_quote(char c) {
  return QUOTES.find(c) != std::string_view::npos;
}

PlaylistOperands::PlaylistOperands(std::string_view rest)
    : rest_(playlist_trim(without_comment(rest))) {}

bool PlaylistOperands::more() const {
  return !rest_.empty() && rest_.front() != ',';
}

bool PlaylistOperands::take(std::string_view& operand) {
  const std::size_t comma = rest_.find(',');
  operand = playlist_trim(rest_.substr(0, comma));
  rest_ =
      comma == std::string_view::npos ? std::string_view{} : skip_blanks(rest_.substr(comma + 1));
  return !operand.empty();
}

bool PlaylistOperands::take_quoted(std::string_view& string) {
  if (rest_.empty() || !playlist_is_quote(rest_.front())) return false;
  const std::size_t close = rest_.find_first_of(QUOTES, 1);
  if (close == std::string_view::npos) return false;
  string = rest_.substr(1, close - 1);
  rest_ = skip_blanks(rest_.substr(close + 1));
  if (!rest_.empty() && rest_.front() != ',') return false;
  if (!rest_.empty()) rest_ = skip_blanks(rest_.substr(1));
  return true;
}
