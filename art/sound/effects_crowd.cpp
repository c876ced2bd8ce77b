// A crowd for the jackpot: about fifty throats, each with its own pitch and timing, hands and
// whistles.
#include <algorithm>
#include <cmath>

#include "art/sound/catalogue.h"
#include "art/sound/drums.h"

namespace art::sound {

namespace {

struct Vowel {
  double first, second, third;
};
constexpr Vowel kYay[] = {{420, 2100, 2800}, {620, 1800, 2600}};  // from "y" to "ay"
constexpr Vowel kWoo[] = {{340, 800, 2300}, {330, 700, 2300}};
constexpr Vowel kHey[] = {{560, 1750, 2500}, {480, 2000, 2700}};

struct Shout {
  double pitch, seconds, bend;  // bend: how far the pitch has moved at the end
  const Vowel* vowel;
  uint32_t seed;
};

Signal shout(const Shout& s) {
  Noise noise(s.seed);
  const double size = noise.between(0.92, 1.2), shake_hz = noise.between(4.5, 7);
  Oscillator throat(noise.between(0, 1)), shake;
  Filter one, two, three;
  double air = 0;
  return fill(s.seconds, [&](double t) {
    const double way = t / s.seconds, mouth = std::min(1.0, t / 0.16);
    air += 0.05 * (noise.next() - air);
    const double lift = 1 + 0.12 * rise(t, 0.15) + (s.bend - 1) * way * way;
    const double hz = s.pitch * lift * (1 + 0.014 * shake.sine(shake_hz) + 0.1 * air);
    one.set(size * mix_of(s.vowel[0].first, s.vowel[1].first, mouth), 6);
    two.set(size * mix_of(s.vowel[0].second, s.vowel[1].second, mouth), 8);
    three.set(size * mix_of(s.vowel[0].third, s.vowel[1].third, mouth), 8);
    const double y = throat.saw(hz) + 0.35 * noise.next();
    return (0.7 * one.bandpass(y) + 1.2 * two.bandpass(y) + 0.9 * three.bandpass(y)) *
           rise(t, 0.07) * (1 - rise(t - 0.55 * s.seconds, 0.45 * s.seconds));
  });
}

void hands(Signal& out, Noise& chance, int count, double from, double to) {
  for (int i = 0; i < count; i++) {
    Signal one = clap({0, 0, 1, 900u + static_cast<uint32_t>(i)});
    one.resize(frames_of(0.06));
    for (size_t k = 0; k < one.size(); k++)
      one[k] *=
          static_cast<float>(decay(static_cast<double>(k) / kRate, chance.between(0.04, 0.05)));
    add(out, one, chance.between(from, to), chance.between(1.2, 3.5));
  }
}

void finger_whistle(Signal& out, double at, double low, double high, double gain) {
  double phase = 0;
  add(out,
      fill(0.55,
           [&](double t) {
             phase +=
                 (t < 0.22 ? glide(low, high, t / 0.2) : glide(high, low * 1.1, (t - 0.22) / 0.3)) /
                 kRate;
             return std::sin(kTau * phase) * rise(t, 0.03) * (1 - rise(t - 0.4, 0.15));
           }),
      at, gain);
}

// People too far away to be heard one by one.
void roar(Signal& out, double seconds, double gain) {
  Noise noise(701);
  Filter throats(950, 0.7), air(2600, 0.6), lid(4200, 0.7);
  double stir = 0;
  add(out,
      fill(seconds,
           [&](double t) {
             const double white = noise.next();
             stir += 0.0006 * (noise.next() - stir);
             return lid.lowpass(throats.bandpass(white) + 0.7 * air.bandpass(white)) *
                    (1 + 14 * stir) * rise(t, 0.25) * (1 - rise(t - 0.4 * seconds, 0.6 * seconds));
           }),
      0, gain);
}

void swell(Signal& out, double seconds, double in_s, double out_s) {
  out.resize(frames_of(seconds));
  for (size_t i = 0; i < out.size(); i++) {
    const double t = static_cast<double>(i) / kRate;
    out[i] *= static_cast<float>(rise(t, in_s) * (1 - rise(t - seconds + out_s, out_s)));
  }
}

Wave jackpotcheer(int) {
  Signal out;
  Noise chance(77);
  for (int i = 0; i < 54; i++) {
    const bool woo = i % 5 == 4, child = i % 3 == 0;
    const double pitch = child ? chance.between(330, 560) : chance.between(150, 320);
    const Shout s = {pitch, chance.between(1.3, 2.9), chance.between(0.85, 1.25), woo ? kWoo : kYay,
                     100u + static_cast<uint32_t>(i)};
    add(out, shout(s), i < 24 ? chance.between(0, 0.25) : chance.between(0.3, 1.6),
        chance.between(0.4, 1));
  }
  roar(out, 4.2, 2.5);
  hands(out, chance, 330, 0.5, 4.0);
  finger_whistle(out, 0.8, 1500, 2700, 0.6);
  finger_whistle(out, 1.6, 1750, 3000, 0.45);
  finger_whistle(out, 2.3, 1400, 2400, 0.4);
  swell(out, 4.2, 0.03, 1.7);
  return {1, out};
}

// The end: a last "hey", and clapping.
Wave endjackpotcheer(int) {
  Signal out;
  Noise chance(78);
  for (int i = 0; i < 30; i++) {
    const double pitch = i % 3 ? chance.between(150, 300) : chance.between(320, 500);
    add(out,
        shout({pitch, chance.between(0.7, 1.3), chance.between(0.7, 0.95), i % 4 ? kHey : kWoo,
               300u + static_cast<uint32_t>(i)}),
        chance.between(0, 0.3), chance.between(0.4, 1));
  }
  roar(out, 2.6, 1.2);
  hands(out, chance, 260, 0.1, 2.9);
  finger_whistle(out, 0.9, 1500, 2400, 0.35);
  swell(out, 3.0, 0.02, 1.8);
  return {1, out};
}

constexpr Row kRows[] = {{"jackpotcheer", Kind::kEffect, false, jackpotcheer},
                         {"endjackpotcheer", Kind::kEffect, false, endjackpotcheer}};

}  // namespace

const Family kCrowdFamily = {"art/sound/effects_crowd.cpp", kRows, 1};

}  // namespace art::sound
