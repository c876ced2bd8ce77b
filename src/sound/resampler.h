// The filters by which a sound is read at another rate than its own.
//
// Windowed sincs of 16 to 40 taps, in 256 phases with straight lines between them. A sound that is
// read faster than it was made has frequencies that the output can't hold; they would come back as
// others. So the cutoff falls, and the taps grow, with the ratio of the rates.
#pragma once

#include <cstdint>

constexpr int RESAMPLE_MOST_TAPS = 40;
constexpr std::uint64_t RESAMPLE_SAME_RATE = 1ULL << 32;  // the step from frame to frame

struct ResampleFilter {
  const float* rows;  // 257 rows of `taps` weights: the last is the first, one frame on
  int taps;           // a multiple of 8; the first lies taps / 2 - 1 frames before the position
};

// Computes the tables; some milliseconds, once. Before any other call.
void resample_prepare();

// Frames of the sound between two frames of output, in 2^-32 frames, for 100 to 100000 Hz.
std::uint64_t resample_step(int hz);

// The filter for a step.
ResampleFilter resample_filter(std::uint64_t step);
