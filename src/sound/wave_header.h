// The header of a wave file.
#pragma once

#include <cstdint>

#include "sound/driver.h"  // JpsWaveFormat

struct ReadFile;

struct WaveInfo {
  JpsWaveFormat format;
  std::uint32_t data_size;  // as the header says
};

// Reads the chunks of a wave file from its start up to its samples; `data_offset` is where they
// begin. An unknown chunk is skipped by its size, without a padding byte. False if the file ends
// before both a format and the samples were found. The values are not checked here.
bool read_wav_header(WaveInfo& info, ReadFile* file, std::uint32_t& data_offset);
