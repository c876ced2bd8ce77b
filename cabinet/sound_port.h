// The cabinet's loudspeaker: a socket that the game sends its sound to, block by block, and those
// who listen. A thread of its own receives; who listens too slowly loses blocks, and nobody waits
// for him.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

constexpr int SOUND_PORT_HZ = 44100;         // frames of 16 bit stereo a second
constexpr std::size_t SOUND_PORT_HEAD = 24;  // bytes of a packet before its samples

struct SoundBlock {
  long number = 0;           // counted from 1, over all games
  std::int64_t frame = 0;    // of its first frame, since the game's sound began
  std::int64_t time_us = 0;  // when it was made, by the steady clock
  int frames = 0;
  // As it came: frame and time of 8 bytes, frames and 0 of 4, then the samples, left, right, left,
  // ... All in the machine's byte order, lowest byte first.
  std::string packet;
};

struct SoundPort;

// Makes the socket and starts the thread. Returns null with a text in `error`.
SoundPort* sound_port_open(const std::string& path, std::string& error);

// Ends it. Nobody may listen any more.
void sound_port_close(SoundPort* port);

// The number of the newest block, where a listener begins; 0 if there is none. Any thread.
long sound_port_newest(SoundPort& port);

// The block after number `number`, or the newest if that has been forgotten, which is after half a
// second. Waits at most `wait_ms`, and returns null if there was none. Any thread.
std::shared_ptr<const SoundBlock> sound_port_next(SoundPort& port, long number, int wait_ms);

// Whether this machine has something that sounds: a sound card or a sound server.
bool sound_card_is_there();
