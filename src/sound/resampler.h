// The filters for reading a sound at another rate than its own.
//
// Windowed sincs of 16 to 40 taps, in 256 phases with linear interpolation. If a sound is read
// faster than its own rate, it contains frequencies above the output's limit, which would alias. So
// the cutoff falls, and the number of taps grows, with the ratio of the rates.
#pragma once

#include <cstdint>

constexpr int RESAMPLE_MOST_TAPS = 40;
constexpr std::uint64_t RESAMPLE_SAME_RATE = 1ULL << 32;  // the step between adjacent frames

struct ResampleFilter {
  const float* rows;  // 257 rows of `taps` weights; the last is the first, one frame later
  int taps;           // a multiple of 8; the first is taps / 2 - 1 frames before the position
};

// Computes the tables, once, in a few milliseconds. Before any other call.
void resample_prepare();

// Frames of the sound per output frame, in 2^-32 frames, for 100 to 100000 Hz.
std::uint64_t resample_step(int hz);

// The filter for a step.
ResampleFilter resample_filter(std::uint64_t step);
