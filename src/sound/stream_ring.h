// The ring of a stream: filled behind the play position while the mixing reads ahead of it.
#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "sound/driver.h"

// A point of a ring has been played. The mixing sets it, the transition thread clears it.
struct SoundEvent {
  std::atomic<bool> set{false};
};

// Bytes in words that are read and written atomically. A stream that falls behind is filled right
// where it plays. It must then play old or new words, without undefined behaviour.
struct StreamRing {
  std::array<std::uint64_t, JPS_STREAM_BUFFER / 8> words{};
  std::atomic<std::uint32_t> fills{0};  // orders writing before reading

  // Used under the lock: who plays from here, or did last.
  int track = 0;
  std::uint32_t last_order = 0;  // of the track's voice that ended it
  bool taken = false, loop = false;
  std::uint64_t filled = 0;  // bytes since the start
};

inline std::atomic_ref<std::uint64_t> ring_word(const StreamRing& ring, std::uint32_t byte) {
  const std::size_t index = byte % JPS_STREAM_BUFFER / 8;
  return std::atomic_ref<std::uint64_t>(const_cast<std::uint64_t&>(ring.words[index]));
}

// Copies `size` bytes in from offset `at` on, wrapping round. One thread at a time.
inline void ring_write(StreamRing& ring, std::uint32_t at, const std::byte* data,
                       std::uint32_t size) {
  while (size > 0) {
    const std::uint32_t within = at % 8;
    const std::uint32_t count = size < 8 - within ? size : 8 - within;
    const auto word = ring_word(ring, at);
    auto bytes = std::bit_cast<std::array<std::byte, 8>>(word.load(std::memory_order_relaxed));
    std::memcpy(bytes.data() + within, data, count);
    word.store(std::bit_cast<std::uint64_t>(bytes), std::memory_order_relaxed);
    at += count;
    data += count;
    size -= count;
  }
  ring.fills.fetch_add(1, std::memory_order_release);
}

// Copies the words that contain `size` bytes from offset `at` on to `scratch`, which has room for
// two words more, and returns where those bytes are in it. Any thread.
inline const std::byte* ring_read(const StreamRing& ring, std::uint32_t at, std::uint32_t size,
                                  std::uint64_t* scratch) {
  ring.fills.load(std::memory_order_acquire);
  const std::uint32_t within = at % 8;
  for (std::uint32_t done = 0; done < within + size; done += 8) {
    scratch[done / 8] = ring_word(ring, at + done).load(std::memory_order_relaxed);
  }
  return reinterpret_cast<const std::byte*>(scratch) + within;
}
