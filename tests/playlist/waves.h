// Wave files for tests.
#pragma once

#include <cstdint>
#include <string>

inline std::string le16(std::uint32_t value) {
  return {static_cast<char>(value), static_cast<char>(value >> 8)};
}
inline std::string le32(std::uint32_t value) {
  return le16(value & 0xFFFF) + le16(value >> 16);
}
inline std::string wave_chunk(const std::string& tag, const std::string& body) {
  return tag + le32(static_cast<std::uint32_t>(body.size())) + body;
}
inline std::string wave_format(std::uint32_t channels = 1, std::uint32_t rate = 44100,
                               std::uint32_t bits = 16, std::uint32_t tag = 1) {
  const std::uint32_t frame = channels * bits / 8;
  return le16(tag) + le16(channels) + le32(rate) + le32(rate * frame) + le16(frame) + le16(bits);
}
inline std::string riff(const std::string& chunks) {
  return "RIFF" + le32(static_cast<std::uint32_t>(4 + chunks.size())) + "WAVE" + chunks;
}

// A mono file of one level, which is heard as that level times the gain.
inline std::string flat_wave(double seconds, int level, std::uint32_t rate = 44100) {
  std::string data;
  for (int i = 0; i < static_cast<int>(seconds * rate + 0.5); ++i) {
    data += le16(static_cast<std::uint16_t>(level));
  }
  return riff(wave_chunk("fmt ", wave_format(1, rate)) + wave_chunk("data", data));
}
