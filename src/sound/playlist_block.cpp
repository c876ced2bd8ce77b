#include "sound/playlist_block.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "sound/markers.h"  // JPS_MARKERS

namespace {

int width(std::string_view text) {
  return static_cast<int>(text.size());
}

// "[seconds]" or "[+seconds]" at the start of the line: removes it and sets the running time.
bool take_time(PlaylistParse& parse, std::string_view& line, float& running_time) {
  if (!line.starts_with('[')) return true;
  std::string_view rest = line.substr(1);
  std::string_view text = playlist_take_token(rest);
  if (line.size() > 1 && (line[1] == ' ' || line[1] == '\t')) text = {};
  const bool relative = text.starts_with('+');
  if (relative) text.remove_prefix(1);
  if (text.empty() || text.front() == ']') return playlist_refuse(parse, "Syntax error after '['");
  float seconds = 0;
  std::size_t length = 0;
  if (!playlist_seconds(text, seconds, length)) {
    return playlist_refuse(parse, "invalid time value, ignoring command");
  }
  text.remove_prefix(length);
  if (!text.starts_with(']')) {
    return playlist_refuse(parse, "missing closing ']' after time, ignoring command");
  }
  const float time = relative ? running_time + seconds : seconds;
  if (time < running_time) {
    return playlist_refuse(parse, "time is less than previous command, ignoring command");
  }
  running_time = time;
  line.remove_prefix(static_cast<std::size_t>(text.data() + 1 - line.data()));
  return true;
}

// "ONMARKER n" or "ONSMARKER n": `token` becomes the keyword after it.
bool take_condition(PlaylistParse& parse, std::string_view& line, std::string_view& token,
                    std::uint32_t& condition) {
  condition = 0;
  if (token != "ONMARKER" && token != "ONSMARKER") return true;
  const std::uint32_t bit = token == "ONMARKER" ? JPS_ON_MARKER : JPS_ONS_MARKER;
  const std::string_view number = playlist_take_token(line);
  std::int32_t marker = 0;
  if (!playlist_integer(number, marker)) {
    return playlist_refuse(parse, "%.*s needs a marker number, not '%.*s'", width(token),
                           token.data(), width(number), number.data());
  }
  if (marker < 0 || marker >= JPS_MARKERS) {
    return playlist_refuse(parse, "Marker number too high! Must be less than %i", JPS_MARKERS);
  }
  condition = bit | static_cast<std::uint32_t>(marker) << 16;
  token = playlist_take_token(line);
  return true;
}

enum class LineEnd { GO_ON, END_OF_BLOCK, LOST };

LineEnd parse_line(PlaylistParse& parse, PlaylistKeywords keywords, std::string_view line,
                   float& running_time) {
  if (!take_time(parse, line, running_time)) return LineEnd::GO_ON;
  std::string_view token = playlist_take_token(line);
  std::uint32_t condition = 0;
  if (!take_condition(parse, line, token, condition)) return LineEnd::GO_ON;
  const auto keyword = std::ranges::find(keywords, token, &PlaylistKeyword::name);
  if (keyword == keywords.end()) {
    playlist_refuse(parse, "invalid opcode '%.*s'", width(token), token.data());
    return LineEnd::LOST;
  }
  JpsBank& bank = *parse.bank;
  if (bank.command_count == bank.command_capacity) {
    playlist_refuse(parse, "Too many commands");
    return LineEnd::LOST;
  }
  JpsCommand command{};
  command.opcode = keyword->opcode;
  command.time = running_time;
  command.condition = condition;
  PlaylistOperands operands(line);
  const bool good = keyword->parse(parse, operands, command, running_time);
  if (good && keyword->opcode != JPS_NO_COMMAND) {
    bank.commands[bank.command_count++] = command;
    ++parse.playlist->command_count;
  }
  return token == "END" ? LineEnd::END_OF_BLOCK : LineEnd::GO_ON;
}

}  // namespace

bool playlist_refuse(PlaylistParse& parse, const char* format, ...) {
  char text[512];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  std::printf("'%s'[%i]: ERROR! %s\n", parse.path, parse.lines.number, text);
  ++parse.messages;
  return false;
}

bool playlist_parse_block(PlaylistParse& parse, PlaylistKeywords keywords) {
  float running_time = 0;
  std::string_view line;
  while (parse.lines.next(line)) {
    if (playlist_line_is_idle(line)) continue;
    if (parse.lines.too_long) {
      playlist_refuse(parse, "line is longer than %zu characters, ignoring it", PLAYLIST_LINE_MAX);
      continue;
    }
    const LineEnd end = parse_line(parse, keywords, line, running_time);
    if (end != LineEnd::GO_ON) return end == LineEnd::END_OF_BLOCK;
  }
  return false;
}

bool playlist_take_integer(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                           std::int32_t& value) {
  std::string_view text;
  if (!operands.take(text)) return playlist_refuse(parse, "%s", missing);
  if (playlist_integer(text, value)) return true;
  return playlist_refuse(parse, "'%.*s' is not a whole number", width(text), text.data());
}

bool playlist_take_seconds(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                           float& seconds) {
  std::string_view text;
  if (!operands.take(text)) return playlist_refuse(parse, "%s", missing);
  std::size_t length = 0;
  if (!playlist_seconds(text, seconds, length) || length != text.size()) {
    return playlist_refuse(parse, "'%.*s' is not a number of seconds", width(text), text.data());
  }
  if (seconds < 0) return playlist_refuse(parse, "Ramp time must be positive");
  return true;
}

bool playlist_take_string(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                          std::string_view& string) {
  if (!operands.more()) return playlist_refuse(parse, "%s", missing);
  if (operands.take_quoted(string)) return true;
  return playlist_refuse(parse, "Syntax error: string must surrounded by single quotes");
}

bool playlist_take_sum(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                       std::int32_t& value) {
  std::string_view text;
  if (!operands.take(text)) return playlist_refuse(parse, "%s", missing);
  std::string_view unknown;
  if (!playlist_expression(text, parse.constants, value, unknown)) {
    std::printf("INVALID SYMBOL: '%.*s'\n", width(unknown), unknown.data());
    ++parse.messages;
  }
  return true;
}
