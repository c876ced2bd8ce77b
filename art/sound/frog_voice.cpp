#include "art/sound/frog_voice.h"

#include <cmath>

namespace art::sound {

Signal croak_syllable(const Croak& c, uint32_t seed) {
  Noise noise(seed);
  Oscillator throat;
  Filter mouth, nose, chest(310, 1.5);
  double flutter = 0;
  return fill(c.seconds, [&](double t) {
    const double way = t / c.seconds;
    flutter += 0.02 * (noise.next() - flutter);
    const double hz = glide(c.clicks_from, c.clicks_to, way) * (1 + 0.5 * flutter);
    const double open = glide(c.mouth_from, c.mouth_to, way);
    mouth.set(open, 9);
    nose.set(2.35 * open, 8);
    const double click = throat.pulse(hz, 0.07) * (1 + 0.25 * noise.next());
    const double y =
        2.0 * mouth.bandpass(click) + 0.8 * nose.bandpass(click) + 0.7 * chest.bandpass(click);
    return std::tanh(1.4 * y) * rise(t, 0.012) * (1 - rise(t - c.seconds * 0.6, c.seconds * 0.4));
  });
}

Signal frog_percussion(const Stroke& s) {
  Signal out = croak_syllable({s.hz, s.hz * 1.25, 620, 1050, 0.16}, s.seed);
  for (float& x : out) x *= static_cast<float>(s.velocity);
  return out;
}

}  // namespace art::sound
