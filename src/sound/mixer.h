// Sixteen voices mixed to 16-bit stereo.
//
// Orders to the voices come from code under the sound lock; the mixing runs on the device's thread.
// Orders go through mailboxes and answers through atomic words, so neither side waits for the
// other. An order is heard from the next block on.
#pragma once

#include <cstdint>

#include "sound/channel.h"

constexpr int MIX_VOICES = 16;

// Silences all voices at once and discards all orders. Call while no device is open.
void mixer_reset();

// The device's callback: the next `frames` frames of left, right, left, ...
void mixer_render(std::int16_t* out, int frames);

// Everything below needs the sound lock.

// Starts a source from its beginning, in place of what the voice plays. The source's memory must
// exist until the voice has been stopped and `voice_is_done_with` returns true.
void voice_start(int voice, const SampleSource& source, int hz);

// Stops the voice; returns a mark for `voice_is_done_with`.
std::uint32_t voice_stop(int voice);

// The mark of the latest start or stop.
std::uint32_t voice_mark(int voice);

// True once the mixing no longer reads what the voice played before that mark.
bool voice_is_done_with(int voice, std::uint32_t mark);

// Attenuation, 0 to -10000, and pan, -10000 to 10000, in hundredths of a decibel.
void voice_set_level(int voice, int attenuation, int pan);

void voice_set_frequency(int voice, int hz);

// False once a source that doesn't loop has been heard to its end.
bool voice_is_playing(int voice);

// Bytes since the start of the sound that the voice plays. `play` is the first that the mixing may
// still need; nothing from `write` on has been read yet.
struct VoicePosition {
  std::uint64_t play, write;
};
VoicePosition voice_position(int voice);

// Counts up at each event that is fired; callers can wait on it.
std::uint32_t mixer_events_fired();
void mixer_wait_event(std::uint32_t fired_before);
void mixer_wake_waiting();
