#include "sound/resampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "platform/sound_device.h"

namespace {

constexpr int PHASES = 256;
constexpr int SETS = 12;         // ratios 1, 1 1/8, ... 2 3/8; 100000 / 44100 is 2.27
constexpr int BASE_TAPS = 16;    // at ratio 1
constexpr double CUTOFF = 0.92;  // of half the lower rate, where the filter is down to a half
constexpr double KAISER_BETA = 6.5;

constexpr double ratio_of(int set) {
  return 1.0 + set / 8.0;
}

constexpr int taps_of(int set) {
  return (BASE_TAPS * (8 + set) + 63) / 64 * 8;
}

constexpr int rows_before(int set) {
  int total = 0;
  for (int i = 0; i < set; ++i) total += taps_of(i) * (PHASES + 1);
  return total;
}

static_assert(taps_of(0) == BASE_TAPS && taps_of(SETS - 1) == RESAMPLE_MOST_TAPS);

struct Tables {
  alignas(64) std::array<float, rows_before(SETS)> weights{};
  bool ready = false;
};

constinit Tables state;

double bessel_i0(double x) {
  double sum = 1, term = 1;
  for (int k = 1; term > sum * 1e-12; ++k) {
    term *= x / (2.0 * k) * (x / (2.0 * k));
    sum += term;
  }
  return sum;
}

// The windowed sinc at `distance` frames from its centre.
double sinc_under_window(double distance, double cutoff, double half_width) {
  const double reach = distance / half_width;
  if (std::abs(reach) >= 1) return 0;
  const double angle = std::numbers::pi * cutoff * distance;
  const double sinc = angle == 0 ? 1.0 : std::sin(angle) / angle;
  return sinc * bessel_i0(KAISER_BETA * std::sqrt(1 - reach * reach)) / bessel_i0(KAISER_BETA);
}

void make_row(int set, int phase) {
  const int taps = taps_of(set);
  const double cutoff = CUTOFF / ratio_of(set);
  std::array<double, RESAMPLE_MOST_TAPS> row{};
  const int centre = taps / 2 - 1;
  double sum = 0;
  for (int tap = 0; tap < taps; ++tap) {
    const double distance = tap - centre - static_cast<double>(phase) / PHASES;
    row[tap] = sinc_under_window(distance, cutoff, taps / 2.0);
    sum += row[tap];
  }
  // Each row adds up to 1, so that a constant input gives the same output in every phase.
  float* out = state.weights.data() + rows_before(set) + static_cast<std::ptrdiff_t>(phase) * taps;
  for (int tap = 0; tap < taps; ++tap) out[tap] = static_cast<float>(row[tap] / sum);
}

}  // namespace

void resample_prepare() {
  if (state.ready) return;
  for (int set = 0; set < SETS; ++set) {
    for (int phase = 0; phase <= PHASES; ++phase) make_row(set, phase);
  }
  state.ready = true;
}

std::uint64_t resample_step(int hz) {
  return ((static_cast<std::uint64_t>(hz) << 32) + SOUND_RATE_HZ / 2) / SOUND_RATE_HZ;
}

ResampleFilter resample_filter(std::uint64_t step) {
  constexpr std::uint64_t EIGHTH = RESAMPLE_SAME_RATE / 8;
  const std::uint64_t above = step <= RESAMPLE_SAME_RATE ? 0 : step - RESAMPLE_SAME_RATE;
  const int set =
      static_cast<int>(std::min<std::uint64_t>((above + EIGHTH - 1) / EIGHTH, SETS - 1));
  return {state.weights.data() + rows_before(set), taps_of(set)};
}
