#include "sound/playlist_parser.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <string>

#include "platform/files.h"
#include "sound/bank.h"
#include "sound/playlist_block.h"

namespace {

bool holds(std::string_view line, std::string_view word) {
  return line.find(word) != std::string_view::npos;
}

bool has_quoted_string(std::string_view line) {
  const auto open = std::ranges::find_if(line, playlist_is_quote);
  return open != line.end() && std::find_if(open + 1, line.end(), playlist_is_quote) != line.end();
}

// The whole text of a file. False, after a message, if it can't be read.
bool read_text(const char* path, std::string& text) {
  ReadFile* const file = read_open(path);
  if (file == nullptr) {
    std::printf("playlist_parse(): ERROR! Couldn't open %s\n", path);
    return false;
  }
  char block[16384];
  std::size_t count = 0;
  while (text.size() <= PLAYLIST_FILE_MAX && (count = read_bytes(file, block, sizeof block)) > 0) {
    text.append(block, count);
  }
  read_close(file);
  if (text.size() <= PLAYLIST_FILE_MAX) return true;
  std::printf("playlist_parse(): ERROR! %s is larger than %zu bytes\n", path, PLAYLIST_FILE_MAX);
  return false;
}

// Up to and including the last backslash. A slash counts too, for users who check a file of the
// host.
std::string folder_of(std::string_view path) {
  const std::size_t last = path.find_last_of("\\/");
  return std::string(path.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

void report_bad_quote(int line, void* context) {
  PlaylistParse& parse = *static_cast<PlaylistParse*>(context);
  parse.lines.number = line;
  playlist_refuse(parse, "bad quote string");
}

JpsBank* parse_text(PlaylistParse& parse) {
  const JpsStats stats = jps_parse_get_stats(parse.lines.text, report_bad_quote, &parse);
  parse.lines.number = 0;
  parse.bank = jps_bank_alloc(stats.commands, stats.playlists, stats.sounds, stats.groups,
                              stats.group_sounds);
  if (parse.bank == nullptr) return nullptr;
  parse.bank->key = jps_key(parse.path);
  playlist_parse_block(parse, PLAYLIST_FILE_KEYWORDS);
  if (parse.lines.has_open_end()) {
    for (std::string_view lost; parse.lines.next(lost);) continue;
    ++parse.lines.number;
    playlist_refuse(parse, "the last line has no end of line and is not read");
  }
  jps_bank_register(parse.bank);
  return parse.bank;
}

}  // namespace

JpsStats jps_parse_get_stats(std::string_view text, void (*bad_quote)(int line, void* context),
                             void* context) {
  JpsStats stats{};
  PlaylistLines lines{text};
  std::string_view line;
  while (lines.next(line)) {
    if (playlist_line_is_idle(line)) continue;
    ++stats.commands;
    if (holds(line, "PLAYLIST")) {
      ++stats.playlists;
    } else if (holds(line, "PLAY") || holds(line, "SOUND")) {
      if (stats.sounds < JPS_MAX_SOUND_NAMES) ++stats.sounds;
      if (!has_quoted_string(line)) bad_quote(lines.number, context);
    } else if (holds(line, "GROUP")) {
      ++stats.groups;
    }
    if (holds(line, "SOUND")) ++stats.group_sounds;
  }
  return stats;
}

JpsBank* playlist_parse(const char* path, int* messages) {
  std::string text;
  if (!read_text(path, text)) return nullptr;
  PlaylistParse parse{path, folder_of(path), {text}};
  JpsBank* const bank = parse_text(parse);
  if (messages != nullptr) *messages = parse.messages;
  return bank;
}
