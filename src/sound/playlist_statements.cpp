// The statements of a PLAYLIST block.
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>

#include "sound/bank_sounds.h"
#include "sound/markers.h"  // JPS_MARKERS
#include "sound/playlist_block.h"

namespace {

constexpr const char* NO_ARGUMENTS = "No arguments!";
constexpr const char* NOT_ENOUGH = "Not enough arguments!";
constexpr const char* NO_LOOP =
    "the loop operand is missing: 1 plays the sound once, any other value repeats it";

int width(std::string_view text) {
  return static_cast<int>(text.size());
}

bool take_track(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                JpsCommand& command) {
  std::int32_t track = 0;
  if (!playlist_take_integer(parse, operands, missing, track)) return false;
  if (track < 0 || track >= JPS_TRACKS) {
    return playlist_refuse(parse, "Track number too high! Must be less than %i", JPS_TRACKS);
  }
  command.track = static_cast<std::uint16_t>(track);
  return true;
}

// Checks that a value is in a range that fits the command's word; `wrong` is the message.
bool keep_value(PlaylistParse& parse, std::int32_t value, std::int32_t least, std::int32_t most,
                const char* wrong, JpsCommand& command) {
  if (value < least || value > most) return playlist_refuse(parse, "%s", wrong);
  command.value = static_cast<std::uint16_t>(value);
  return true;
}

// A logical track that starts a sound counts towards the tracks that the playlist needs.
void need_track(PlaylistParse& parse, const JpsCommand& command) {
  const std::uint32_t needed = command.track + 1U;
  if (parse.playlist->tracks_needed < needed) parse.playlist->tracks_needed = needed;
}

bool play(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, StreamMode mode) {
  std::string_view name;
  if (!take_track(parse, operands, "PLAY requires arguments", command) ||
      !playlist_take_string(parse, operands, "Too few arguments to PLAY", name) ||
      !playlist_take_integer(parse, operands, NO_LOOP, command.loop)) {
    return false;
  }
  if (parse.playlist == nullptr) return playlist_refuse(parse, "INTERNAL ERROR E12345");
  command.sound = jps_parse_addsound(parse.folder, name, *parse.bank, mode);
  if (command.sound == nullptr) {
    return playlist_refuse(parse, "couldn't open sound file '%.*s'", width(name), name.data());
  }
  need_track(parse, command);
  return true;
}

bool parse_play(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return play(parse, operands, command, STREAM_BY_SIZE);
}

bool parse_plays(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return play(parse, operands, command, STREAM_ALWAYS);
}

bool parse_playgroup(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command,
                     float&) {
  constexpr const char* FEW = "Too few arguments to PLAYGROUP";
  std::string_view name;
  if (!take_track(parse, operands, FEW, command) ||
      !playlist_take_string(parse, operands, FEW, name) ||
      !playlist_take_integer(parse, operands, NO_LOOP, command.loop)) {
    return false;
  }
  command.group = jps_find_group(*parse.bank, jps_key(name));
  if (command.group == nullptr) {
    return playlist_refuse(parse, "PLAYGROUP: invalid group name '%.*s'", width(name), name.data());
  }
  need_track(parse, command);
  return true;
}

bool parse_stop(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return take_track(parse, operands, "Too few arguments to STOP", command);
}

bool parse_setvol(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  std::int32_t volume = 0;
  return take_track(parse, operands, NO_ARGUMENTS, command) &&
         playlist_take_sum(parse, operands, NOT_ENOUGH, volume) &&
         keep_value(parse, volume, 0, 255, "Volume must be in the range 0-255", command) &&
         playlist_take_seconds(parse, operands, NOT_ENOUGH, command.seconds);
}

bool parse_duck(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  constexpr const char* FEW = "Too few arguments to DUCK";
  std::int32_t amount = 0;
  return take_track(parse, operands, FEW, command) &&
         playlist_take_integer(parse, operands, FEW, amount) &&
         keep_value(parse, amount, 0, 255, "Volume must be in the range 0-255", command) &&
         playlist_take_seconds(parse, operands, FEW, command.seconds);
}

bool parse_unduck(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  constexpr const char* FEW = "NOT ENOUGH ARGUMENTS";
  return take_track(parse, operands, FEW, command) &&
         playlist_take_seconds(parse, operands, FEW, command.seconds);
}

// Pans and frequencies are stored, but no player uses them yet.
bool take_ramped(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command,
                 const char* missing) {
  std::int32_t value = 0;
  return take_track(parse, operands, missing, command) &&
         playlist_take_integer(parse, operands, missing, value) &&
         keep_value(parse, value, std::numeric_limits<std::int16_t>::min(),
                    std::numeric_limits<std::uint16_t>::max(),
                    "Value must be in the range -32768 to 65535", command) &&
         playlist_take_seconds(parse, operands, missing, command.seconds);
}

bool parse_setpan(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return take_ramped(parse, operands, command, "Too few arguments to SETPAN");
}

bool parse_setfreq(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return take_ramped(parse, operands, command, "Too few arguments to SETFREQ");
}

bool parse_setpri(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  std::int32_t priority = 0;
  return take_track(parse, operands, NO_ARGUMENTS, command) &&
         playlist_take_sum(parse, operands, NOT_ENOUGH, priority) &&
         keep_value(parse, priority, 0, 255, "Priority must be in the range 0-255", command);
}

bool parse_loopstart(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command,
                     float&) {
  if (!playlist_take_integer(parse, operands, NO_ARGUMENTS, command.count)) return false;
  if (command.count < -1) {
    return playlist_refuse(parse, "Loop count must be 0 or more; 0 runs for ever");
  }
  if (command.count == 0) command.count = -1;
  return true;
}

bool take_number(PlaylistParse& parse, PlaylistOperands& operands, const char* missing,
                 std::int32_t most, const char* wrong, JpsCommand& command) {
  std::int32_t number = 0;
  if (!playlist_take_integer(parse, operands, missing, number)) return false;
  if (number < 0 || number > most) return playlist_refuse(parse, wrong, most + 1);
  command.number = static_cast<std::uint16_t>(number);
  return true;
}

bool parse_signal(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return take_number(parse, operands, "Too few arguments to SIGNAL", 0xFFFF,
                     "Signal number too high! Must be less than %i", command);
}

bool parse_marker(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return take_number(parse, operands, "Too few arguments to MARKER", JPS_MARKERS - 1,
                     "Marker number too high! Must be less than %i", command);
}

bool take_label(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command,
                const char* missing) {
  std::string_view label;
  if (!playlist_take_string(parse, operands, missing, label)) return false;
  command.key = jps_key(label);
  return true;
}

bool parse_goto(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return take_label(parse, operands, command, "Too few arguments to GOTO");
}

bool parse_label(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command, float&) {
  return take_label(parse, operands, command, "Too few arguments to LABEL");
}

bool parse_nothing(PlaylistParse&, PlaylistOperands&, JpsCommand&, float&) {
  return true;
}

// When the sound of a PLAY ends, assuming 16-bit samples.
float end_of_play(const JpsCommand& play_command) {
  const JpsSound* const sound = play_command.sound;
  if (sound == nullptr) {
    std::puts("jps_parse_func_waitfor(): Warning! Sound buffer not loaded");
    return play_command.time;
  }
  const double bytes_per_second = 2.0 * sound->channels * sound->sample_rate;
  return play_command.time + static_cast<float>(sound->length / bytes_per_second);
}

// Sets the running time to the end of the last sound or ramp of the track.
bool parse_waitfor(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand& command,
                   float& running_time) {
  if (!take_track(parse, operands, "Too few arguments to WAITFOR", command)) return false;
  const JpsPlaylist& playlist = *parse.playlist;
  const std::span<const JpsCommand> commands(playlist.first_command, playlist.command_count);
  for (std::size_t i = commands.size(); i-- > 0;) {
    const JpsCommand& earlier = commands[i];
    if (earlier.track != command.track) continue;
    switch (earlier.opcode) {
      case JPS_PLAY:
        running_time = end_of_play(earlier);
        return true;
      case JPS_SETVOL:
      case JPS_DUCK:
      case JPS_UNDUCK:
        running_time = earlier.time + earlier.seconds;
        return true;
      default:
        break;
    }
  }
  return playlist_refuse(parse, "'WAITFOR' without 'PLAY'");
}

constexpr PlaylistKeyword KEYWORDS[] = {
    {"END", JPS_END, parse_nothing},
    {"PLAY", JPS_PLAY, parse_play},
    {"PLAYS", JPS_PLAY, parse_plays},
    {"STOP", JPS_STOP, parse_stop},
    {"SETVOL", JPS_SETVOL, parse_setvol},
    {"LOOPSTART", JPS_LOOPSTART, parse_loopstart},
    {"LOOPEND", JPS_LOOPEND, parse_nothing},
    {"DUCK", JPS_DUCK, parse_duck},
    {"UNDUCK", JPS_UNDUCK, parse_unduck},
    {"WAITFOR", JPS_WAITFOR, parse_waitfor},
    {"SETPAN", JPS_SETPAN, parse_setpan},
    {"SETFREQ", JPS_SETFREQ, parse_setfreq},
    {"SIGNAL", JPS_SIGNAL, parse_signal},
    {"GOTO", JPS_GOTO, parse_goto},
    {"LABEL", JPS_LABEL, parse_label},
    {"MARKER", JPS_MARKER, parse_marker},
    {"PLAYGROUP", JPS_PLAYGROUP, parse_playgroup},
    {"SETPRI", JPS_SETPRI, parse_setpri},
};

}  // namespace

constinit const PlaylistKeywords PLAYLIST_KEYWORDS = KEYWORDS;
