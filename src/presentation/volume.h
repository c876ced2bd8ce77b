// Two loudness levels, attract and play, the glide between them, the music's moving on, and the
// operator's volume buttons. The attract flag is decided here.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

constexpr std::int32_t VOLUME_STEP_MAX = 20;

extern Shared<std::int32_t> volume_step;   // 0 to 20, as the operator sees it
extern Shared<std::int32_t> volume_value;  // 0 to 255, what the sound output was last given
extern Shared<std::int32_t> attract_flag;  // 1: nobody plays

// Master volume, 0 to 255, of an operator's step; steps outside 0 to 20 are held to them.
std::int32_t volume_curve(std::int32_t step);

// The operator's step in "Attract Volume" or "Volume", held to 0 to 20.
std::int32_t volume_setting(bool attract_row);

// Moves the level by `delta` steps, stores it in "Attract Volume" or "Volume", and shows the
// readout for a second if asked. Game thread and start-up.
void volume_move(std::int32_t delta, bool show, bool attract_row);

// Puts the level at `step` at once. Game thread and start-up.
void volume_set(std::int32_t step);

// First step of the tick in play: attract flag, glide, music. Game thread.
void attract_volume_step();

// A press of Volume Up (+1) or Volume Down (-1). Game thread.
void volume_button(std::int32_t delta);

// End of the field's set-up: attract mode, its volume stored, "bgm". Start-up.
void attract_begin();
