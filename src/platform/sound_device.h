// The loudspeaker: 16-bit stereo at 44100 Hz, pulled block by block.
#pragma once

#include <cstdint>

constexpr int SOUND_RATE_HZ = 44100;

// Fills `frames` frames of `out`: left, right, left, ... Called on the device's own thread, which
// must never wait; never by two threads at once.
using SoundRender = void (*)(std::int16_t* out, int frames);

// Opens what LILYHOP_SOUND names, which then calls `render`. False if the machine gives no thread
// for it. Main thread.
//   sdl: the device that SDL_AUDIO_DEVICE_NAME names, or the system's default; its name is printed.
//     If it is lost later, it is opened again as soon as there is one; until then `render` is
//     called at the same pace, unheard. Without any device it works like "none", and a line on
//     standard error says why.
//   none: a clock of its own calls `render` at the device's pace.
//   unix:PATH: the same, and each block goes to that socket; a listener is optional.
bool sound_device_open(SoundRender render);

// After this `render` isn't called any more. Main thread.
void sound_device_close();
