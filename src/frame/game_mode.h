// What the cabinet is doing as a whole.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

enum GameMode : std::int32_t {
  MODE_PLAY = 0,        // play and attract
  MODE_OPERATOR = 1,    // menus and test screens
  MODE_BOOT_CHECK = 2,  // the file check at start-up
  MODE_GOING_DOWN = 3,  // periodic reboot under way; there is no way back
};

// Written by the game thread, by the menus inside its tick, and by start-up before it exists.
inline constinit Shared<GameMode> game_mode{MODE_PLAY};

// Guards every sound request of the game; clear in operator mode.
inline constinit Shared<std::int32_t> sound_enabled{1};
