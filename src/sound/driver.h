// The sound driver: 16 tracks, each of which plays at most one sound.
//
// Short sounds are complete in a buffer. Long ones stream from their file through a ring, which the
// transition thread refills when the mixing has passed its middle or its end. All calls are safe
// from any thread; they take the sound lock and never wait for the mixing. Before `jpsdrvr_init`
// has returned 0, and after `jpsdrvr_shutdown`, every call returns -1.
#pragma once

#include <cstdint>

#include "sound/key.h"

struct JpsPlayer;    // a running playlist
struct ReadFile;     // platform/files.h
struct SoundBuffer;  // the samples of a sound, with their format
struct SoundEvent;   // fired by a stream when a point of its ring has been played
struct StreamRing;   // the ring that a stream plays from

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
  JpsKey key;            // of the name of its file
  std::uint32_t length;  // bytes of sample data
  std::uint8_t loop;     // repeats; the player sets it before each start
  std::uint8_t streamed;
  std::uint16_t track;  // where it last played
  std::uint32_t sample_rate, channels;
  SoundEvent* notify_event;    // used while a stream plays
  SoundBuffer* buffer;         // null marks a free row of the duplicates
  StreamRing* notify;          // the ring of a stream while it plays
  std::uint32_t is_duplicate;  // a copy that plays a sound a second time; it shares the samples
  std::uint32_t buffer_size;   // JPS_STREAM_BUFFER for a stream, else `length`
  std::uint32_t write_cursor;  // next byte of the ring to fill
  ReadFile* file;              // of a stream; null for a complete sound
  std::uint32_t file_pos;      // next file offset to read
  std::uint32_t data_offset;   // file offset of its samples
};

struct JpsTrack {
  JpsSound* sound;       // null: none
  JpsPlayer* owner;      // null: free
  std::uint16_t volume;  // 0 to 255; stays from sound to sound
  std::int32_t pan;      // -10000 to 10000; stays from sound to sound
  std::uint16_t priority;
};

// Holds the one lock over players, banks and tracks while it exists. A thread may hold it several
// times. Messages from this time (sound/complaints.h) are printed after the last.
class SoundLock {
 public:
  SoundLock();
  ~SoundLock();
  SoundLock(const SoundLock&) = delete;
  SoundLock& operator=(const SoundLock&) = delete;
};

// Track `n`, 0 to 15. Hold the lock while using it.
JpsTrack& jpsdrvr_track(int n);

// Starts device, mixing and transition thread. 0 on success; otherwise the failure has been printed
// and nothing is left running.
int jpsdrvr_init();

// Ends thread and device. Sounds that were not freed stay with their owner, who frees them later.
// False if the thread doesn't end within a second: then nothing that it uses is closed or freed.
bool jpsdrvr_shutdown();

// Passes `data_size` bytes of `format` at `sound.data_offset` of `sound.file` to the driver:
// completely, or, if `sound.streamed` is set, as a stream, of which only the beginning is read now.
// The file of a stream must stay open; otherwise it is no longer needed. 0, or -1 if the format
// can't be played (PCM, 1 or 2 channels, 8 or 16 bits, 100 to 100000 Hz can), the file is too short
// or memory is short.
int jpsdrvr_create_buffer(const JpsWaveFormat& format, std::uint32_t data_size, JpsSound& sound);

// Silences the sound wherever it plays, frees its samples and closes its file. -1 if it has none.
// Works while the driver is down, too.
int jpsdrvr_free_sound(JpsSound& sound);

// Starts `sound` from its beginning on `track` 0 to 15, in place of what plays there, with the
// track's volume and pan and its own sample rate. A sound that plays on another track is played a
// second time from a row of the duplicates. 0, or -1: no such track, no buffer, or no free row,
// ring or event.
int jpsdrvr_play(JpsSound* sound, int track);

// Stops the track. 0, even if nothing plays there; -1: no such track.
int jpsdrvr_stop(int track);

// Volume 0 to 255, limited to that; each step is about a third of a decibel.
int jpsdrvr_set_volume(int track, int volume);

// -10000 (left only) to 10000 (right only): attenuation of the other side in hundredths of a
// decibel. -1 outside of that, and nothing changes.
int jpsdrvr_set_pan(int track, int pan);

// Sample rate for the track's sound until it ends, 100 to 100000 Hz; -1 outside. Without a sound it
// does nothing and returns 0.
int jpsdrvr_set_frequency(int track, int hz);

// The sample rate of the sound itself, not the one that it is played at. -1 without a sound.
int jpsdrvr_get_frequency(int track);

// 1 or 0. Cleans up a sound that has ended.
int jpsdrvr_is_playing(int track);

// Master volume for all tracks, limited to 0 to 255. -1 if the driver is down, but the value is
// kept.
int jpsdrvr_set_master_volume(int volume);

// The work of the transition thread when a stream has reached a point of its ring: refills it and
// runs the playlists. Only for callers that render the sound by hand, after each block. Call
// without the lock.
void jpsdrvr_transition();
