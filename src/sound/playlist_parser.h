// Reads a playlist file into a bank.
#pragma once

#include <cstdint>
#include <string_view>

struct JpsBank;

// How much a bank has room for. Upper bounds, found without understanding the lines.
struct JpsStats {
  std::uint32_t commands, playlists, sounds, groups, group_sounds;
};

// The first pass can name so many sounds.
constexpr std::uint32_t JPS_MAX_SOUND_NAMES = 2048;

// Counts what `text` may hold. `bad_quote` is called with the number of each line that names a
// sound or playlist without a string in quotes.
JpsStats jps_parse_get_stats(std::string_view text, void (*bad_quote)(int line, void* context),
                             void* context);

// Reads the file, loads the sounds it names and registers the bank. Null, after a message, if there
// is no such file. What is wrong inside of it is printed with file and line, and the rest is used;
// `messages`, if given, becomes the count of such lines. Call before anything plays from the bank.
JpsBank* playlist_parse(const char* path, int* messages = nullptr);
