// The rendered kit, as other programs read it.
#pragma once

#include <string>
#include <vector>

struct Heard {
  int rate = 0, channels = 0, format = 0;  // format as libsndfile tells it
  std::vector<float> samples;              // interleaved
  size_t frames() const { return samples.size() / static_cast<size_t>(channels); }
  float at(size_t frame, int channel) const {
    return samples[frame * static_cast<size_t>(channels) + static_cast<size_t>(channel)];
  }
};

// The folder of the kit: the one that LILYHOP_SOUNDS names, or one that is rendered now.
const std::string& kit_folder();

Heard hear(const std::string& path);

// Everything in a file, byte by byte.
std::string bytes_of(const std::string& path);

// The script as lines without comments, and all that stands in quotes in a line.
std::vector<std::string> script_lines();
std::vector<std::string> in_quotes(const std::string& line);
