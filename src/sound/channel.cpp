#include "sound/channel.h"

#include <algorithm>
#include <cmath>

#include "sound/kernels.h"
#include "sound/stream_ring.h"

namespace {

constexpr int RAMP_FRAMES = 128;    // 2.9 ms: a step of the volume this long isn't a click
constexpr int ATTACK_FRAMES = 64;   // 1.5 ms, short enough to keep the attack of a drum
constexpr int TAIL_FRAMES = 64;     // the last sample of a cut wave falls to zero in this time
constexpr float NEAR_SILENCE = 33;  // 60 dB below full scale: an inaudible step

// The most frames of a sound that one chunk needs: at the fastest step, with the widest filter.
constexpr int MOST_FRAMES = MIX_CHUNK * 100'000 / 44'100 + RESAMPLE_MOST_TAPS + 8;

// Left and right of a piece of a sound. A mono sound uses only the left.
struct Planes {
  alignas(32) std::array<float, MOST_FRAMES> left, right;
};

// Only the mixing thread uses these.
struct Scratch {
  Planes in;   // at the sound's rate
  Planes out;  // at the output's rate
  alignas(32) std::array<std::uint64_t, MOST_FRAMES / 2 + 2> ring;
};

constinit Scratch scratch{};

// How many frames of the source are in one piece from `first` on, at most `count`.
int piece_frames(const SampleSource& source, std::int64_t first, int count) {
  std::int64_t room = count;
  if (source.bytes != nullptr) {
    room = source.frames - first % source.frames;
  } else {
    constexpr std::uint32_t RING = JPS_STREAM_BUFFER;
    const auto at = static_cast<std::uint32_t>(first * source.frame_bytes() % RING);
    room = (RING - at) / source.frame_bytes();
    if (!source.loop) room = std::min(room, source.frames - first);
  }
  return static_cast<int>(std::min<std::int64_t>(room, count));
}

const std::byte* piece_bytes(const SampleSource& source, std::int64_t first, int count) {
  const int size = source.frame_bytes();
  if (source.bytes != nullptr) return source.bytes + first % source.frames * size;
  const auto at = static_cast<std::uint32_t>(first * size % JPS_STREAM_BUFFER);
  return ring_read(*source.ring, at, static_cast<std::uint32_t>(count * size), scratch.ring.data());
}

// Frames `first` to `first` + `count` - 1 as floats. There is silence before the beginning, and
// after the end of a sound that doesn't loop.
void fetch(const SampleSource& source, std::int64_t first, int count, Planes& to) {
  const SoundKernels& kernels = sound_kernels();
  int done = 0;
  while (done < count) {
    const std::int64_t at = first + done;
    const bool after_end = !source.loop && at >= source.frames;
    int piece = count - done;
    if (at < 0) piece = static_cast<int>(std::min<std::int64_t>(-at, piece));
    if (at < 0 || after_end) {
      std::fill_n(to.left.begin() + done, piece, 0.0F);
      std::fill_n(to.right.begin() + done, piece, 0.0F);
    } else {
      piece = piece_frames(source, at, piece);
      kernels.unpack(piece_bytes(source, at, piece), piece, source.channels, source.sample_bytes,
                     to.left.data() + done, to.right.data() + done);
    }
    done += piece;
  }
}

// The next `frames` frames at the output's rate. Moves the position past them.
const Planes& read_on(Channel& channel, int frames) {
  const bool stereo = channel.source.channels == 2;
  const std::uint64_t advance = channel.fraction + frames * channel.step;
  const std::int64_t first = channel.frame;
  const std::uint32_t fraction = channel.fraction;
  channel.frame += static_cast<std::int64_t>(advance >> 32);
  channel.fraction = static_cast<std::uint32_t>(advance);
  if (channel.step == RESAMPLE_SAME_RATE && fraction == 0) {
    fetch(channel.source, first, frames, scratch.in);
    return scratch.in;
  }
  const ResampleFilter filter = resample_filter(channel.step);
  const int needed = static_cast<int>(advance >> 32) + filter.taps;
  fetch(channel.source, first - (filter.taps / 2 - 1), needed, scratch.in);
  sound_kernels().resample({filter.rows, filter.taps, fraction, channel.step, frames,
                            scratch.in.left.data(), stereo ? scratch.in.right.data() : nullptr,
                            scratch.out.left.data(), scratch.out.right.data()});
  return scratch.out;
}

// Output frames from the position to the end of a sound that doesn't loop, at most `frames`.
int frames_to_end(const Channel& channel, int frames) {
  if (channel.source.loop) return frames;
  const std::int64_t left = channel.source.frames - channel.frame;
  if (left <= 0) return 0;
  if (left > MOST_FRAMES) return frames;
  const std::uint64_t distance = (static_cast<std::uint64_t>(left) << 32) - channel.fraction;
  const std::uint64_t outputs = (distance + channel.step - 1) / channel.step;
  return static_cast<int>(std::min<std::uint64_t>(outputs, frames));
}

// Adds `frames` frames from offset `from` on, with the gain along the ramp.
void weigh(Channel& channel, const Planes& planes, int from, int frames, MixBus& bus, int at) {
  const float* left = planes.left.data() + from;
  const float* right = channel.source.channels == 2 ? planes.right.data() + from : left;
  std::array<float, 2> rise{};
  if (channel.ramp > 0) {
    for (int side = 0; side < 2; ++side) {
      rise[side] = (channel.goal[side] - channel.gain[side]) / static_cast<float>(channel.ramp);
    }
  }
  const SoundKernels& kernels = sound_kernels();
  kernels.mix(left, frames, channel.gain[0], rise[0], bus.left.data() + at);
  kernels.mix(right, frames, channel.gain[1], rise[1], bus.right.data() + at);
  const auto last = static_cast<float>(frames - 1);
  channel.last = {left[frames - 1] * (channel.gain[0] + last * rise[0]),
                  right[frames - 1] * (channel.gain[1] + last * rise[1])};
  if (channel.ramp == 0) return;
  channel.ramp -= frames;
  for (int side = 0; side < 2; ++side) {
    channel.gain[side] = channel.ramp == 0
                             ? channel.goal[side]
                             : channel.gain[side] + static_cast<float>(frames) * rise[side];
  }
}

// A wave that was cut off leaves a step, which is spread over some frames.
void mix_tail(Channel& channel, MixBus& bus, int at, int frames) {
  for (int i = at; i < frames && channel.tail > 0; ++i) {
    --channel.tail;
    const float share = static_cast<float>(channel.tail) / TAIL_FRAMES;
    bus.left[i] += channel.last[0] * share;
    bus.right[i] += channel.last[1] * share;
  }
  if (channel.tail == 0) channel.state = Channel::IDLE;
}

}  // namespace

