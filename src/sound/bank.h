// A bank: the content of one playlist file, with all names resolved.
//
// A bank is written only while it is parsed, before anything plays from it. After that only the
// latest picks of its groups and the driver's data in its sounds change, under the sound lock.
#pragma once

#include <cstdint>
#include <string_view>

#include "sound/driver.h"  // JpsSound, JPS_TRACKS
#include "sound/key.h"

enum JpsOpcode : std::uint32_t {
  JPS_NO_COMMAND = 0,  // a statement without a command
  JPS_END = 1,
  JPS_PLAY = 2,
  JPS_STOP = 3,
  JPS_SETVOL = 4,
  JPS_LOOPSTART = 5,
  JPS_LOOPEND = 6,
  JPS_DUCK = 7,
  JPS_UNDUCK = 8,
  JPS_WAITFOR = 9,
  JPS_SETPAN = 10,
  JPS_SETFREQ = 11,
  JPS_SIGNAL = 12,
  JPS_GOTO = 13,
  JPS_LABEL = 15,
  JPS_MARKER = 16,
  JPS_PLAYGROUP = 17,
  JPS_SETPRI = 18,
};

// `JpsCommand::condition`: one of these bits, and the marker's number from bit 16 on.
constexpr std::uint32_t JPS_ON_MARKER = 1;
constexpr std::uint32_t JPS_ONS_MARKER = 2;

constexpr int JPS_BANKS = 32;
constexpr int JPS_RECENT_PICKS = 10;
constexpr std::uint32_t JPS_NO_PICK = 0xFFFFFFFF;

struct JpsGroupSound {
  JpsSound* sound;
  float weight;  // the weights of a group add up to 1
};

struct JpsGroup {
  JpsKey key;
  JpsGroupSound* sounds;
  std::uint32_t sound_count;
  std::uint32_t no_repeat;                 // this many latest picks are not picked again
  std::uint32_t recent[JPS_RECENT_PICKS];  // newest first, or JPS_NO_PICK
};

struct JpsCommand {
  std::uint32_t opcode;
  float time;  // seconds from the start of the playlist
  std::uint32_t condition;
  // As needed by the opcode:
  std::uint16_t track;  // the playlist's; the driver's for DUCK and UNDUCK
  std::uint16_t value;
  float seconds;
  JpsSound* sound;
  JpsGroup* group;
  std::int32_t loop;   // 1 plays once, anything else repeats
  std::int32_t count;  // -1: no end
  JpsKey key;
  std::uint16_t number;
};

struct JpsPlaylist {
  JpsKey key;
  std::int32_t number;
  JpsCommand* first_command;
  std::uint32_t command_count;
  std::uint32_t tracks_needed;
  std::uint16_t track_mask;  // bit n: the tracks may begin at driver track n
  std::uint16_t priority;
};

struct JpsBank {
  JpsKey key;  // of the path as given
  JpsSound* sounds;
  std::uint32_t sound_count, sound_capacity;
  JpsPlaylist* playlists;
  std::uint32_t playlist_count, playlist_capacity;
  JpsCommand* commands;  // of all playlists, one after the other
  std::uint32_t command_count, command_capacity;
  JpsGroup* groups;
  std::uint32_t group_count, group_capacity;
  JpsGroupSound* group_sounds;  // of all groups
  std::uint32_t group_sound_count, group_sound_capacity;
  bool volume_attenuation;
};

// A bank with room for this many of each, all cleared. Null, after a message, if memory is short.
JpsBank* jps_bank_alloc(std::uint32_t commands, std::uint32_t playlists, std::uint32_t sounds,
                        std::uint32_t groups, std::uint32_t group_sounds);

// Stops everything that plays, frees the bank's sounds and the bank, and removes it from the table.
// Null does nothing. Any thread that no longer uses the bank.
void jps_bank_free(JpsBank* bank);

// Puts a bank into the first free place of the table that finds it by name. If none is free, only
// the caller can use it.
void jps_bank_register(JpsBank* bank);

// The registered bank with this path, or null. Hold the sound lock.
JpsBank* jps_bank_find(std::string_view path);

// Frees all registered banks.
void jps_banks_free();

// Null if there is none with this name.
const JpsPlaylist* jps_find_playlist(const JpsBank& bank, JpsKey key);
const JpsPlaylist* jps_find_playlist(const JpsBank& bank, std::int32_t number);
JpsSound* jps_find_sound(const JpsBank& bank, JpsKey key);
JpsGroup* jps_find_group(const JpsBank& bank, JpsKey key);
