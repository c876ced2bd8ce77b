#include "sound/stream.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>

#include "platform/files.h"
#include "sound/buffer.h"
#include "sound/complaints.h"
#include "sound/mixer.h"
#include "sound/stream_ring.h"

namespace {

// One for each track, and one more for a stream that is fading out: a stream that restarts must not
// overwrite its own end.
constexpr int RINGS = 2 * JPS_TRACKS;
constexpr std::size_t PREFETCH_BYTES = 2 * JPS_STREAM_BUFFER;

struct Streams {
  std::array<SoundEvent, JPS_EVENTS> events;
  std::array<JpsSound*, JPS_EVENTS> event_sounds{};
  std::array<StreamRing, RINGS> rings;
  std::array<std::byte, JPS_STREAM_BUFFER> staging{};  // read from the file, not yet in a ring
  ReadFile* reading = nullptr;                         // between a want and its put
  bool close_when_read = false;                        // nobody else needs that file any more
};

constinit Streams state;

StreamRing* take_ring() {
  StreamRing* taken = nullptr;
  for (StreamRing& ring : state.rings) {
    if (ring.taken) continue;
    taken = &ring;  // no better one is free; what is still fading out from it may click
    if (voice_is_done_with(ring.track, ring.last_order)) break;
  }
  if (taken != nullptr) taken->taken = true;
  return taken;
}

SoundEvent* take_event(JpsSound& sound) {
  for (int i = 0; i < JPS_EVENTS; ++i) {
    if (state.event_sounds[i] != nullptr) continue;
    state.event_sounds[i] = &sound;
    state.events[i].set.store(false, std::memory_order_relaxed);
    return &state.events[i];
  }
  return nullptr;
}

// Reads from the position on. Beyond the end of the file there is silence.
void read_on(StreamRead& read, std::byte* to, std::uint32_t size) {
  const std::uint64_t offset = std::uint64_t{read.data_offset} + read.position;
  const std::size_t count = read_at(read.file, offset, to, size);
  std::fill(to + count, to + size, read.silence);
  read.position += size;
}

// Continues with the start of a loop until everything is staged; a loop shorter than that repeats
// in memory.
void go_round(StreamRead& read, std::byte* to) {
  if (read.staged < read.size) {
    const std::uint32_t lap = std::min(read.length, read.size - read.staged);
    read.position = 0;
    read_on(read, to + read.staged, lap);
    read.staged += lap;
    for (; read.staged < read.size; ++read.staged) {
      to[read.staged] = to[read.staged - read.length];
      if (read.position == read.length) read.position = 0;
      ++read.position;
    }
  }
  if (read.position == read.length) read.position = 0;
}

// Fills a ring from the beginning of its sound, which is in memory, so that a start never waits for
// the disk.
void fill_from_head(JpsSound& sound) {
  StreamRing& ring = *sound.notify;
  const std::uint32_t head = std::min(sound.length, JPS_STREAM_BUFFER);
  for (std::uint32_t at = 0; at < JPS_STREAM_BUFFER; at += head) {
    ring_write(ring, at, sound.buffer->head.get(), std::min(head, JPS_STREAM_BUFFER - at));
    if (!ring.loop) break;
  }
  sound.file_pos = sound.data_offset + (ring.loop ? JPS_STREAM_BUFFER % sound.length : head);
  sound.write_cursor = 0;
  ring.filled = JPS_STREAM_BUFFER;
}

}  // namespace

bool stream_begin(JpsSound& sound, int track) {
  StreamRing* ring = take_ring();
  sound.notify_event = ring == nullptr ? nullptr : take_event(sound);
  if (sound.notify_event == nullptr) {
    if (ring != nullptr) ring->taken = false;
    return false;
  }
  ring->track = track;
  ring->loop = sound.loop != 0;
  sound.notify = ring;
  fill_from_head(sound);
  return true;
}

void stream_end(JpsSound& sound, std::uint32_t mark) {
  std::replace(state.event_sounds.begin(), state.event_sounds.end(), &sound,
               static_cast<JpsSound*>(nullptr));
  sound.notify_event = nullptr;
  if (sound.notify == nullptr) return;
  sound.notify->last_order = mark;
  sound.notify->taken = false;
  sound.notify = nullptr;
}

bool stream_want(JpsSound& sound, StreamRead& read) {
  const StreamRing& ring = *sound.notify;
  const VoicePosition at = voice_position(ring.track);
  const bool more_to_come = ring.loop || ring.filled < sound.length;
  if (more_to_come && at.write > ring.filled) {
    jps_complain("fill_buffer(): WARNING! not filling fast enough\n");
  }
  // From the write cursor round to the play position, on whichever lap that is.
  const auto play = static_cast<std::uint32_t>(at.play % JPS_STREAM_BUFFER);
  const std::uint32_t size = (play + JPS_STREAM_BUFFER - sound.write_cursor) % JPS_STREAM_BUFFER;
  if (size == 0) return false;
  read = {.sound = &sound,
          .track = ring.track,
          .mark = voice_mark(ring.track),
          .file = sound.file,
          .data_offset = sound.data_offset,
          .length = sound.length,
          .position = sound.file_pos - sound.data_offset,
          .size = size,
          .staged = 0,
          .silence = sound.buffer->silence(),
          .loop = ring.loop,
          .filled = at.play + JPS_STREAM_BUFFER};
  state.reading = sound.file;
  return true;
}

// At most two reads.
void stream_read(StreamRead& read) {
  std::byte* const to = state.staging.data();
  read.staged = std::min(read.length - read.position, read.size);
  read_on(read, to, read.staged);
  if (read.loop) go_round(read, to);
  read_prefetch(read.file, std::uint64_t{read.data_offset} + read.position, PREFETCH_BYTES);
}

void stream_put(const StreamRead& read) {
  state.reading = nullptr;
  if (state.close_when_read) read_close(read.file);
  state.close_when_read = false;
  if (voice_mark(read.track) != read.mark) return;
  JpsSound& sound = *read.sound;
  // After the end of a sound that doesn't loop nothing is written: the mixing stops there itself.
  ring_write(*sound.notify, sound.write_cursor, state.staging.data(), read.staged);
  sound.write_cursor = (sound.write_cursor + read.size) % JPS_STREAM_BUFFER;
  sound.file_pos = read.data_offset + read.position;
  sound.notify->filled = read.filled;
}

void stream_close(ReadFile* file) {
  if (file == state.reading) {
    state.close_when_read = true;
  } else {
    read_close(file);
  }
}

void streams_reset() {
  for (SoundEvent& event : state.events) event.set.store(false, std::memory_order_relaxed);
  state.event_sounds.fill(nullptr);
  for (StreamRing& ring : state.rings) ring.taken = false;
}

int stream_event_take() {
  for (int i = 0; i < JPS_EVENTS; ++i) {
    if (state.events[i].set.exchange(false, std::memory_order_acquire)) return i;
  }
  return -1;
}

JpsSound* stream_of_event(int event) {
  return state.event_sounds[event];
}
