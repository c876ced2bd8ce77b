#include "sound/driver.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <mutex>

#include "platform/mutex.h"
#include "platform/sound_device.h"
#include "platform/thread.h"
#include "sound/buffer.h"
#include "sound/complaints.h"
#include "sound/mixer.h"
#include "sound/stream.h"

void jps_update_all();

namespace {

constexpr int LOUDEST = 0, SOFTEST = -10000;  // hundredths of a decibel
constexpr int PAN_LIMIT = 10000;
constexpr int LOWEST_HZ = 100, HIGHEST_HZ = 100'000;
constexpr int JOIN_BOUND_MS = 1000;

struct Driver {
  std::array<JpsTrack, JPS_TRACKS> tracks{};
  std::array<JpsSound, JPS_MAX_DUPLICATES> duplicates{};
  std::uint8_t master_volume = 255;
  std::shared_ptr<Thread> transition_thread;
  Mutex refilling;  // taken before the sound lock
  bool up = false;
};

Driver state;

struct Lock {
  std::recursive_mutex mutex;
  int depth = 0;  // under the mutex: how often its thread has taken it
};

Lock& sound_lock() {
  static Lock lock;
  return lock;
}

bool is_track(int n) {
  return n >= 0 && n < JPS_TRACKS;
}

// Each step is a third of a decibel; 255 is 0, 0 is -8500. Rounded towards zero.
constexpr int db(int volume) {
  return static_cast<int>(static_cast<float>((volume & 0xFF) - 255) * 33.333335876464844F);
}

static_assert(db(255) == 0 && db(128) == -4233 && db(0) == -8500);

// Sounds that ignore the master volume: the operator measures by the two sines.
struct OwnLevel {
  JpsKey key;
  int level;
};
constexpr OwnLevel OWN_LEVELS[] = {
    {{0x36180000, 0xD3FA4754}, db(215)},
    {jps_key("sine100.wav"), db(255)},
    {jps_key("sine1k.wav"), db(255)},
};

int attenuation(const JpsTrack& track) {
  int level = db(state.master_volume);
  for (const OwnLevel& own : OWN_LEVELS) {
    if (track.sound != nullptr && track.sound->key == own.key) level = own.level;
  }
  return std::clamp(level + db(track.volume), SOFTEST, LOUDEST);
}

void apply_level(int n) {
  const JpsTrack& track = state.tracks[n];
  if (track.sound != nullptr) voice_set_level(n, attenuation(track), track.pan);
}

// A free row for playing the sound a second time; null: none is free.
JpsSound* duplicate_of(const JpsSound& sound) {
  const auto row = std::find_if(state.duplicates.begin(), state.duplicates.end(),
                                [](const JpsSound& one) { return one.buffer == nullptr; });
  if (row == state.duplicates.end()) return nullptr;
  *row = sound;
  row->is_duplicate = 1;
  row->notify_event = nullptr;
  row->notify = nullptr;
  return &*row;
}

// The row to start: the sound itself, or a second row if it plays on another track. If it has ended
// there, it leaves that track.
JpsSound* free_self(JpsSound& sound) {
  if (state.tracks[sound.track].sound != &sound) return &sound;
  if (voice_is_playing(sound.track)) return duplicate_of(sound);
  jpsdrvr_stop(sound.track);
  return &sound;
}

// Serves the events that are set, up to the first whose stream needs a read. False: there is none.
bool next_read(StreamRead& read) {
  const SoundLock lock;
  if (!state.up) return false;
  for (int event = stream_event_take(); event >= 0; event = stream_event_take()) {
    jps_update_all();
    JpsSound* sound = stream_of_event(event);
    if (sound == nullptr) continue;  // stopped meanwhile, perhaps by the update
    if (!voice_is_playing(sound->track)) {
      jpsdrvr_stop(sound->track);  // one that doesn't loop and has ended
    } else if (stream_want(*sound, read)) {
      return true;
    }
  }
  return false;
}

void transition_loop(const Thread& self, void* /*context*/) {
  while (!thread_stop_requested(self)) {
    const std::uint32_t fired = mixer_events_fired();
    jpsdrvr_transition();
    if (!thread_stop_requested(self)) mixer_wait_event(fired);
  }
}

}  // namespace

SoundLock::SoundLock() {
  sound_lock().mutex.lock();
  ++sound_lock().depth;
}

SoundLock::~SoundLock() {
  const bool last = --sound_lock().depth == 0;
  sound_lock().mutex.unlock();
  if (last) jps_complaints_lock_is_free();
}

JpsTrack& jpsdrvr_track(int n) {
  return state.tracks[n];
}

int jpsdrvr_init() {
  if (!jpsdrvr_shutdown()) return -1;
  {
    const SoundLock lock;
    mixer_reset();
    streams_reset();
    for (JpsTrack& track : state.tracks) track = JpsTrack{};
    for (JpsSound& row : state.duplicates) row.buffer = nullptr;
  }
  // Without the lock, because both may print. Nobody uses the driver before it is up.
  if (!sound_device_open(mixer_render)) {
    std::puts("jpsdrvr_init(): ERROR! Couldn't create dsound interface");
    return -1;
  }
  state.transition_thread =
      thread_start("transition", THREAD_PRIORITY_TIME_CRITICAL, transition_loop, nullptr);
  if (!state.transition_thread) {
    std::puts("jpsdrvr_init(): ERROR! Couldn't create transition thread!");
    sound_device_close();
    return -1;
  }
  const SoundLock lock;
  state.up = true;
  return 0;
}