void channel_start(Channel& channel, const SampleSource& source, std::uint64_t step, float left,
                   float right) {
  channel = Channel{};
  channel.state = Channel::PLAYING;
  channel.source = source;
  channel.step = step;
  channel.goal = {left, right};
  fetch(source, 0, 1, scratch.in);
  const float other = source.channels == 2 ? scratch.in.right[0] : 0;
  const float loudness = std::max(std::abs(scratch.in.left[0]), std::abs(other));
  if (loudness < NEAR_SILENCE) {
    channel.gain = channel.goal;
  } else {
    channel.ramp = ATTACK_FRAMES;
  }
}

void channel_weigh(Channel& channel, float left, float right) {
  if (channel.state != Channel::PLAYING) return;
  if (channel.goal[0] == left && channel.goal[1] == right) return;
  channel.goal = {left, right};
  channel.ramp = RAMP_FRAMES;
}

void channel_leave(Channel& channel) {
  if (channel.state != Channel::PLAYING) return;
  channel.state = Channel::LEAVING;
  channel.goal = {};
  channel.ramp = RAMP_FRAMES;
}

bool channel_mix(Channel& channel, MixBus& bus, int frames) {
  if (channel.state == Channel::IDLE) return false;
  if (channel.tail > 0) {
    mix_tail(channel, bus, 0, frames);
    return false;
  }
  int heard = frames_to_end(channel, frames);
  if (channel.state == Channel::LEAVING) heard = std::min(heard, channel.ramp);
  const bool at_end =
      heard < frames && !(channel.state == Channel::LEAVING && heard == channel.ramp);
  if (heard > 0) {
    const Planes& planes = read_on(channel, heard);
    const int sloped = std::min(heard, channel.ramp);
    if (sloped > 0) weigh(channel, planes, 0, sloped, bus, 0);
    if (heard > sloped) weigh(channel, planes, sloped, heard - sloped, bus, sloped);
  }
  if (at_end) {
    channel.tail = TAIL_FRAMES;
    mix_tail(channel, bus, heard, frames);
  } else if (channel.state == Channel::LEAVING && channel.ramp == 0) {
    channel.state = Channel::IDLE;
  }
  return at_end;
}
