// One sound of the mix: read, resampled, scaled by its gains, added to the bus.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "sound/resampler.h"

struct SoundEvent;
struct StreamRing;

constexpr int MIX_CHUNK = 256;  // frames mixed at a time

// The bus: the sum of the chunk's sounds, on the scale of 16-bit samples.
struct MixBus {
  alignas(32) std::array<float, MIX_CHUNK> left{};
  alignas(32) std::array<float, MIX_CHUNK> right{};
};

// Where a sound's samples come from: memory, or a ring.
struct SampleSource {
  const std::byte* bytes = nullptr;  // null: from `ring`
  const StreamRing* ring = nullptr;
  SoundEvent* event = nullptr;  // for a ring: fired at its points
  std::int64_t frames = 0;      // of the whole sound
  int channels = 2;             // 1 or 2
  int sample_bytes = 2;         // 1 (unsigned) or 2
  bool loop = false;

  [[nodiscard]] int frame_bytes() const { return channels * sample_bytes; }
};

struct Channel {
  enum State : std::uint8_t { IDLE, PLAYING, LEAVING };

  State state = IDLE;
  SampleSource source;
  std::int64_t frame = 0;      // position; continues to count in loops
  std::uint32_t fraction = 0;  // of a frame, in 2^-32
  std::uint64_t step = RESAMPLE_SAME_RATE;
  std::array<float, 2> gain{}, goal{};  // left and right: now, and at the end of the ramp
  int ramp = 0;                         // frames until `goal` is reached
  std::array<float, 2> last{};          // the last output frame
  int tail = 0;  // frames in which it falls to zero after the end of the sound
};

// Begins at the first sample. A loud beginning is faded in over a millisecond.
void channel_start(Channel& channel, const SampleSource& source, std::uint64_t step, float left,
                   float right);

// Sets new gains, reached within three milliseconds.
void channel_weigh(Channel& channel, float left, float right);

// Fades out within three milliseconds. It still reads its source until it is IDLE.
void channel_leave(Channel& channel);

// Adds the next `frames` frames, at most MIX_CHUNK, to the bus. True if the sound reached its own
// end in them.
bool channel_mix(Channel& channel, MixBus& bus, int frames);

// How many frames around its position a channel may read for one output frame.
constexpr int CHANNEL_FRAMES_BEFORE = RESAMPLE_MOST_TAPS / 2 - 1;
constexpr int CHANNEL_FRAMES_AFTER = RESAMPLE_MOST_TAPS / 2;
