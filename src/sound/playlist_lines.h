// The lines of a playlist file, and their parts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

constexpr std::size_t PLAYLIST_LINE_MAX = 254;
constexpr std::size_t PLAYLIST_FILE_MAX = 1 << 20;

// Walks the text of a file line by line.
struct PlaylistLines {
  std::string_view text;
  std::size_t at = 0;
  int number = 0;         // of the last line that `next` gave; the first is 1
  bool too_long = false;  // that line has more than PLAYLIST_LINE_MAX characters

  // The next line, without leading blanks and tabs and without its line feed (or carriage return
  // and line feed). False at the end; a last line without a line feed is not read.
  bool next(std::string_view& line);

  // Whether there is text after the last line feed.
  [[nodiscard]] bool has_open_end() const;
};

// Whether a line has no content: it is empty or a comment.
bool playlist_line_is_idle(std::string_view line);

// Removes the first token, which ends at a blank or a tab, from a line; empty if there is none.
std::string_view playlist_take_token(std::string_view& line);

std::string_view playlist_trim(std::string_view text);

bool playlist_is_quote(char c);

// The operands of a keyword: the rest of its line up to a comment, split at commas.
class PlaylistOperands {
 public:
  explicit PlaylistOperands(std::string_view rest);

  // Takes the next operand, without surrounding blanks. False if there is none or it is empty.
  bool take(std::string_view& operand);

  // Takes the next operand, a string in quotes, which may contain commas and ";". False if it isn't
  // one.
  bool take_quoted(std::string_view& string);

  // Whether there is a next operand.
  [[nodiscard]] bool more() const;

 private:
  std::string_view rest_;
};
