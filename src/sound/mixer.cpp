#include "sound/mixer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstddef>

#include "sound/kernels.h"
#include "sound/mailbox.h"
#include "sound/stream_ring.h"

namespace {

struct VoiceOrder {
  std::uint32_t number = 0;  // of the latest start or stop
  bool playing = false;
  SampleSource source;
  std::uint64_t step = RESAMPLE_SAME_RATE;
  float left = 1, right = 1;
};

// A count of bytes, and the number of the start that it counts from, in one word.
constexpr int COUNT_BITS = 40;  // 70 days of the fastest sound
constexpr std::uint64_t COUNT_MASK = (1ULL << COUNT_BITS) - 1;

std::uint64_t stamped(std::uint32_t number, std::int64_t count) {
  return static_cast<std::uint64_t>(number) << COUNT_BITS |
         (static_cast<std::uint64_t>(std::max<std::int64_t>(count, 0)) & COUNT_MASK);
}

std::uint64_t count_since(std::uint32_t number, std::uint64_t word) {
  return (stamped(number, 0) ^ word) >> COUNT_BITS == 0 ? word & COUNT_MASK : 0;
}

struct Voice {
  // Used under the lock:
  VoiceOrder order;
  Mailbox<VoiceOrder> mail;

  // From the mixing to the code under the lock:
  std::atomic<std::uint64_t> play{0}, write{0};  // stamped counts of bytes
  std::atomic<std::uint32_t> ended{0};           // number of the latest start that reached its end
  std::atomic<std::uint32_t> settled{0};         // nothing from before this order is read any more

  // Used by the mixing:
  std::uint32_t number = 0;  // of the order being carried out
  Channel now, before;       // what plays, and what is fading out before it
};

struct Mixer {
  std::array<Voice, MIX_VOICES> voices;
  std::atomic<std::uint32_t> events_fired{0};
};

constinit Mixer state;

void post(Voice& voice) {
  voice.mail.put(voice.order);
}

void fire(SoundEvent* event) {
  if (event == nullptr) return;
  event->set.store(true, std::memory_order_release);
  mixer_wake_waiting();
}

void begin(Voice& voice, const VoiceOrder& order) {
  voice.number = order.number;
  voice.before = voice.now;
  channel_leave(voice.before);
  voice.now = Channel{};
  if (order.playing) channel_start(voice.now, order.source, order.step, order.left, order.right);
}

// A voice can fade out only one sound at a time, in less than a chunk; orders wait for that.
void take_order(Voice& voice) {
  VoiceOrder order;
  if (voice.before.state != Channel::IDLE || !voice.mail.take(order)) return;
  if (order.number != voice.number) {
    begin(voice, order);
    return;
  }
  channel_weigh(voice.now, order.left, order.right);
  voice.now.step = order.step;
}

// A stream's points are the last bytes of the two halves of its ring.
std::int64_t points_up_to(std::int64_t byte) {
  return (byte + 1) / (JPS_STREAM_BUFFER / 2);
}

std::int64_t first_needed_byte(const Channel& channel) {
  const std::int64_t frame = channel.frame - CHANNEL_FRAMES_BEFORE;
  return std::max<std::int64_t>(frame, 0) * channel.source.frame_bytes();
}

void mix_voice(Voice& voice, MixBus& bus, int frames) {
  take_order(voice);
  channel_mix(voice.before, bus, frames);
  if (voice.before.state == Channel::IDLE) {
    voice.settled.store(voice.number, std::memory_order_release);
  }
  Channel& now = voice.now;
  if (now.state == Channel::IDLE) return;
  const std::int64_t reach = static_cast<std::int64_t>((now.step * frames) >> 32) + 1;
  const std::int64_t last_frame = now.frame + reach + CHANNEL_FRAMES_AFTER;
  const std::int64_t played = first_needed_byte(now);
  voice.write.store(stamped(voice.number, last_frame * now.source.frame_bytes()),
                    std::memory_order_release);
  const bool ended = channel_mix(now, bus, frames);
  const std::int64_t play = first_needed_byte(now);
  voice.play.store(stamped(voice.number, play), std::memory_order_release);
  if (ended) voice.ended.store(voice.number, std::memory_order_release);
  if (ended || points_up_to(play) != points_up_to(played)) fire(now.source.event);
}

float gain_of(int hundredths_db) {
  return std::pow(10.0F, static_cast<float>(hundredths_db) / 2000.0F);
}

}  // namespace

void mixer_reset() {
  resample_prepare();
  for (Voice& voice : state.voices) {
    VoiceOrder unread;
    voice.mail.take(unread);
    voice.order.playing = false;
    voice.number = voice.order.number;
    voice.now = voice.before = Channel{};
    voice.settled.store(voice.number, std::memory_order_relaxed);
  }
}

void mixer_render(std::int16_t* out, int frames) {
  while (frames > 0) {
    const int chunk = std::min(frames, MIX_CHUNK);
    MixBus bus;
    for (Voice& voice : state.voices) mix_voice(voice, bus, chunk);
    sound_kernels().pack(bus.left.data(), bus.right.data(), chunk, out);
    out += static_cast<std::ptrdiff_t>(chunk) * 2;
    frames -= chunk;
  }
}

void voice_start(int voice, const SampleSource& source, int hz) {
  Voice& v = state.voices[voice];
  ++v.order.number;
  v.order.playing = true;
  v.order.source = source;
  v.order.step = resample_step(hz);
  post(v);
}

std::uint32_t voice_stop(int voice) {
  Voice& v = state.voices[voice];
  ++v.order.number;
  v.order.playing = false;
  post(v);
  return v.order.number;
}

std::uint32_t voice_mark(int voice) {
  return state.voices[voice].order.number;
}

bool voice_is_done_with(int voice, std::uint32_t mark) {
  const std::uint32_t settled = state.voices[voice].settled.load(std::memory_order_acquire);
  return static_cast<std::int32_t>(settled - mark) >= 0;
}

void voice_set_level(int voice, int attenuation, int pan) {
  Voice& v = state.voices[voice];
  v.order.left = gain_of(attenuation - std::max(pan, 0));
  v.order.right = gain_of(attenuation + std::min(pan, 0));
  post(v);
}

void voice_set_frequency(int voice, int hz) {
  Voice& v = state.voices[voice];
  v.order.step = resample_step(hz);
  post(v);
}

bool voice_is_playing(int voice) {
  const Voice& v = state.voices[voice];
  return v.order.playing && v.ended.load(std::memory_order_acquire) != v.order.number;
}

VoicePosition voice_position(int voice) {
  const Voice& v = state.voices[voice];
  const std::uint64_t play = v.play.load(std::memory_order_acquire);
  const std::uint64_t write = v.write.load(std::memory_order_acquire);
  return {count_since(v.order.number, play), count_since(v.order.number, write)};
}

std::uint32_t mixer_events_fired() {
  return state.events_fired.load(std::memory_order_acquire);
}

void mixer_wait_event(std::uint32_t fired_before) {
  state.events_fired.wait(fired_before, std::memory_order_acquire);
}

void mixer_wake_waiting() {
  state.events_fired.fetch_add(1, std::memory_order_release);
  state.events_fired.notify_all();
}
