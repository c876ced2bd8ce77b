#include "art/sound/reverb.h"

#include <cmath>

namespace art::sound {

Reverb::Reverb(double t60_s) : bottom_(180, 0.7) {
  // Lengths without a common divisor, so that the echoes don't coincide.
  constexpr std::array<size_t, kLines> kLengths = {887, 1049, 1229, 1427, 1621, 1847, 2089, 2311};
  for (size_t i = 0; i < kLines; i++) {
    lines_[i].assign(kLengths[i], 0);
    loss_[i] = std::pow(10.0, -3.0 * static_cast<double>(kLengths[i]) / kRate / t60_s);
  }
}

void Reverb::step(double in, double& left, double& right) {
  in = bottom_.highpass(in);
  double out[kLines], sum = 0;
  left = right = 0;
  for (size_t i = 0; i < kLines; i++) {
    dull_[i] += 0.55 * (lines_[i][at_[i]] - dull_[i]);
    out[i] = dull_[i] * loss_[i];
    sum += out[i];
    (i % 2 ? left : right) += out[i] * (i % 4 < 2 ? 0.5 : -0.5);
  }
  for (size_t i = 0; i < kLines; i++) {
    lines_[i][at_[i]] = static_cast<float>(out[i] - sum * 2 / kLines + (i % 2 ? in : -in) * 0.5);
    at_[i] = (at_[i] + 1) % lines_[i].size();
  }
}

}  // namespace art::sound
