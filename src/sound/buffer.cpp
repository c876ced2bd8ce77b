#include "sound/buffer.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>
#include <vector>

#include "platform/files.h"
#include "sound/mixer.h"

namespace {

constexpr int LOWEST_HZ = 100, HIGHEST_HZ = 100'000;
constexpr std::uint16_t FORMAT_PCM = 1, FORMAT_EXTENSIBLE = 0xFFFE;

// A buffer that voices may still be fading out, with the mark of each voice at its release.
struct Released {
  std::unique_ptr<SoundBuffer> buffer;
  std::array<std::uint32_t, MIX_VOICES> marks;

  [[nodiscard]] bool is_done_with() const {
    for (int voice = 0; voice < MIX_VOICES; ++voice) {
      if (!voice_is_done_with(voice, marks[voice])) return false;
    }
    return true;
  }
};

struct Buffers {
  std::vector<Released> released;
};

constinit Buffers state;

bool playable(const JpsWaveFormat& format) {
  // All extensible formats of 8 and 16 bits seen so far are PCM.
  return (format.format_tag == FORMAT_PCM || format.format_tag == FORMAT_EXTENSIBLE) &&
         (format.channels == 1 || format.channels == 2) &&
         (format.bits == 8 || format.bits == 16) && format.sample_rate >= LOWEST_HZ &&
         format.sample_rate <= HIGHEST_HZ;
}

}  // namespace

SoundBuffer* buffer_create(const JpsWaveFormat& format, std::uint32_t length, bool streamed,
                           ReadFile* file, std::uint32_t offset) {
  std::erase_if(state.released, [](const Released& one) { return one.is_done_with(); });
  if (!playable(format) || file == nullptr) return nullptr;
  auto buffer = std::make_unique<SoundBuffer>();
  buffer->channels = format.channels;
  buffer->sample_bytes = format.bits / 8;
  buffer->frames = length / static_cast<std::uint32_t>(buffer->frame_bytes());
  if (buffer->frames == 0) return nullptr;
  const std::uint32_t held = streamed ? std::min(length, JPS_STREAM_BUFFER) : length;
  std::unique_ptr<std::byte[]>& bytes = streamed ? buffer->head : buffer->bytes;
  bytes.reset(new (std::nothrow) std::byte[held]);
  if (!bytes || read_at(file, offset, bytes.get(), held) != held) return nullptr;
  return buffer.release();
}

void buffer_release(SoundBuffer* buffer) {
  Released released{std::unique_ptr<SoundBuffer>(buffer), {}};
  for (int voice = 0; voice < MIX_VOICES; ++voice) released.marks[voice] = voice_mark(voice);
  state.released.push_back(std::move(released));
  std::erase_if(state.released, [](const Released& one) { return one.is_done_with(); });
}

void buffers_free_released() {
  state.released.clear();
}
