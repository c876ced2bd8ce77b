// What the parser knows while it reads a playlist file, and the statements of each kind of block.
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
  std::string folder;  // of the file; its sounds are named from there
  PlaylistLines lines;
  JpsBank* bank = nullptr;
  JpsPlaylist* playlist = nullptr;  // the one whose block is open
  JpsGroup* group = nullptr;
  JpsConstants constants{};
  int messages = 0;
};

// Prints a message about the present line and answers false, which is what a statement that was
// refused answers.
[[gnu::format(printf, 2, 3)]] bool playlist_refuse(PlaylistParse& parse, const char* format, ...);

// Fills `command`, whose opcode, time and condition stand already, from the operands. May move the
// running time, which is what the next command takes. False: refused, with a message.
using PlaylistStatement = bool (*)(PlaylistParse& parse, PlaylistOperands& operands,
                                   JpsCommand& command, float& running_time);

struct PlaylistKeyword {
  std::string_view name;
  JpsOpcode opcode;
  PlaylistStatement parse;
};
using PlaylistKeywords = std::span<const PlaylistKeyword>;

// What a file, a playlist and a group may hold.
extern const PlaylistKeywords PLAYLIST_FILE_KEYWORDS;
extern const PlaylistKeywords PLAYLIST_KEYWORDS;
extern const PlaylistKeywords PLAYLIST_GROUP_KEYWORDS;

// Reads lines up to END, the end of the file, or a keyword that isn't there, which ends the block.
// True after END.
bool playlist_parse_block(PlaylistParse& parse, PlaylistKeywords keywords);

// Operands. Each answers false after a message: `missing` if there is none.
bool playlist_take_integer(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                           std::int32_t& value);
bool playlist_take_seconds(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                           float& seconds);
bool playlist_take_string(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                          std::string_view& string);
// An expression; one that names an unknown constant has a message, which no line number stands
// before, and a value that ranges refuse: where no range is checked, tell the line.
bool playlist_take_sum(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                       std::int32_t& value);
