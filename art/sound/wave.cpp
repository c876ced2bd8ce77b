#include "art/sound/wave.h"

#include <algorithm>
#include <cmath>
#include <fstream>

namespace art::sound {

namespace {

void put(std::string& to, uint32_t value, int bytes) {
  for (int i = 0; i < bytes; i++) to += static_cast<char>(value >> 8 * i & 0xff);
}

}  // namespace

bool wave_write(const Wave& wave, const std::string& path) {
  const auto channels = static_cast<uint32_t>(wave.channels);
  const auto size = static_cast<uint32_t>(2 * wave.samples.size());
  std::string bytes = "RIFF";
  put(bytes, 36 + size, 4);
  bytes += "WAVEfmt ";
  put(bytes, 16, 4);
  put(bytes, 1, 2);
  put(bytes, channels, 2);
  put(bytes, kRate, 4);
  put(bytes, kRate * 2 * channels, 4);
  put(bytes, 2 * channels, 2);
  put(bytes, 16, 2);
  bytes += "data";
  put(bytes, size, 4);
  for (float x : wave.samples)
    put(bytes, static_cast<uint32_t>(std::lround(std::clamp(x, -1.0f, 1.0f) * 32767)), 2);
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return static_cast<bool>(out.flush());
}

}  // namespace art::sound
