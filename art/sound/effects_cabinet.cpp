// The cabinet's own sounds: a coin, the launch, the operator's menu.
#include <cmath>

#include "art/sound/catalogue.h"
#include "art/sound/mallets.h"

namespace art::sound {

namespace {

// A coin clinks in, and a rising chord answers.
Wave coin(int) {
  Signal out(frames_of(0.85));
  add(out, bell({3150, 0.1, 1, 1}), 0, 0.30);
  add(out, bell({4210, 0.1, 1, 2}), 0.045, 0.22);
  constexpr double kMidi[] = {79, 84, 88, 91};
  for (int i = 0; i < 4; i++) {
    const double hz = hz_of_midi(kMidi[i]);
    add(out, bell({hz, 0.3, 0.9, 10u + static_cast<uint32_t>(i)}), 0.07 + 0.06 * i, 0.6);
    add(out, steelpan({hz / 2, 0.3, 0.8, 20u + static_cast<uint32_t>(i)}), 0.07 + 0.06 * i, 0.4);
  }
  out.resize(frames_of(0.85));
  for (size_t i = 0; i < out.size(); i++)
    out[i] *= static_cast<float>(1 - rise(static_cast<double>(i) / kRate - 0.4, 0.45));
  return {1, out};
}

// The launch: a twang, and a whistle that flies away.
Wave ricochet(int) {
  Noise noise(33);
  Filter crack(2600, 1.2), wind;
  double phase = 0;
  return {1, fill(0.62, [&](double t) {
            const double hz = glide(3100, 620, std::sqrt(t / 0.62));
            phase += hz / kRate;
            const double flutter = 0.7 + 0.3 * std::sin(kTau * (34 - 22 * t) * t);
            const double tone = std::sin(kTau * phase) + 0.3 * std::sin(2 * kTau * phase);
            wind.set(hz * 1.3, 4);
            const double white = noise.next();
            return 1.6 * crack.bandpass(white) * decay(t, 0.05) +
                   (0.7 * tone * flutter + 0.5 * wind.bandpass(white)) * rise(t, 0.008) *
                       decay(t, 0.75) * (1 - rise(t - 0.5, 0.12));
          })};
}

Wave menu_over(int) {
  return {1, wood_block({1250, 0.1, 0.9, 1})};
}

Wave two_notes(double first, double second) {
  Signal out = marimba({first, 0.1, 0.9, 2});
  add(out, marimba({second, 0.1, 1, 3}), 0.085, 1);
  out.resize(frames_of(0.42));
  for (size_t i = 0; i < out.size(); i++)
    out[i] *= static_cast<float>(1 - rise(static_cast<double>(i) / kRate - 0.2, 0.22));
  return {1, out};
}
Wave menu_select(int) {
  return two_notes(784, 1047);
}
Wave menu_cancel(int) {
  return two_notes(784, 523);
}

constexpr Row kRows[] = {
    {"coin", Kind::kEffect, false, coin},
    {"ricochet", Kind::kEffect, false, ricochet},
    {"menu_over", Kind::kOperator, false, menu_over},
    {"menu_select", Kind::kOperator, false, menu_select},
    {"menu_cancel", Kind::kOperator, false, menu_cancel},
};

}  // namespace

const Family kCabinetFamily = {"art/sound/effects_cabinet.cpp", kRows, 0.05};

}  // namespace art::sound
