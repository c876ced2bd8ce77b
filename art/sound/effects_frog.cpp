// What a frog's body does: hop, croak, gulp, and the sad horn when it goes under.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "art/sound/catalogue.h"
#include "art/sound/drums.h"
#include "art/sound/frog_voice.h"
#include "art/sound/mallets.h"

namespace art::sound {

namespace {

// A spring: the pitch leaps up and wobbles, over the slap of two feet. It is heard three times a
// second, so it is short and soft.
Wave jump(int) {
  double phase = 0;
  Signal out = fill(0.24, [&](double t) {
    const double wobble = 1 + 0.10 * std::exp(-t / 0.06) * std::sin(kTau * 21 * t);
    phase += glide(190, 560, t / 0.13) * wobble / kRate;
    const double spring = std::sin(kTau * phase + 1.7 * decay(t, 0.2) * std::sin(2 * kTau * phase));
    return std::tanh(2.2 * spring) * rise(t, 0.004) * decay(t, 0.26);
  });
  add(out, wood_block({620, 0.1, 0.7, 3}), 0, 0.35);
  return {1, out};
}

constexpr struct {
  Croak first, second;
  double gap;
} kCroaks[] = {
    {{84, 96, 640, 820, 0.13}, {98, 150, 760, 1240, 0.21}, 0.15},
    {{70, 78, 520, 640, 0.16}, {80, 118, 600, 980, 0.25}, 0.18},
    {{112, 124, 820, 960, 0.09}, {120, 190, 900, 1500, 0.16}, 0.11},
    {{60, 64, 430, 520, 0.34}, {66, 60, 560, 470, 0.12}, 0.30},
    {{132, 150, 960, 1180, 0.07}, {140, 170, 1000, 1350, 0.08}, 0.09},
    {{92, 88, 700, 640, 0.10}, {90, 136, 660, 1180, 0.30}, 0.12},
};

Wave croak(int n) {
  const auto& c = kCroaks[n];
  Signal out = croak_syllable(c.first, 11u + static_cast<uint32_t>(n));
  add(out, croak_syllable(c.second, 31u + static_cast<uint32_t>(n)), c.gap, 1.1);
  if (n == 4) add(out, croak_syllable({150, 200, 1050, 1600, 0.1}, 51), 0.19, 1.1);
  return {1, out};
}

// The tongue snaps, the throat closes over it, an air bubble comes back.
Wave gulp(int) {
  double phase = 0, bubble = 0;
  Noise noise(5);
  Filter wet(900, 1.5);
  return {1, fill(0.26, [&](double t) {
            phase += glide(520, 125, t / 0.085) / kRate;
            double y = std::sin(kTau * phase) * rise(t, 0.003) * (1 - rise(t - 0.06, 0.04));
            y += 0.5 * wet.bandpass(noise.next()) * decay(t, 0.03);
            const double back = t - 0.105;
            if (back > 0) {
              bubble += glide(230, 760, back / 0.09) / kRate;
              y += 0.9 * std::sin(kTau * bubble) * rise(back, 0.006) * decay(back, 0.16);
            }
            return std::tanh(2 * y) + 0.3 * y * y * y;
          })};
}

// A muted horn's "wah, waaah". The game plays it at two thirds of its speed, which gives the
// intended pitch.
Wave wah(int) {
  Signal out(frames_of(0.82));
  auto note = [&](double at, double hz, double to, double seconds) {
    Oscillator one, two(0.3), lip;
    Filter mute, horn(1500, 0.9);
    add(out,
        fill(seconds,
             [&](double t) {
               const double hand = std::sin(std::numbers::pi * std::min(1.0, t / seconds * 1.25));
               const double f = glide(hz, to, (t / seconds - 0.25) / 0.75) *
                                (1 + 0.012 * rise(t - 0.15, 0.15) * lip.sine(7.5));
               mute.set(500 + 2300 * hand, 2.6);
               const double y = one.saw(f) + 0.7 * two.saw(f * 1.004);
               return (mute.lowpass(y) + 0.4 * horn.bandpass(y)) * 0.5 * rise(t, 0.02) *
                      (1 - rise(t - seconds + 0.09, 0.09));
             }),
        at, 1);
  };
  note(0, 466, 460, 0.24);
  note(0.27, 440, 330, 0.55);
  return {1, out};
}

// A button that does nothing now: knuckles on a hollow head.
Wave bonk(int) {
  Signal out = tom({215, 0.1, 0.9, 7});
  out.resize(frames_of(0.28));
  add(out, wood_block({430, 0.1, 1, 8}), 0, 0.9);
  add(out, wood_block({705, 0.1, 0.8, 9}), 0.004, 0.5);
  return {1, out};
}

constexpr Row kRows[] = {
    {"jump", Kind::kEffect, false, jump},       {"croak1", Kind::kEffect, false, croak, 0},
    {"croak2", Kind::kEffect, false, croak, 1}, {"croak3", Kind::kEffect, false, croak, 2},
    {"croak4", Kind::kEffect, false, croak, 3}, {"croak5", Kind::kEffect, false, croak, 4},
    {"croak6", Kind::kEffect, false, croak, 5}, {"gulp", Kind::kEffect, false, gulp},
    {"wah", Kind::kEffect, false, wah},         {"bonk", Kind::kEffect, false, bonk},
};

}  // namespace

const Family kFrogFamily = {"art/sound/effects_frog.cpp", kRows, 0.05};

}  // namespace art::sound
