#include "sound/wave_header.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/files.h"

namespace {

std::uint32_t word(const std::uint8_t* bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

std::uint16_t half_word(const std::uint8_t* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

// A format chunk may be longer than the fields used here or, in a damaged file, shorter: missing
// fields are 0.
JpsWaveFormat read_format(ReadFile* file, std::uint64_t offset, std::uint32_t size) {
  std::uint8_t bytes[16] = {};
  read_at(file, offset, bytes, std::min<std::size_t>(size, std::size(bytes)));
  return {half_word(bytes), half_word(bytes + 2),  word(bytes + 4),
          word(bytes + 8),  half_word(bytes + 12), half_word(bytes + 14)};
}

}  // namespace

bool read_wav_header(WaveInfo& info, ReadFile* file, std::uint32_t& data_offset) {
  info = {};
  bool has_format = false;
  std::uint64_t at = 0;  // sizes of 32 bits can't overflow it
  std::uint8_t head[8];
  while (read_at(file, at, head, sizeof head) == sizeof head) {
    const std::uint32_t size = word(head + 4);
    at += sizeof head;
    if (std::memcmp(head, "RIFF", 4) == 0) {
      char form[4] = {};
      read_at(file, at, form, sizeof form);
      if (std::memcmp(form, "WAVE", 4) != 0) {
        std::puts("read_wav_header(): Invalid filetype!");
      }
      at += sizeof form;
      continue;
    }
    if (std::memcmp(head, "data", 4) == 0) {
      info.data_size = size;
      data_offset = static_cast<std::uint32_t>(at);
      return has_format && at <= 0xFFFFFFFF;
    }
    if (std::memcmp(head, "fmt ", 4) == 0) {
      info.format = read_format(file, at, size);
      has_format = true;
    }
    at += size;
  }
  return false;
}
