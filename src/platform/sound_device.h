// The loudspeaker: 16-bit stereo at 44100 Hz, pulled block by block.
#pragma once

#include <cstdint>

constexpr int SOUND_RATE_HZ = 44100;

// Fills `frames` frames of `out`: left, right, left, ... Called on the device's own thread, which
// must not be kept waiting; never by two threads at once.
using SoundRender = void (*)(std::int16_t* out, int frames);

// Opens what LILYHOP_SOUND names and lets it pull from `render`. False if the machine gives no
// thread for it. Main thread.
//   sdl: the device that SDL_AUDIO_DEVICE_NAME names, or else the system's default one; standard
//     output says which. One that is lost later is opened again as soon as there is one; until then
//     `render` is called at the same pace and nobody hears it. Where there is none at all it goes
//     as with "none", and standard error says why in a line.
//   none: `render` is called at the device's pace by a clock of its own.
//   unix:PATH: the same, and each block goes to that socket, where nobody need listen.
bool sound_device_open(SoundRender render);

// After this `render` isn't called any more. Main thread.
void sound_device_close();
