// A room: eight delays that feed each other and lose treble with each pass.
#pragma once

#include <array>

#include "art/sound/dsp.h"

namespace art::sound {

class Reverb {
 public:
  explicit Reverb(double t60_s);
  void step(double in, double& left, double& right);

 private:
  static constexpr size_t kLines = 8;
  std::array<Signal, kLines> lines_;
  std::array<size_t, kLines> at_{};
  std::array<double, kLines> loss_{}, dull_{};
  Filter bottom_;
};

}  // namespace art::sound
