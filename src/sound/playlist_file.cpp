// The statements outside of blocks.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "sound/playlist_block.h"

namespace {

constexpr std::uint16_t DEFAULT_PRIORITY = 0x80;
constexpr std::uint16_t DEFAULT_TRACK_MASK = 0xFF;

int width(std::string_view text) {
  return static_cast<int>(text.size());
}

bool take_name(PlaylistParse& parse, PlaylistOperands& operands, std::string_view& name) {
  constexpr const char* MISSING = "Syntax error: string must surrounded by single quotes";
  return playlist_take_string(parse, operands, MISSING, name);
}

bool take_priority_and_mask(PlaylistParse& parse, PlaylistOperands& operands,
                            JpsPlaylist& playlist) {
  playlist.priority = DEFAULT_PRIORITY;
  playlist.track_mask = DEFAULT_TRACK_MASK;
  std::int32_t value = 0;
  if (!operands.more()) {
    playlist_refuse(parse, "no priority arg");
    return true;
  }
  if (!playlist_take_sum(parse, operands, "", value)) return false;
  if (value < 0 || value > 255) {
    return playlist_refuse(parse, "priority must be in the range 0-255");
  }
  playlist.priority = static_cast<std::uint16_t>(value);
  if (!operands.more()) {
    playlist_refuse(parse, "no trackmask arg");
    return true;
  }
  const int messages = parse.messages;
  if (!playlist_take_sum(parse, operands, "", value)) return false;
  if (parse.messages != messages) playlist_refuse(parse, "trackmask contains an unknown name");
  if (value == 0) return playlist_refuse(parse, "trackmask must be non-zero");
  if (value < 0 || value > 0xFFFF) {
    return playlist_refuse(parse, "trackmask must be in the range 0x1-0xFFFF");
  }
  playlist.track_mask = static_cast<std::uint16_t>(value);
  return true;
}

bool parse_playlist(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand&,
                    float& running_time) {
  JpsBank& bank = *parse.bank;
  if (bank.playlist_count == bank.playlist_capacity) {
    return playlist_refuse(parse, "too many playlists");
  }
  if (running_time != 0) return playlist_refuse(parse, "nonzero time before playlist call!");
  std::int32_t number = 0;
  if (!playlist_take_integer(parse, operands, "not enough args to PLAYLIST", number)) return false;
  if (jps_find_playlist(bank, number) != nullptr) {
    return playlist_refuse(parse, "duplicate playlist number, ignoring");
  }
  JpsPlaylist& playlist = bank.playlists[bank.playlist_count];
  playlist = {};
  playlist.number = number;
  playlist.first_command = bank.commands + bank.command_count;
  std::string_view name;
  if (!take_name(parse, operands, name)) return false;
  playlist.key = jps_key(name);
  if (!take_priority_and_mask(parse, operands, playlist)) return false;
  if (jps_find_playlist(bank, playlist.key) != nullptr) {
    playlist_refuse(parse, "duplicate playlist name '%.*s', only the first is used", width(name),
                    name.data());
  }
  ++bank.playlist_count;
  parse.playlist = &playlist;
  playlist_parse_block(parse, PLAYLIST_KEYWORDS);
  parse.playlist = nullptr;
  const std::span<const JpsCommand> commands(playlist.first_command, playlist.command_count);
  if (commands.empty() || commands.back().opcode != JPS_END) {
    return playlist_refuse(parse, "Last command must be 'END' and must end with EOL");
  }
  return true;
}

// Makes the weights add up to 1, and limits no_repeat to fewer than the number of sounds.
void finish_group(PlaylistParse& parse, JpsGroup& group) {
  const std::span<JpsGroupSound> sounds(group.sounds, group.sound_count);
  float sum = 0;
  for (const JpsGroupSound& sound : sounds) sum += sound.weight;
  if (sum > 0) {
    for (JpsGroupSound& sound : sounds) sound.weight /= sum;
  } else {
    playlist_refuse(parse, "group has no sound to pick");
  }
  if (group.no_repeat >= group.sound_count) {
    group.no_repeat = group.sound_count == 0 ? 0 : group.sound_count - 1;
  }
  if (group.no_repeat > JPS_RECENT_PICKS) {
    playlist_refuse(parse, "at most %i picks are kept from repeating", JPS_RECENT_PICKS);
    group.no_repeat = JPS_RECENT_PICKS;
  }
}

bool parse_group(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand&, float&) {
  JpsBank& bank = *parse.bank;
  if (bank.group_count == bank.group_capacity) {
    return playlist_refuse(
        parse, "too many groups; a group's name must not contain PLAYLIST, PLAY or SOUND");
  }
  std::string_view name;
  if (!take_name(parse, operands, name)) return false;
  std::int32_t no_repeat = 0;
  if (!playlist_take_integer(parse, operands, "Couldn't get repeat number", no_repeat)) {
    return false;
  }
  if (no_repeat < 0) return playlist_refuse(parse, "no-repeat count must not be negative");
  if (jps_find_group(bank, jps_key(name)) != nullptr) {
    playlist_refuse(parse, "duplicate group name '%.*s', only the first is used", width(name),
                    name.data());
  }
  JpsGroup& group = bank.groups[bank.group_count];
  group = {};
  group.key = jps_key(name);
  group.sounds = bank.group_sounds + bank.group_sound_count;
  group.no_repeat = static_cast<std::uint32_t>(no_repeat);
  std::ranges::fill(group.recent, JPS_NO_PICK);
  parse.group = &group;
  const bool ended = playlist_parse_block(parse, PLAYLIST_GROUP_KEYWORDS);
  parse.group = nullptr;
  if (!ended) playlist_refuse(parse, "A group must end with 'END' and EOL");
  finish_group(parse, group);
  ++bank.group_count;
  return true;
}

// Refuses names that a sum would not find: it splits at "+", "-" and ",", and takes a name that
// begins with a digit for a number.
bool is_constant_name(std::string_view name) {
  return name.find_first_of("+-,") == std::string_view::npos && (name[0] < '0' || name[0] > '9');
}

bool parse_constant(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand&, float&) {
  JpsConstants& constants = parse.constants;
  std::string_view rest;
  if (!operands.take(rest)) return playlist_refuse(parse, "No arguments to CONSTANT!");
  const std::string_view name = playlist_take_token(rest);
  if (constants.count == JPS_CONSTANTS) {
    return playlist_refuse(parse, "Too many constants (must not be greater than %i)",
                           JPS_CONSTANTS);
  }
  if (name.size() > JPS_CONSTANT_NAME_MAX) {
    return playlist_refuse(parse, "A constant's name must not be longer than %zu characters",
                           JPS_CONSTANT_NAME_MAX);
  }
  if (!is_constant_name(name)) {
    return playlist_refuse(
        parse, "A constant's name must not begin with a digit or contain '+', '-' or ','");
  }
  for (const JpsConstant& row : std::span(constants.rows, constants.count)) {
    if (row.name == name) {
      return playlist_refuse(parse, "constant '%.*s' has a value already", width(name),
                             name.data());
    }
  }
  const int messages = parse.messages;
  PlaylistOperands value_operand(rest);
  std::int32_t value = 0;
  if (!playlist_take_sum(parse, value_operand, "CONSTANT needs a value after its name", value)) {
    return false;
  }
  if (parse.messages != messages) {
    playlist_refuse(parse, "constant '%.*s' has an unknown name in its value", width(name),
                    name.data());
  }
  constants.rows[constants.count++] = {name, value};
  return true;
}

bool parse_vol_atten(PlaylistParse& parse, PlaylistOperands&, JpsCommand&, float&) {
  parse.bank->volume_attenuation = true;
  return true;
}

bool parse_vol_gain(PlaylistParse& parse, PlaylistOperands&, JpsCommand&, float&) {
  parse.bank->volume_attenuation = false;
  return true;
}

constexpr PlaylistKeyword KEYWORDS[] = {
    {"PLAYLIST", JPS_NO_COMMAND, parse_playlist}, {"GROUP", JPS_NO_COMMAND, parse_group},
    {"CONSTANT", JPS_NO_COMMAND, parse_constant}, {"VOL_ATTEN", JPS_NO_COMMAND, parse_vol_atten},
    {"VOL_GAIN", JPS_NO_COMMAND, parse_vol_gain},
};

}  // namespace

constinit const PlaylistKeywords PLAYLIST_FILE_KEYWORDS = KEYWORDS;
