// Streams: rings that play while they are filled from their files.
#pragma once

#include "sound/driver.h"

// All of these need the sound lock.

// Takes a ring and an event for `sound`, which is about to play on `track`, and fills the ring from
// the start of the sound. False if there is no ring or no event left.
bool stream_begin(JpsSound& sound, int track);

// Gives event and ring back. `mark` is that of the voice's stop.
void stream_end(JpsSound& sound, std::uint32_t mark);

// Fills what has been played since the last time. A loop goes on with its start behind its end.
void stream_refill(JpsSound& sound);

// Clears all events, rings and marks. While no device is open.
void streams_reset();

// The lowest event that is set, reset by this; -1: none.
int stream_event_take();
// The stream that uses an event; null: none.
JpsSound* stream_of_event(int event);
