// How the rules ask for a sound.
#pragma once

#include <cstdint>

#include "frame/game_mode.h"  // sound_enabled
#include "sound/jps.h"

// Plays a playlist of the game's bank unless the cabinet is out of play. Returns the tracks that
// took it. Any thread.
inline std::uint32_t cue_play(const char* name) {
  return sound_enabled ? jps_bank_play_name(name) : 0;
}
