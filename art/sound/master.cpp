#include "art/sound/master.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace art::sound {

namespace {

constexpr double kCeilingDb = -1.5;

struct Freed {
  void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};
using Meter = std::unique_ptr<ebur128_state, Freed>;

Meter meter_of(const Wave& wave, int mode) {
  Meter meter(ebur128_init(static_cast<unsigned>(wave.channels), kRate, mode));
  // A mono file is heard from both speakers.
  if (wave.channels == 1) ebur128_set_channel(meter.get(), 0, EBUR128_DUAL_MONO);
  return meter;
}

void fade_ends(Wave& wave) {
  const size_t channels = static_cast<size_t>(wave.channels);
  const size_t in = std::min(wave.frames() / 4, frames_of(0.001));
  const size_t out = std::min(wave.frames() / 4, frames_of(0.012));
  for (size_t c = 0; c < channels; c++) {
    for (size_t i = 0; i < in; i++)
      wave.samples[i * channels + c] *= static_cast<float>(i) / static_cast<float>(in);
    for (size_t i = 0; i < out; i++)
      wave.samples[(wave.frames() - 1 - i) * channels + c] *=
          static_cast<float>(i) / static_cast<float>(out);
  }
}

void remove_constant(Wave& wave) {
  const size_t channels = static_cast<size_t>(wave.channels);
  for (size_t c = 0; c < channels; c++) {
    double sum = 0;
    for (size_t i = c; i < wave.samples.size(); i += channels) sum += wave.samples[i];
    const auto mean = static_cast<float>(sum / static_cast<double>(wave.frames()));
    for (size_t i = c; i < wave.samples.size(); i += channels) wave.samples[i] -= mean;
  }
}

// Turns down what is above the ceiling, from 3 ms before it to 3 ms after. It looks both ways in
// time, and across the end of a loop, so nothing is clipped and a loop stays seamless.
void limit(Wave& wave, bool loop, double ceiling) {
  const size_t frames = wave.frames(), channels = static_cast<size_t>(wave.channels);
  const auto reach = static_cast<ptrdiff_t>(frames_of(0.003)), n = static_cast<ptrdiff_t>(frames);
  auto index = [&](ptrdiff_t i) {
    return static_cast<size_t>(loop ? (i + n) % n : std::clamp<ptrdiff_t>(i, 0, n - 1));
  };
  std::vector<double> need(frames), low(frames, 1), gain(frames);
  bool any = false;
  for (size_t i = 0; i < frames; i++) {
    double peak = 0;
    for (size_t c = 0; c < channels; c++)
      peak = std::max(peak, std::abs(static_cast<double>(wave.samples[i * channels + c])));
    need[i] = peak > ceiling ? ceiling / peak : 1;
    any |= need[i] < 1;
  }
  if (!any || n <= 2 * reach) {
    if (any)
      for (float& x : wave.samples)
        x *= static_cast<float>(*std::min_element(need.begin(), need.end()));
    return;
  }
  for (ptrdiff_t i = 0; i < n; i++)
    if (need[static_cast<size_t>(i)] < 1)
      for (ptrdiff_t k = i - reach; k <= i + reach; k++)
        low[index(k)] = std::min(low[index(k)], need[static_cast<size_t>(i)]);
  double sum = 0;
  for (ptrdiff_t k = -reach; k <= reach; k++) sum += low[index(k)];
  for (ptrdiff_t i = 0; i < n; i++) {
    gain[static_cast<size_t>(i)] = sum / static_cast<double>(2 * reach + 1);
    sum += low[index(i + reach + 1)] - low[index(i - reach)];
  }
  for (size_t i = 0; i < frames; i++)
    for (size_t c = 0; c < channels; c++)
      wave.samples[i * channels + c] *= static_cast<float>(gain[i]);
}

void scale(Wave& wave, double gain) {
  for (float& x : wave.samples) x = static_cast<float>(x * gain);
}

}  // namespace

double target_lufs(Kind kind) {
  switch (kind) {
    case Kind::kMusic:
      return -20;
    case Kind::kVoice:
      return -16;
    case Kind::kEffect:
      return -18;
    case Kind::kOperator:
      return -20;
  }
  return 0;
}

double loudness_of(const Wave& wave, Kind kind) {
  double found = -HUGE_VAL;
  if (kind == Kind::kMusic) {
    Meter meter = meter_of(wave, EBUR128_MODE_I);
    ebur128_add_frames_float(meter.get(), wave.samples.data(), wave.frames());
    ebur128_loudness_global(meter.get(), &found);
    return found;
  }
  // Silence before and after it, so that the window of 0.4 s slides over all of a short sound.
  Meter meter = meter_of(wave, EBUR128_MODE_M);
  const size_t step = frames_of(0.01), channels = static_cast<size_t>(wave.channels);
  Wave padded{wave.channels, std::vector<float>(channels * frames_of(0.4))};
  padded.samples.insert(padded.samples.end(), wave.samples.begin(), wave.samples.end());
  padded.samples.resize(padded.samples.size() + channels * frames_of(0.4));
  for (size_t i = 0; i + step <= padded.frames(); i += step) {
    double now = -HUGE_VAL;
    ebur128_add_frames_float(meter.get(), padded.samples.data() + i * channels, step);
    ebur128_loudness_momentary(meter.get(), &now);
    found = std::max(found, now);
  }
  return found;
}

double true_peak_db(const Wave& wave) {
  Meter meter = meter_of(wave, EBUR128_MODE_TRUE_PEAK);
  ebur128_add_frames_float(meter.get(), wave.samples.data(), wave.frames());
  double peak = 0;
  for (unsigned c = 0; c < static_cast<unsigned>(wave.channels); c++) {
    double now = 0;
    ebur128_true_peak(meter.get(), c, &now);
    peak = std::max(peak, now);
  }
  return 20 * std::log10(peak);
}

void finish(Wave& wave, Kind kind, bool loop) {
  remove_constant(wave);
  if (!loop) fade_ends(wave);
  double ceiling_db = kCeilingDb;
  // Restores the loudness that the limiter took, and removes new peaks between samples.
  for (int round = 0; round < 6; round++) {
    const double short_of = target_lufs(kind) - loudness_of(wave, kind);
    if (!std::isfinite(short_of)) return;
    scale(wave, gain_of_db(short_of));
    limit(wave, loop, gain_of_db(ceiling_db));
    const double over = true_peak_db(wave) - kCeilingDb;
    if (over > 0.1)
      ceiling_db -= over;
    else if (std::abs(target_lufs(kind) - loudness_of(wave, kind)) < 0.3)
      break;
  }
  const double over = true_peak_db(wave) - kCeilingDb;
  if (over > 0) scale(wave, gain_of_db(-over));
}

}  // namespace art::sound
