// A finished sound and its file.
#pragma once

#include <string>
#include <vector>

#include "art/sound/dsp.h"

namespace art::sound {

struct Wave {
  int channels = 1;
  std::vector<float> samples;  // channels interleaved, -1 to 1, 44100 frames a second

  size_t frames() const { return samples.size() / static_cast<size_t>(channels); }
};

// 16-bit PCM in the simplest form: RIFF, fmt, data. False if it could not be written.
bool wave_write(const Wave& wave, const std::string& path);

}  // namespace art::sound
