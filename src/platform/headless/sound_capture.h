// The sound device without a loudspeaker: it plays nothing until somebody asks for the samples.
#pragma once

#include <cstdint>

// Frames of a block: what the device asks of the mixing at a time.
constexpr int SOUND_CAPTURE_BLOCK = 512;

// Renders the next `frames` frames of 16-bit stereo at 44100 Hz into `out` (left, right, left,
// ...), block by block as the device would. `after_block`, if given, is called after each block,
// when streams need a refill: `jpsdrvr_transition`. Silence while no device is open. One thread at
// a time.
void sound_capture_render(int frames, std::int16_t* out, void (*after_block)() = nullptr);

// Whether the next `sound_device_open` finds a device; true by default.
void sound_capture_plug(bool plugged);

// Whether a device is open.
bool sound_capture_is_open();
