// The head of a wave file.
#pragma once

#include <cstdint>

#include "sound/driver.h"  // JpsWaveFormat

struct ReadFile;

struct WaveInfo {
  JpsWaveFormat format;
  std::uint32_t data_size;  // as the file says
};

// Walks the chunks of a wave file, which stands at its start, up to its samples; `data_offset` is
// where they begin. An unknown chunk is passed over by its size, without a byte of padding. False
// if the file ends before both a format and the samples were met. Nothing read is judged here.
bool read_wav_header(WaveInfo& info, ReadFile* file, std::uint32_t& data_offset);
