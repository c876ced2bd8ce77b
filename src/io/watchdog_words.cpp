#include "io/watchdog_words.h"

namespace {

constexpr std::uint8_t FIRST_TAG = 0x10;

// True if the byte completes a word.
bool take_byte(WatchdogDecoder& decoder, std::uint8_t byte) {
  const std::uint8_t tag = byte & 0xF0;
  if (tag == FIRST_TAG) decoder.decoder_state = 0;
  const bool expected = tag == FIRST_TAG * (decoder.decoder_state + 1);
  if (!expected) {
    decoder.decoder_state = 0;
    return false;
  }
  decoder.decoded_word = static_cast<std::uint16_t>(decoder.decoded_word << 4 | (byte & 0x0F));
  decoder.decoder_state = (decoder.decoder_state + 1) % WATCHDOG_WORD_BYTES;
  return decoder.decoder_state == 0;
}

}  // namespace

void watchdog_encode(std::uint16_t word, std::uint8_t (&bytes)[WATCHDOG_WORD_BYTES]) {
  for (int i = 0; i < WATCHDOG_WORD_BYTES; ++i) {
    const int nibble = word >> (12 - 4 * i) & 0x0F;
    bytes[i] = static_cast<std::uint8_t>(FIRST_TAG * (i + 1) | nibble);
  }
}

bool watchdog_ring_put(WatchdogDecoder& decoder, std::uint8_t byte) {
  const auto next = static_cast<std::uint8_t>(decoder.ring_write + 1);
  if (next == decoder.ring_read) return false;
  decoder.byte_ring[decoder.ring_write] = byte;
  decoder.ring_write = next;
  return true;
}

bool watchdog_decode(WatchdogDecoder& decoder, std::uint16_t& word) {
  while (decoder.ring_read != decoder.ring_write) {
    if (!take_byte(decoder, decoder.byte_ring[decoder.ring_read++])) continue;
    word = decoder.decoded_word;
    return true;
  }
  return false;
}
