// The implementations of sound_device.h: SDL's device, or a clock of our own without a device.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/sound_device.h"

constexpr int SOUND_BLOCK_FRAMES = 512;  // 11.6 ms: a sound waits at most this long to start

// The loudspeaker through SDL. False if there is none, with the reason in `error`. Main thread.
bool sound_sdl_open(SoundRender render, std::string& error);
void sound_sdl_close();

// A thread that calls `render` at the device's pace, unheard. With a socket's path each block is
// also sent there. False if the machine gives no thread. Main thread.
bool sound_clock_open(SoundRender render, const std::string& socket_path);
void sound_clock_close();

// When the blocks of a device without hardware are due. The caller passes the time, in microseconds
// of any steady clock.
class SoundPace {
 public:
  explicit SoundPace(std::int64_t now_us) : origin_us_(now_us) {}

  // Whether the next block is due. If so, it counts as rendered. After a delay of more than half a
  // second the clock continues from the present; the lost sound is not made up for.
  bool take(std::int64_t now_us);

  // When the next block is due.
  [[nodiscard]] std::int64_t due_us() const;

 private:
  std::int64_t origin_us_;
  std::int64_t blocks_ = 0;  // since the origin
};

// Sends blocks of sound to a listener on a socket, in packets with a header and the samples. Never
// waits: a block that the listener has no room for is lost, and a listener that has gone is looked
// for again. One thread at a time.
class SoundSocket {
 public:
  explicit SoundSocket(std::string path) : path_(std::move(path)) {}
  ~SoundSocket();
  SoundSocket(const SoundSocket&) = delete;
  SoundSocket& operator=(const SoundSocket&) = delete;

  // `frame` is the number of the block's first frame since the sound began, which shows the
  // listener what was lost; `time_us` is when it was rendered, by CLOCK_MONOTONIC.
  void send(std::int64_t frame, std::int64_t time_us, const std::int16_t* samples, int frames);

 private:
  bool connected(std::int64_t time_us);

  std::string path_;
  int socket_ = -1;
  std::int64_t next_try_us_ = 0;
};

// The header of a packet, in the machine's byte order.
struct SoundPacketHead {
  std::int64_t frame, time_us;
  std::int32_t frames, zero;
};
