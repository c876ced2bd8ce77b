// The inner loops of the mixing, in plain code and for processors with AVX2.
#pragma once

#include <cstddef>
#include <cstdint>

// Samples are floats on the scale of 16-bit ones, left and right separate. They need no alignment.
struct ResampleRun {
  const float* rows;       // of a ResampleFilter
  int taps;                // a multiple of 8, 16 to 40
  std::uint32_t fraction;  // of the first output frame's position, in 2^-32 frames
  std::uint64_t step;      // from one output frame to the next, in 2^-32 frames
  int frames;              // output frames
  const float* in_left;    // begins at the leftmost tap of the first output frame
  const float* in_right;   // null: mono
  float* out_left;
  float* out_right;  // not written for mono
};

struct SoundKernels {
  // 8-bit (unsigned) or 16-bit, mono or stereo. For mono `right` isn't written.
  void (*unpack)(const std::byte* in, int frames, int channels, int bytes, float* left,
                 float* right);
  void (*resample)(const ResampleRun& run);
  // bus[i] += in[i] * (gain + i * gain_step)
  void (*mix)(const float* in, int frames, float gain, float gain_step, float* bus);
  // Rounds to 16 bits and limits louder samples to that range.
  void (*pack)(const float* left, const float* right, int frames, std::int16_t* out);
};

extern const SoundKernels sound_kernels_plain;
extern const SoundKernels sound_kernels_avx2;

// The fastest that this processor can run.
const SoundKernels& sound_kernels();
