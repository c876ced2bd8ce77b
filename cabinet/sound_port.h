// The cabinet's loudspeaker: a socket that receives the game's sound block by block, for any number
// of listeners. It receives on its own thread. A listener that is too slow loses blocks, and nobody
// waits for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

constexpr int SOUND_PORT_HZ = 44100;         // frames of 16 bit stereo a second
constexpr std::size_t SOUND_PORT_HEAD = 24;  // bytes of a packet before its samples

struct SoundBlock {
  long number = 0;           // starts at 1, counts on over all games
  std::int64_t frame = 0;    // number of its first frame, since the game's sound began
  std::int64_t time_us = 0;  // when it was made, by the steady clock
  int frames = 0;
  // As received: frame and time with 8 bytes each, number of frames and 0 with 4, then the samples,
  // left, right, left, ... All in the machine's byte order, lowest byte first.
  std::string packet;
};

struct SoundPort;

// Makes the socket and starts the thread. Returns null with a text in `error`.
SoundPort* sound_port_open(const std::string& path, std::string& error);

// Ends it. There must be no listeners left.
void sound_port_close(SoundPort* port);

// The number of the newest block, where a listener begins; 0 if there is none. Any thread.
long sound_port_newest(SoundPort& port);

// The block after block `number`; the newest if that one is more than half a second old and gone.
// Waits at most `wait_ms`; returns null if there was none. Any thread.
std::shared_ptr<const SoundBlock> sound_port_next(SoundPort& port, long number, int wait_ms);

// Whether this machine can play sound: it has a sound card or a sound server.
bool sound_card_is_there();