bool jpsdrvr_shutdown() {
  if (state.transition_thread) {
    thread_request_stop(*state.transition_thread);
    mixer_wake_waiting();
    if (!thread_join(*state.transition_thread, JOIN_BOUND_MS)) return false;
    state.transition_thread.reset();
  }
  const SoundLock lock;
  if (!state.up) return true;
  for (int n = 0; n < JPS_TRACKS; ++n) jpsdrvr_stop(n);
  state.up = false;
  sound_device_close();
  mixer_reset();
  buffers_free_released();
  return true;
}

int jpsdrvr_create_buffer(const JpsWaveFormat& format, std::uint32_t data_size, JpsSound& sound) {
  const SoundLock lock;
  if (!state.up) return -1;
  SoundBuffer* buffer =
      buffer_create(format, data_size, sound.streamed != 0, sound.file, sound.data_offset);
  if (buffer == nullptr) return -1;
  sound.buffer = buffer;
  // Part of a frame at the end would swap left and right in the next pass of a loop.
  sound.length = buffer->frames * static_cast<std::uint32_t>(buffer->frame_bytes());
  sound.buffer_size = sound.streamed != 0 ? JPS_STREAM_BUFFER : sound.length;
  sound.sample_rate = format.sample_rate;
  sound.channels = format.channels;
  sound.is_duplicate = 0;
  sound.file_pos = sound.data_offset;
  sound.notify_event = nullptr;
  sound.notify = nullptr;
  return 0;
}

int jpsdrvr_free_sound(JpsSound& sound) {
  const SoundLock lock;
  if (sound.buffer == nullptr) return -1;
  for (int n = 0; n < JPS_TRACKS; ++n) {
    const JpsSound* playing = state.tracks[n].sound;
    if (playing != nullptr && playing->buffer == sound.buffer) jpsdrvr_stop(n);
  }
  buffer_release(sound.buffer);
  sound.buffer = nullptr;
  if (sound.file != nullptr) stream_close(sound.file);
  sound.file = nullptr;
  return 0;
}

int jpsdrvr_play(JpsSound* sound, int n) {
  const SoundLock lock;
  if (!state.up || sound == nullptr || sound->buffer == nullptr || !is_track(n)) return -1;
  jpsdrvr_stop(n);
  sound = free_self(*sound);
  if (sound == nullptr) return -1;
  JpsTrack& track = state.tracks[n];
  SampleSource source = sound->buffer->source(sound->loop != 0);
  if (sound->streamed != 0) {
    if (!stream_begin(*sound, n)) {
      if (sound->is_duplicate != 0) sound->buffer = nullptr;
      return -1;
    }
    source.ring = sound->notify;
    source.event = sound->notify_event;
  }
  sound->track = static_cast<std::uint16_t>(n);
  track.sound = sound;
  apply_level(n);
  voice_start(n, source, static_cast<int>(sound->sample_rate));
  return 0;
}

int jpsdrvr_stop(int n) {
  const SoundLock lock;
  if (!state.up || !is_track(n)) return -1;
  JpsSound* sound = state.tracks[n].sound;
  if (sound == nullptr) return 0;
  stream_end(*sound, voice_stop(n));
  if (sound->is_duplicate != 0) sound->buffer = nullptr;
  state.tracks[n].sound = nullptr;
  return 0;
}

int jpsdrvr_set_volume(int n, int volume) {
  const SoundLock lock;
  if (!state.up || !is_track(n)) return -1;
  state.tracks[n].volume = static_cast<std::uint16_t>(std::clamp(volume, 0, 255));
  apply_level(n);
  return 0;
}

int jpsdrvr_set_pan(int n, int pan) {
  const SoundLock lock;
  if (!state.up || !is_track(n) || pan < -PAN_LIMIT || pan > PAN_LIMIT) return -1;
  state.tracks[n].pan = pan;
  apply_level(n);
  return 0;
}

int jpsdrvr_set_frequency(int n, int hz) {
  const SoundLock lock;
  if (!state.up || !is_track(n)) return -1;
  if (state.tracks[n].sound == nullptr) return 0;
  if (hz < LOWEST_HZ || hz > HIGHEST_HZ) return -1;
  voice_set_frequency(n, hz);
  return 0;
}

int jpsdrvr_get_frequency(int n) {
  const SoundLock lock;
  if (!state.up || !is_track(n) || state.tracks[n].sound == nullptr) return -1;
  return static_cast<int>(state.tracks[n].sound->sample_rate);
}

int jpsdrvr_is_playing(int n) {
  const SoundLock lock;
  if (!state.up || !is_track(n)) return -1;
  if (state.tracks[n].sound == nullptr) return 0;
  if (voice_is_playing(n)) return 1;
  jpsdrvr_stop(n);
  return 0;
}

int jpsdrvr_set_master_volume(int volume) {
  const SoundLock lock;
  state.master_volume = static_cast<std::uint8_t>(std::clamp(volume, 0, 255));
  if (!state.up) return -1;
  for (int n = 0; n < JPS_TRACKS; ++n) apply_level(n);
  return 0;
}

void jpsdrvr_transition() {
  const MutexLock one_at_a_time(state.refilling);
  StreamRead read;
  while (next_read(read)) {
    stream_read(read);
    const SoundLock lock;
    stream_put(read);
  }
}
