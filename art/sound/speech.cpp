#include "art/sound/speech.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <mutex>
#include <numbers>

extern "C" {
#include <flite/flite.h>
#include <flite/flite_version.h>
cst_voice* register_cmu_us_rms(const char* voxdir);
}

namespace art::sound {

namespace {

// Flite keeps its voices and words in globals, so it can speak only one line at a time.
Signal flite_says(const char* text, double stretch, int& rate) {
  static std::mutex mutex;
  std::lock_guard<std::mutex> lock(mutex);
  static cst_voice* const voice = (flite_init(), register_cmu_us_rms(nullptr));
  std::srand(1);  // its noise, so that a line sounds the same whatever was said before
  feat_set_float(voice->features, "duration_stretch", static_cast<float>(stretch));
  cst_wave* wave = flite_text_to_wave(text, voice);
  rate = wave->sample_rate;
  Signal out(static_cast<size_t>(wave->num_samples));
  for (size_t i = 0; i < out.size(); i++) out[i] = static_cast<float>(wave->samples[i]) / 32768;
  delete_wave(wave);
  return out;
}

void trim(Signal& s, int rate) {
  float peak = 0;
  for (float x : s) peak = std::max(peak, std::abs(x));
  auto loud = [&](float x) { return std::abs(x) > 0.012f * peak; };
  const auto first = std::find_if(s.begin(), s.end(), loud);
  const auto last = std::find_if(s.rbegin(), s.rend(), loud).base();
  const ptrdiff_t before = rate / 100, after = rate / 25;
  s = Signal(std::max(s.begin(), first - std::min(before, first - s.begin())),
             last + std::min(after, s.end() - last));
}

// Band-limited interpolation between samples: a windowed sinc of 32 points.
double between(const Signal& s, double at) {
  const auto middle = static_cast<ptrdiff_t>(at);
  double sum = 0;
  for (ptrdiff_t k = middle - 15; k <= middle + 16; k++) {
    if (k < 0 || k >= static_cast<ptrdiff_t>(s.size())) continue;
    const double x = at - static_cast<double>(k),
                 window = 0.5 + 0.5 * std::cos(std::numbers::pi * x / 16.5);
    const double sinc =
        std::abs(x) < 1e-9 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
    sum += s[static_cast<size_t>(k)] * sinc * window;
  }
  return sum;
}

// Evens out loud and soft syllables.
class Leveller {
 public:
  double step(double x) {
    const double level = std::abs(x), speed = level > seen_ ? 0.004 : 0.09;
    seen_ += (level - seen_) * (1 - std::exp(-1 / (speed * kRate)));
    return seen_ > kFrom ? x * std::pow(seen_ / kFrom, -0.5) : x;
  }

 private:
  static constexpr double kFrom = 0.06;
  double seen_ = 0;
};

}  // namespace

const char* speech_version() {
  return FLITE_PROJECT_VERSION;
}

Signal speak(const Speech& speech) {
  const double up = std::pow(2.0, speech.cents / 1200);
  int rate = 16000;
  // It speaks slower by as much as it will be sped up: the pace stays, but the speaker sounds
  // smaller.
  Signal raw = flite_says(speech.text, 1.08 * speech.pace * up, rate);
  trim(raw, rate);
  float peak = 1e-6f;
  for (float x : raw) peak = std::max(peak, std::abs(x));
  Filter bottom(150, 0.7), presence(3000, 0.8), air(5200, 0.7);
  Leveller leveller;
  Signal out;
  double at = 0;
  while (at < static_cast<double>(raw.size())) {
    const double y = bottom.highpass(between(raw, at) * 0.5 / peak);
    air.step(y);
    out.push_back(
        static_cast<float>(leveller.step(y + 0.4 * presence.bandpass(y) + 0.2 * air.high)));
    const double way = at / static_cast<double>(raw.size());
    const double lift = std::pow(2.0, speech.lift_cents / 1200 * rise(way - 0.35, 0.65));
    at += up * lift * rate / kRate;
  }
  return out;
}

}  // namespace art::sound
