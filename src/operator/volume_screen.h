// The two screens on which the loudness is set by ear.
#pragma once

#include <cstdint>

// Starts the screen for "Volume" or "Attract Volume". What a menu's handler returns. Game thread.
std::uintptr_t volume_screen_start(bool attract);

void volume_screen_input(bool attract);  // game thread
void volume_screen_draw(bool attract);   // main thread
