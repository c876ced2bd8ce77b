// The samples of complete sounds, and the beginnings of streams.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "sound/channel.h"
#include "sound/driver.h"

struct SoundBuffer {
  std::unique_ptr<std::byte[]> bytes;  // null: a stream
  std::unique_ptr<std::byte[]> head;   // the beginning of a stream, for its ring
  std::uint32_t frames = 0;
  int channels = 2, sample_bytes = 2;

  // Silence is 0 in 16 bits, 0x80 in 8.
  [[nodiscard]] std::byte silence() const {
    return sample_bytes == 2 ? std::byte{0} : std::byte{0x80};
  }
  [[nodiscard]] int frame_bytes() const { return channels * sample_bytes; }
  [[nodiscard]] SampleSource source(bool loop) const {
    return {bytes.get(), nullptr, nullptr, frames, channels, sample_bytes, loop};
  }
};

// Loads `length` bytes; for a stream, as many as its ring holds. Null on failure. Needs the sound
// lock.
SoundBuffer* buffer_create(const JpsWaveFormat& format, std::uint32_t length, bool streamed,
                           ReadFile* file, std::uint32_t offset);

// Frees a buffer that no voice plays any more. Its memory is freed once the mixing has finished
// with it; later calls check for that, and nobody waits. Needs the sound lock.
void buffer_release(SoundBuffer* buffer);

// Frees everything that was released; the device must be closed.
void buffers_free_released();
