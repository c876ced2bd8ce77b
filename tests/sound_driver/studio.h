// The driver on a device that renders on demand, sounds made for it, and ways to measure samples.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <numbers>
#include <string>
#include <vector>

#include "sound/driver.h"
#include "tests/temp_folder.h"

inline int studio_updates = 0;  // calls of jps_update_all

using Samples = std::vector<double>;

struct Take {
  Samples left, right;
};

struct Pcm {
  int channels = 2, bits = 16, rate = 44100;
  [[nodiscard]] int frame_bytes() const { return channels * bits / 8; }
};

class Studio : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // A sound of these bytes. They stand behind 44 others in their file.
  JpsSound& sound(const std::string& bytes, Pcm pcm, bool streamed = false, bool loop = false);
  // A wave of `frames` frames, -1 to 1 as a function of the frame, on all channels.
  JpsSound& wave(const std::function<double(int)>& value, int frames, Pcm pcm,
                 bool streamed = false, bool loop = false);
  JpsSound& sine(double hz, double amplitude, Pcm pcm = {}, int frames = 44100);

  // What comes out of the device next; streams are refilled as it goes.
  static Take render(int frames);

  TempFolder folder;
  std::list<JpsSound> sounds;
};

// Bytes that look like noise, the first frames silent, so that nothing has to be faded in.
std::string noise_bytes(std::size_t size, Pcm pcm, unsigned seed);

// A stream's bytes as they should be heard, on the scale of 16-bit samples.
Samples heard(const std::string& bytes, Pcm pcm, int channel);

// Amplitude of one frequency in samples at 44100 Hz, under a Hann window, on the samples' scale.
double level_at(const Samples& samples, double hz);
double decibels(double ratio);
double peak(const Samples& samples);
double steepest(const Samples& samples);  // largest step between neighbours
