// The river: the splash, the notes of the logs, the bells that count tickets.
#include <cmath>

#include "art/sound/catalogue.h"
#include "art/sound/mallets.h"
#include "art/sound/score.h"

namespace art::sound {

namespace {

Signal bubble(double hz, double seconds) {
  double phase = 0;
  return fill(seconds, [&](double t) {
    phase += glide(hz, hz * 1.9, t / seconds) / kRate;
    return std::sin(kTau * phase) * rise(t, 0.004) * decay(t, seconds * 1.2) *
           (1 - rise(t - seconds * 0.7, seconds * 0.3));
  });
}

// The slap on the water, the falling spray, the rising bubbles.
Wave splash(int) {
  Noise noise(21);
  Filter slap(420, 0.9), spray, top(900, 0.7);
  Signal out = fill(1.05, [&](double t) {
    const double white = noise.next();
    spray.set(glide(9000, 1500, t / 0.7), 0.8);
    const double fall =
        rise(t, 0.03) * decay(t, 0.75) * (0.75 + 0.25 * std::sin(kTau * 13 * t * t));
    return 2.2 * slap.bandpass(white) * decay(t, 0.13) * rise(t, 0.002) +
           1.1 * top.highpass(spray.lowpass(white)) * fall;
  });
  Noise chance(22);
  for (int i = 0; i < 16; i++) {
    const double at = chance.between(0.12, 0.8), hz = chance.between(380, 1300);
    add(out, bubble(hz, chance.between(0.035, 0.075)), at, 0.35 * (1 - at));
  }
  out.resize(frames_of(1.05));
  return {1, out};
}

// The pentatonic scale from C, which fits the key of every tune.
constexpr int kScale[] = {0, 2, 4, 7, 9, 12};

// The leading frog lands on a log: wood with a bright overtone, a step higher on each lane.
Wave log_note(int step) {
  const double hz = hz_of_midi(72 + kScale[step]);
  Signal out(frames_of(0.75));
  add(out, marimba({hz, 0.3, 1, 40u + static_cast<uint32_t>(step)}), 0, 1);
  add(out, marimba({hz / 2, 0.3, 0.7, 50u + static_cast<uint32_t>(step)}), 0, 0.5);
  add(out, bell({hz * 2, 0.3, 0.6, 60u + static_cast<uint32_t>(step)}), 0.012, 0.12 + 0.03 * step);
  out.resize(frames_of(0.75));
  for (size_t i = 0; i < out.size(); i++)
    out[i] *= static_cast<float>(1 - rise(static_cast<double>(i) / kRate - 0.5, 0.25));
  return {1, out};
}

// One for each ticket, eight a second. It ends before the fourth one after it cuts it off.
Wave ding(int step) {
  Signal out = bell({hz_of_midi(84 + kScale[step]), 0.3, 0.9, 70u + static_cast<uint32_t>(step)});
  add(out, bell({hz_of_midi(72 + kScale[step]), 0.3, 0.6, 80u}), 0, 0.35);
  out.resize(frames_of(0.42));
  for (size_t i = 0; i < out.size(); i++)
    out[i] *= static_cast<float>(decay(static_cast<double>(i) / kRate, 0.5));
  return {1, out};
}

constexpr Row kRows[] = {
    {"splash", Kind::kEffect, false, splash},     {"log03", Kind::kEffect, false, log_note, 0},
    {"log04", Kind::kEffect, false, log_note, 1}, {"log05", Kind::kEffect, false, log_note, 2},
    {"log06", Kind::kEffect, false, log_note, 3}, {"log07", Kind::kEffect, false, log_note, 4},
    {"ding03", Kind::kEffect, false, ding, 0},    {"ding04", Kind::kEffect, false, ding, 1},
    {"ding05", Kind::kEffect, false, ding, 2},    {"ding06", Kind::kEffect, false, ding, 3},
    {"ding07", Kind::kEffect, false, ding, 4},    {"ding08", Kind::kEffect, false, ding, 5},
};

}  // namespace

const Family kRiverFamily = {"art/sound/effects_river.cpp", kRows, 0.05};

}  // namespace art::sound
