#include "art/sound/drums.h"

#include <cmath>

namespace art::sound {

namespace {

// A drumhead: a sine that falls to its pitch.
struct Skin {
  double hz, drop, drop_s, t60;
};

Signal skin(const Stroke& s, double seconds, const Skin& d) {
  double phase = 0;
  return fill(seconds, [&](double t) {
    phase += d.hz * (1 + d.drop * std::exp(-t / d.drop_s)) / kRate;
    return std::sin(kTau * phase) * decay(t, d.t60) * rise(t, 0.001) * s.velocity *
           (1 - rise(t - seconds + 0.01, 0.01));
  });
}

Signal hiss(const Stroke& s, double seconds, double hz, double q, double attack, double t60) {
  Noise noise(s.seed);
  Filter band(hz, q), top(hz * 0.6, 0.7);
  return fill(seconds, [&](double t) {
    return top.highpass(band.bandpass(noise.next())) * rise(t, attack) * decay(t, t60) *
           s.velocity * (1 - rise(t - seconds + 0.01, 0.01));
  });
}

// Six square waves at inharmonic ratios: the clang of thin metal.
Signal metal(const Stroke& s, double seconds, double base, double cut, double t60) {
  constexpr double kRatios[] = {1, 1.342, 1.2312, 1.6532, 1.9523, 2.1523};
  Oscillator tone[6];
  Noise noise(s.seed);
  Filter bottom(cut, 0.8), again(cut, 0.8);
  return fill(seconds, [&](double t) {
    double y = 0.8 * noise.next();
    for (int i = 0; i < 6; i++) y += 0.3 * tone[i].pulse(base * kRatios[i], 0.5);
    return again.highpass(bottom.highpass(y)) * decay(t, t60) * rise(t, 0.001) * s.velocity *
           (1 - rise(t - seconds + 0.01, 0.01));
  });
}

}  // namespace

Signal kick(const Stroke& s) {
  Signal out = skin(s, 0.34, {52, 2.6, 0.022, 0.42});
  add(out, hiss(s, 0.02, 2400, 0.8, 0.0005, 0.012), 0, 0.5);
  for (float& x : out) x = static_cast<float>(std::tanh(1.5 * x));
  return out;
}

Signal snare(const Stroke& s) {
  Signal out = skin(s, 0.22, {188, 0.5, 0.015, 0.16});
  add(out, skin(s, 0.16, {331, 0.3, 0.01, 0.1}), 0, 0.5);
  add(out, hiss(s, 0.24, 4200, 0.5, 0.0008, 0.24), 0, 1.6);
  return out;
}

Signal rim(const Stroke& s) {
  Signal out = skin(s, 0.07, {1720, 0.2, 0.002, 0.035});
  add(out, skin(s, 0.07, {520, 0.3, 0.003, 0.04}), 0, 0.7);
  return out;
}

Signal clap(const Stroke& s) {
  Signal out(frames_of(0.24));
  constexpr double kHands[] = {0, 0.009, 0.019};
  for (double at : kHands) add(out, hiss(s, 0.03, 1500, 1.3, 0.0005, 0.02), at, 1.5);
  add(out, hiss(s, 0.2, 1350, 1.1, 0.001, 0.17), 0.027, 1.8);
  return out;
}

Signal hat(const Stroke& s) {
  return metal(s, 0.07, 420, 7600, 0.05);
}
Signal hat_open(const Stroke& s) {
  return metal(s, 0.34, 420, 7000, 0.32);
}
Signal crash(const Stroke& s) {
  return metal(s, 1.7, 330, 3800, 1.7);
}

Signal shaker(const Stroke& s) {
  return hiss(s, 0.1, 6800, 1.2, 0.022, 0.1);
}

Signal tambourine(const Stroke& s) {
  Signal out = metal(s, 0.16, 1180, 8200, 0.14);
  add(out, metal(s, 0.1, 1460, 9000, 0.09), 0.018, 0.6);
  return out;
}

Signal guiro(const Stroke& s) {
  Signal out(frames_of(0.24));
  for (int i = 0; i < 15; i++) {
    const Stroke tooth = {s.hz, 0, s.velocity * (0.5 + 0.5 * i / 15),
                          s.seed + static_cast<uint32_t>(i)};
    add(out, hiss(tooth, 0.016, 3100 + 60 * i, 2.4, 0.0008, 0.012), 0.013 * i, 1.4);
  }
  return out;
}

Signal conga(const Stroke& s) {
  const bool slap = s.velocity > 0.9;
  Signal out = skin(s, 0.34, {s.hz, 0.25, 0.012, slap ? 0.12 : 0.34});
  add(out, hiss(s, 0.05, slap ? 2300 : 1100, 1, 0.0006, 0.035), 0, slap ? 1.5 : 0.5);
  return out;
}

Signal tom(const Stroke& s) {
  Signal out = skin(s, 0.45, {s.hz, 0.7, 0.03, 0.42});
  add(out, hiss(s, 0.06, 1500, 0.7, 0.0006, 0.05), 0, 0.5);
  return out;
}

Signal cowbell(const Stroke& s) {
  Oscillator one, two;
  Filter band(2640, 1.1), bottom(500, 0.7);
  return fill(0.2, [&](double t) {
    const double y = one.pulse(562, 0.5) + two.pulse(845, 0.5);
    const double shape = 0.6 * decay(t, 0.04) + 0.4 * decay(t, 0.26);
    return bottom.highpass(0.4 * y + band.bandpass(y)) * shape * rise(t, 0.0008) * s.velocity *
           0.6 * (1 - rise(t - 0.19, 0.01));
  });
}

}  // namespace art::sound
