#include "art/sound/mallets.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace art::sound {

namespace {

struct Mode {
  double ratio, gain, t60, onset = 0;  // onset: attack time in seconds
};

Signal ring(const Stroke& s, double seconds, std::initializer_list<Mode> modes) {
  Signal out(frames_of(seconds));
  for (const Mode& mode : modes) {
    const double hz = s.hz * mode.ratio;
    if (hz > 0.45 * kRate) continue;
    // A damped rotating phasor: two multiplications a sample.
    const double r = std::exp(-6.9078 / (mode.t60 * kRate)),
                 turn = 2 * r * std::cos(kTau * hz / kRate);
    double y1 = 0, y2 = -std::sin(kTau * hz / kRate) * mode.gain / r;
    for (size_t i = 0; i < out.size(); i++) {
      const double y = turn * y1 - r * r * y2;
      y2 = y1, y1 = y;
      const double t = static_cast<double>(i) / kRate;
      out[i] += static_cast<float>(mode.onset > 0 ? y * (1 - std::exp(-t / mode.onset)) : y);
    }
  }
  return out;
}

// The knock of the mallet, and silence at the end.
void strike(Signal& out, const Stroke& s, double knock_hz, double knock_gain, double knock_t60) {
  Noise noise(s.seed);
  Filter knock(knock_hz, 1.2);
  const size_t tail = std::min(out.size(), frames_of(0.02));
  for (size_t i = 0; i < out.size(); i++) {
    const double t = static_cast<double>(i) / kRate;
    double y = out[i] * rise(t, 0.0012);
    if (t < 3 * knock_t60) y += knock_gain * decay(t, knock_t60) * knock.bandpass(noise.next());
    if (i + tail >= out.size()) y *= static_cast<double>(out.size() - i) / tail;
    out[i] = static_cast<float>(y * s.velocity);
  }
}

}  // namespace

Signal marimba(const Stroke& s) {
  const double low = std::pow(262 / s.hz, 0.6), hard = 0.35 + 0.65 * s.velocity;
  Signal out =
      ring(s, 1.1 * low + 0.2,
           {{1, 0.8, 1.15 * low}, {3.98, 0.22 * hard, 0.34 * low}, {9.7, 0.07 * hard, 0.11 * low}});
  strike(out, s, 1400, 0.5 * hard, 0.03);
  return out;
}

Signal kalimba(const Stroke& s) {
  const double low = std::pow(330 / s.hz, 0.4);
  Signal out =
      ring(s, 1.3 * low + 0.2,
           {{1, 0.75, 1.4 * low}, {2.01, 0.12, 0.7}, {5.42, 0.16, 0.18}, {8.6, 0.06, 0.08}});
  strike(out, s, 700, 0.6, 0.025);
  return out;
}

Signal steelpan(const Stroke& s) {
  const double hard = 0.4 + 0.6 * s.velocity;
  Signal out = ring(s, 1.2,
                    {{1, 0.7, 1.1},
                     {1.996, 0.30 * hard, 0.85, 0.012},
                     {2.006, 0.24 * hard, 0.75, 0.018},
                     {3.01, 0.24 * hard, 0.5, 0.008},
                     {4.03, 0.12 * hard, 0.35, 0.004},
                     {5.2, 0.06 * hard, 0.16}});
  strike(out, s, 2200, 0.35 * hard, 0.02);
  return out;
}

Signal bell(const Stroke& s) {
  Signal out =
      ring(s, 1.6, {{1, 0.6, 1.6}, {2.757, 0.26, 0.8}, {5.404, 0.14, 0.4}, {8.93, 0.07, 0.2}});
  strike(out, s, 5200, 0.25, 0.012);
  return out;
}

Signal wood_block(const Stroke& s) {
  Signal out = ring(s, 0.16, {{1, 0.8, 0.09}, {1.58, 0.4, 0.06}, {2.9, 0.2, 0.03}});
  strike(out, s, 2600, 0.5, 0.012);
  return out;
}

}  // namespace art::sound
