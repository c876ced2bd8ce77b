// Streams: rings that play while they are filled from their files.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sound/driver.h"

// All of these need the sound lock, except `stream_read`.

// Takes a ring and an event for `sound`, which is about to play on `track`, and fills the ring from
// the start of the sound. False if no ring or event is free.
bool stream_begin(JpsSound& sound, int track);

// Releases event and ring. `mark` is that of the voice's stop.
void stream_end(JpsSound& sound, std::uint32_t mark);

// What a stream needs next from its file. It is read without the lock: a disk may be slow, and a
// caller who asks for a sound must not have to wait for it. One at a time, from a want to its put.
struct StreamRead {
  JpsSound* sound;
  int track;
  std::uint32_t mark;  // of its voice: shows whether the stream still plays
  ReadFile* file;
  std::uint32_t data_offset, length;
  std::uint32_t position;  // of the next byte, counted from `data_offset`
  std::uint32_t size;      // free bytes of the ring
  std::uint32_t staged;    // bytes read for them: fewer at the end of a sound that doesn't loop
  std::byte silence;
  bool loop;
  std::uint64_t filled;  // bytes since the start, once this has been put
};

// Wants the part that has been played since the last time, and continues a loop at its start. False
// if nothing has been played.
bool stream_want(JpsSound& sound, StreamRead& read);

void stream_read(StreamRead& read);

// Puts what was read into the ring, unless the stream has been stopped meanwhile.
void stream_put(const StreamRead& read);

// Closes a stream's file: now, or when the read in progress has ended.
void stream_close(ReadFile* file);

// Clears all events, rings and marks. Call while no device is open.
void streams_reset();

// The lowest event that is set, which this clears; -1: none.
int stream_event_take();
// The stream that uses an event; null: none.
JpsSound* stream_of_event(int event);
