#include "art/sound/winds.h"

#include <algorithm>
#include <cmath>

namespace art::sound {

Signal brass(const Stroke& s) {
  Noise noise(s.seed);
  const double a = noise.between(0, 1), detune = noise.between(1.003, 1.006);
  Oscillator one(a), two(a + 0.37), three(a + 0.71), lip;
  Filter bell_filter, body(900, 1.2);
  return fill(s.seconds + 0.09, [&](double t) {
    const double scoop = 1 - 0.03 * std::exp(-t / 0.025);
    const double shake = 1 + 0.006 * rise(t - 0.18, 0.25) * lip.sine(5.4);
    const double hz = s.hz * scoop * shake;
    const double y = one.saw(hz) + 0.8 * two.saw(hz * detune) + 0.7 * three.saw(hz / detune);
    const double blow = rise(t, 0.035) * (0.62 + 0.38 * std::exp(-t / 0.12));
    bell_filter.set(350 + (2200 + 3800 * s.velocity) * blow * s.velocity, 0.9);
    const double tone = bell_filter.lowpass(y);
    return 0.34 * (tone + 0.5 * body.bandpass(tone)) * s.velocity *
           held(t, s.seconds, 0.02, 0.3, 0.75, 0.07);
  });
}

Signal whistle(const Stroke& s) {
  Noise noise(s.seed);
  Oscillator tone, second, lip;
  Filter breath(s.hz, 9);
  return fill(s.seconds + 0.12, [&](double t) {
    const double scoop = 1 - 0.045 * std::exp(-t / 0.03);
    const double hz = s.hz * scoop * (1 + 0.009 * rise(t - 0.12, 0.2) * lip.sine(5.8));
    const double air = 0.5 * breath.bandpass(noise.next());
    return (0.75 * tone.sine(hz) + 0.06 * second.sine(2 * hz) + air) * s.velocity *
           held(t, s.seconds, 0.03, 0.4, 0.8, 0.08);
  });
}

Signal reed(const Stroke& s) {
  Oscillator tone, lip;
  Filter lid, nose(1150, 2.5);
  return fill(s.seconds + 0.08, [&](double t) {
    const double hz = s.hz * (1 + 0.007 * rise(t - 0.15, 0.2) * lip.sine(5.1));
    const double y = tone.pulse(hz, 0.46 + 0.1 * std::exp(-t / 0.04));
    lid.set(std::min(9 * s.hz, 900 + 3400 * s.velocity), 0.8);
    const double warm = lid.lowpass(y);
    return 0.55 * (warm + 0.6 * nose.bandpass(warm)) * s.velocity *
           held(t, s.seconds, 0.025, 0.3, 0.8, 0.06);
  });
}

Signal organ(const Stroke& s) {
  constexpr double kBars[][2] = {{0.5, 0.5}, {1, 0.7}, {1.5, 0.35}, {2, 0.4}, {3, 0.22}, {4, 0.18}};
  Noise noise(s.seed);
  Filter click(2600, 1);
  return fill(s.seconds + 0.04, [&](double t) {
    double y = 0;
    const double spin = t + 0.0002 * std::sin(kTau * 6.3 * t);
    for (const auto& bar : kBars) y += bar[1] * std::sin(kTau * s.hz * bar[0] * spin);
    y += 0.8 * decay(t, 0.02) * click.bandpass(noise.next());
    const double rotor = 1 + 0.16 * std::sin(kTau * 6.3 * t + 1);
    return 0.42 * std::tanh(0.9 * y) * rotor * s.velocity * held(t, s.seconds, 0.004, 1, 1, 0.03);
  });
}

Signal electric_piano(const Stroke& s) {
  return fill(s.seconds + 0.15, [&](double t) {
    const double tine = 1.6 * s.velocity * decay(t, 0.35), body = 1.1 * s.velocity * decay(t, 1.6);
    const double phase = kTau * s.hz * t;
    const double y = std::sin(phase + body * std::sin(phase)) +
                     0.35 * std::sin(phase + tine * std::sin(7 * phase));
    return 0.55 * y * s.velocity * decay(t, 2.2) * held(t, s.seconds, 0.002, 1, 1, 0.14);
  });
}

}  // namespace art::sound
