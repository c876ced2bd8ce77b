// The sound driver: 16 tracks, each of which plays at most one sound.
//
// Short sounds lie whole in a buffer. Long ones stream from their file through a ring that the
// transition thread refills when the mixing has passed the ring's middle or its end. All calls are
// safe from any thread; they take the sound lock and never wait for the mixing. Until
// `jpsdrvr_init` has answered 0, and after `jpsdrvr_shutdown`, every call answers -1.
#pragma once

#include <cstdint>

#include "sound/key.h"

struct JpsPlayer;    // a running playlist
struct ReadFile;     // platform/files.h
struct SoundBuffer;  // the samples of a sound, and how to read them
struct SoundEvent;   // what a stream fires when a point of its ring has been played
struct StreamRing;   // what a stream plays from

constexpr int JPS_TRACKS = 16;
constexpr std::uint32_t JPS_STREAM_BUFFER = 65536;  // bytes in a stream's ring
constexpr int JPS_MAX_DUPLICATES = 1024;
constexpr int JPS_EVENTS = 64;

struct JpsWaveFormat {
  std::uint16_t format_tag, channels;
  std::uint32_t sample_rate, average_bytes;
  std::uint16_t block_align, bits;
};

struct JpsSound {
  JpsKey key;            // of its file's name
  std::uint32_t length;  // bytes of sample data
  std::uint8_t loop;     // repeats; set by the player before each start, which takes it over
  std::uint8_t streamed;
  std::uint16_t track;  // that it last played on
  std::uint32_t sample_rate, channels;
  SoundEvent* notify_event;    // in use while a stream plays
  SoundBuffer* buffer;         // null marks a free row of the duplicates
  StreamRing* notify;          // the ring of a stream while it plays
  std::uint32_t is_duplicate;  // a copy made to play a sound twice at once; shares the samples
  std::uint32_t buffer_size;   // JPS_STREAM_BUFFER for a stream, else `length`
  std::uint32_t write_cursor;  // next byte of the ring to fill
  ReadFile* file;              // of a stream; null for a sound held whole
  std::uint32_t file_pos;      // next file offset to read
  std::uint32_t data_offset;   // where its samples begin in the file
};

struct JpsTrack {
  JpsSound* sound;       // null: none
  JpsPlayer* owner;      // null: free
  std::uint16_t volume;  // 0 to 255; kept from sound to sound
  std::int32_t pan;      // -10000 to 10000; kept from sound to sound
  std::uint16_t priority;
};

// Holds the one lock over players, banks and tracks while it lives. A thread may hold it many
// times. What is complained of meanwhile (sound/complaints.h) is printed behind the last.
class SoundLock {
 public:
  SoundLock();
  ~SoundLock();
  SoundLock(const SoundLock&) = delete;
  SoundLock& operator=(const SoundLock&) = delete;
};

// Track `n`, 0 to 15. Hold the lock while using it.
JpsTrack& jpsdrvr_track(int n);

// Brings up device, mixing and transition thread. 0 if all stands; otherwise the failure has been
// printed and nothing is left running.
int jpsdrvr_init();

// Ends thread and device. Sounds that were not freed stay with their owner, who frees them after.
// False if the thread doesn't end, within a second: then nothing is closed or freed under it.
bool jpsdrvr_shutdown();

// Takes `data_size` bytes of `format` at `sound.data_offset` of `sound.file` into the driver:
// whole, or as a stream, of which only the beginning is read now, if `sound.streamed` is set. The
// file must stay open for a stream and is no longer needed otherwise. 0, or -1 if the format can't
// be played (PCM, 1 or 2 channels, 8 or 16 bits, 100 to 100000 Hz can), the file is too short or
// there is no memory.
int jpsdrvr_create_buffer(const JpsWaveFormat& format, std::uint32_t data_size, JpsSound& sound);

// Silences the sound wherever it plays, frees its samples and closes its file. -1 if it has none.
// Works while the driver is down too.
int jpsdrvr_free_sound(JpsSound& sound);

// Starts `sound` from its beginning on `track` 0 to 15, in place of what plays there, at the
// track's volume and pan and its own sample rate. A sound that plays elsewhere is played twice,
// through a row of the duplicates. 0, or -1: no such track, no buffer, or no free row, ring or
// event.
int jpsdrvr_play(JpsSound* sound, int track);

// Stops the track. 0, also if nothing plays there; -1: no such track.
int jpsdrvr_stop(int track);

// Volume 0 to 255, held to that; about a third of a decibel a step.
int jpsdrvr_set_volume(int track, int volume);

// -10000 (left alone) to 10000 (right alone): attenuation of the other side in hundredths of a
// decibel. -1 outside of that, with nothing changed.
int jpsdrvr_set_pan(int track, int pan);

// Sample rate to play the track's sound at until it ends, 100 to 100000 Hz; -1 outside. Without a
// sound nothing is done, and the answer is 0.
int jpsdrvr_set_frequency(int track, int hz);

// The sample rate of the sound itself, whatever it is played at. -1 without a sound.
int jpsdrvr_get_frequency(int track);

// 1 or 0. A sound that is found played out is cleaned up.
int jpsdrvr_is_playing(int track);

// Master volume, held to 0 to 255, laid over all tracks at once. -1 if the driver is down: it is
// remembered all the same.
int jpsdrvr_set_master_volume(int volume);

// What the transition thread does when a stream has reached a point of its ring: refills it and
// runs the playlists. Only for those who step the sound by hand, after each block; without the
// lock.
void jpsdrvr_transition();
