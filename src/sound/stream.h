// Streams: rings that play while they are filled from their files.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sound/driver.h"

// All of these need the sound lock, but for `stream_read`.

// Takes a ring and an event for `sound`, which is about to play on `track`, and fills the ring from
// the start of the sound. False if there is no ring or no event left.
bool stream_begin(JpsSound& sound, int track);

// Gives event and ring back. `mark` is that of the voice's stop.
void stream_end(JpsSound& sound, std::uint32_t mark);

// What a stream needs next from its file. It is read without the lock: a disk may take its time,
// and whoever asks for a sound meanwhile must not wait for it. One at a time: from a want to its
// put there is no other.
struct StreamRead {
  JpsSound* sound;
  int track;
  std::uint32_t mark;  // of its voice: by it the stream is known to play on
  ReadFile* file;
  std::uint32_t data_offset, length;
  std::uint32_t position;  // of the next byte, from `data_offset` on
  std::uint32_t size;      // bytes of the ring that are free
  std::uint32_t staged;    // bytes read for them: less at the end of a sound that doesn't loop
  std::byte silence;
  bool loop;
  std::uint64_t filled;  // bytes since the start, when this has been put
};

// Wants what has been played since the last time, and on with a loop's start behind its end. False
// if nothing has been.
bool stream_want(JpsSound& sound, StreamRead& read);

void stream_read(StreamRead& read);

// Puts what was read into the ring, unless the stream has been stopped meanwhile.
void stream_put(const StreamRead& read);

// Closes a stream's file: now, or when the read that is under way has ended.
void stream_close(ReadFile* file);

// Clears all events, rings and marks. While no device is open.
void streams_reset();

// The lowest event that is set, reset by this; -1: none.
int stream_event_take();
// The stream that uses an event; null: none.
JpsSound* stream_of_event(int event);
