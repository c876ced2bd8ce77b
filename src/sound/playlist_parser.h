// Reads a playlist file into a bank.
#pragma once

#include <cstdint>
#include <string_view>

struct JpsBank;

// How much a bank needs room for: upper bounds, found without understanding the lines.
struct JpsStats {
  std::uint32_t commands, playlists, sounds, groups, group_sounds;
};

// The first pass counts at most this many sounds.
constexpr std::uint32_t JPS_MAX_SOUND_NAMES = 2048;

// Counts what `text` may contain. Calls `bad_quote` with the number of each line that names a sound
// or playlist without a string in quotes.
JpsStats jps_parse_get_stats(std::string_view text, void (*bad_quote)(int line, void* context),
                             void* context);

// Reads the file, loads its sounds and registers the bank. Null, after a message, if there is no
// such file. Errors in the file are printed with file and line, and the rest is used; `messages`,
// if given, becomes the number of such messages. Call before anything plays from the bank.
JpsBank* playlist_parse(const char* path, int* messages = nullptr);
