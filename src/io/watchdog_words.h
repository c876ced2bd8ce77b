// The wire format of the USB watchdog: a word of 16 bits travels as 4 bytes, whose high nibble is a
// tag and whose low nibble is data. A broken word is dropped when the next one begins.
#pragma once

#include <cstdint>

constexpr int WATCHDOG_WORD_BYTES = 4;

// 0xB03C becomes 0x1B, 0x20, 0x33, 0x4C.
void watchdog_encode(std::uint16_t word, std::uint8_t (&bytes)[WATCHDOG_WORD_BYTES]);

struct WatchdogDecoder {
  std::uint8_t decoder_state;  // nibbles received of the word, 0 to 3
  std::uint16_t decoded_word;
  std::uint8_t byte_ring[256];         // received but not decoded
  std::uint8_t ring_read, ring_write;  // wrap by their width
};

// Takes a byte in. False if the ring is full.
bool watchdog_ring_put(WatchdogDecoder& decoder, std::uint8_t byte);

// Decodes bytes of the ring up to the end of a word. True if there is one.
bool watchdog_decode(WatchdogDecoder& decoder, std::uint16_t& word);
