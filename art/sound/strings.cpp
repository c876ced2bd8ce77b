#include "art/sound/strings.h"

#include <algorithm>
#include <cmath>

namespace art::sound {

namespace {

struct String {
  double t60;         // how long it rings
  double softness;    // 0 bright to 0.9 dull: the loss of treble on each pass
  double pick;        // where it is plucked, as a fraction of its length
  double brightness;  // of the pluck, hertz
};

// A burst of noise in a delay as long as the period of the pitch; it loses treble on each pass.
Signal pluck(const Stroke& s, double seconds, const String& string) {
  const double period = kRate / s.hz, loop = period - string.softness;
  const size_t whole = static_cast<size_t>(loop - 0.3);
  const double part = loop - static_cast<double>(whole), c = (1 - part) / (1 + part);
  Signal line(whole), burst(whole);
  Noise noise(s.seed);
  Filter soft(string.brightness * (0.5 + s.velocity), 0.7);
  for (float& x : burst) x = static_cast<float>(soft.lowpass(noise.next()));
  const size_t pick = std::max<size_t>(1, static_cast<size_t>(string.pick * period));
  double mean = 0;
  for (size_t i = 0; i < whole; i++) {
    line[i] = burst[i] - 0.9f * burst[(i + whole - pick % whole) % whole];
    mean += line[i] / static_cast<double>(whole);
  }
  for (float& x : line) x -= static_cast<float>(mean);
  const double loss = std::pow(10.0, -3 * period / kRate / string.t60);
  double last = 0, all_in = 0, all_out = 0;
  size_t at = 0;
  return fill(seconds, [&](double t) {
    const double x = line[at], y = line[at] * (1 - string.softness) + last * string.softness;
    last = x;
    const double tuned = c * y + all_in - c * all_out;  // the remaining fraction of a sample
    all_in = y, all_out = tuned;
    line[at] = static_cast<float>(tuned * loss);
    at = (at + 1) % whole;
    const double damp = t < s.seconds ? 1 : decay(t - s.seconds, 0.12);
    return x * damp * s.velocity;
  });
}

void fade_end(Signal& out) {
  const size_t tail = std::min(out.size(), frames_of(0.01));
  for (size_t i = 0; i < tail; i++)
    out[out.size() - 1 - i] *= static_cast<float>(i) / static_cast<float>(tail);
}

}  // namespace

Signal ukulele(const Stroke& s) {
  Signal out = pluck(s, std::min(s.seconds, 1.4) + 0.12, {1.3, 0.42, 0.19, 5200});
  Filter box(330, 3), top(640, 3), bottom(170, 0.7);
  for (float& x : out) {
    const double dry = bottom.highpass(x);
    x = static_cast<float>(0.8 * dry + 0.9 * box.bandpass(dry) + 0.6 * top.bandpass(dry));
  }
  fade_end(out);
  return out;
}

Signal guitar_muted(const Stroke& s) {
  Signal out = pluck(s, 0.09, {0.06, 0.3, 0.11, 6500});
  Filter bottom(500, 0.8);
  for (float& x : out) x = static_cast<float>(1.5 * bottom.highpass(x));
  fade_end(out);
  return out;
}

Signal bass_pluck(const Stroke& s) {
  Signal out = pluck(s, s.seconds + 0.12, {1.6, 0.6, 0.28, 900});
  Oscillator body;
  for (size_t i = 0; i < out.size(); i++) {
    const double t = static_cast<double>(i) / kRate;
    const double damp = t < s.seconds ? 1 : decay(t - s.seconds, 0.1);
    out[i] = static_cast<float>(1.6 * out[i] + 0.55 * s.velocity * damp * rise(t, 0.006) *
                                                   decay(t, 1.8) * body.sine(s.hz));
  }
  fade_end(out);
  return out;
}

Signal bass_funk(const Stroke& s) {
  Oscillator saw, sub, square(0.25);
  Filter lid;
  return fill(s.seconds + 0.05, [&](double t) {
    const double open = 260 + 2400 * s.velocity * std::exp(-t / 0.07);
    lid.set(open, 1.9);
    const double growl = lid.lowpass(0.6 * saw.saw(s.hz) + 0.3 * square.pulse(s.hz * 1.003, 0.4));
    const double y = growl + 0.55 * sub.sine(s.hz);
    return std::tanh(1.3 * y) * 0.8 * s.velocity * held(t, s.seconds, 0.003, 0.35, 0.45, 0.04);
  });
}

Signal clav(const Stroke& s) {
  Oscillator string(0.1), twin(0.4);
  Filter bottom(240, 0.8), wah;
  return fill(s.seconds + 0.06, [&](double t) {
    const double y = 0.6 * string.pulse(s.hz, 0.14) + 0.4 * twin.pulse(s.hz * 1.004, 0.3);
    wah.set(700 + 3600 * s.velocity * std::exp(-t / 0.11), 1.6);
    return 0.9 * bottom.highpass(wah.lowpass(y)) * s.velocity * decay(t, 1.1) *
           held(t, s.seconds, 0.001, 1, 1, 0.03);
  });
}

Signal jaw_harp(const Stroke& s) {
  Oscillator reed, vowel(0.6);
  Filter mouth, second;
  return fill(s.seconds + 0.15, [&](double t) {
    const double buzz = reed.pulse(s.hz, 0.08);
    const double sweep = 500 + 1500 * (0.5 + 0.5 * vowel.sine(3.2)) * std::exp(-t / 0.5);
    mouth.set(sweep, 7);
    second.set(2.1 * sweep, 6);
    return (1.6 * mouth.bandpass(buzz) + 0.7 * second.bandpass(buzz) + 0.06 * buzz) * s.velocity *
           decay(t, 1.4) * held(t, s.seconds, 0.002, 1, 1, 0.15);
  });
}

}  // namespace art::sound
