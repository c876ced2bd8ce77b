// The statements of a GROUP block.
#include <cstdint>
#include <string_view>

#include "sound/bank_sounds.h"
#include "sound/playlist_block.h"

namespace {

bool parse_sound(PlaylistParse& parse, PlaylistOperands& operands, JpsCommand&, float&) {
  constexpr const char* FEW = "Too few arguments to SOUND";
  JpsBank& bank = *parse.bank;
  std::string_view name;
  std::int32_t weight = 0;
  if (!playlist_take_string(parse, operands, FEW, name) ||
      !playlist_take_integer(parse, operands, FEW, weight)) {
    return false;
  }
  if (weight < 0) return playlist_refuse(parse, "Weight must not be negative");
  if (bank.group_sound_count == bank.group_sound_capacity) {
    return playlist_refuse(parse, "jps_parse_func_group_sound(): ERROR! Couldn't find sound");
  }
  JpsSound* const sound = jps_parse_addsound(parse.folder, name, bank, STREAM_NEVER);
  if (sound == nullptr) {
    return playlist_refuse(parse, "couldn't open sound file '%.*s'", static_cast<int>(name.size()),
                           name.data());
  }
  bank.group_sounds[bank.group_sound_count++] = {sound, static_cast<float>(weight)};
  ++parse.group->sound_count;
  return true;
}

bool parse_end(PlaylistParse&, PlaylistOperands&, JpsCommand&, float&) {
  return true;
}

constexpr PlaylistKeyword KEYWORDS[] = {
    {"SOUND", JPS_NO_COMMAND, parse_sound},
    {"END", JPS_NO_COMMAND, parse_end},
};

}  // namespace

constinit const PlaylistKeywords PLAYLIST_GROUP_KEYWORDS = KEYWORDS;
