// The parser's state while it reads a playlist file, and the statements of each kind of block.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "sound/bank.h"
#include "sound/playlist_expressions.h"
#include "sound/playlist_lines.h"

struct PlaylistParse {
  const char* path;
  std::string folder;  // of the file; paths of sounds begin there
  PlaylistLines lines;
  JpsBank* bank = nullptr;
  JpsPlaylist* playlist = nullptr;  // whose block is open
  JpsGroup* group = nullptr;
  JpsConstants constants{};
  int messages = 0;
};

// Prints a message about the present line and returns false, the result of a refused statement.
[[gnu::format(printf, 2, 3)]] bool playlist_refuse(PlaylistParse& parse, const char* format, ...);

// Fills `command` from the operands; its opcode, time and condition are already set. May change the
// running time, which the next command gets. False: refused, with a message.
using PlaylistStatement = bool (*)(PlaylistParse& parse, PlaylistOperands& operands,
                                   JpsCommand& command, float& running_time);

struct PlaylistKeyword {
  std::string_view name;
  JpsOpcode opcode;
  PlaylistStatement parse;
};
using PlaylistKeywords = std::span<const PlaylistKeyword>;

// The statements that a file, a playlist and a group may contain.
extern const PlaylistKeywords PLAYLIST_FILE_KEYWORDS;
extern const PlaylistKeywords PLAYLIST_KEYWORDS;
extern const PlaylistKeywords PLAYLIST_GROUP_KEYWORDS;

// Reads lines up to END, the end of the file, or an unknown keyword, which ends the block. True
// after END.
bool playlist_parse_block(PlaylistParse& parse, PlaylistKeywords keywords);

// Operands. Each function returns false after a message; the message is `missing` if there is none.
bool playlist_take_integer(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                           std::int32_t& value);
bool playlist_take_seconds(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                           float& seconds);
bool playlist_take_string(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                          std::string_view& string);
// A sum. An unknown constant prints a message without a line number and gives a value that every
// range refuses. Where no range is checked, print the line.
bool playlist_take_sum(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                       std::int32_t& value);
