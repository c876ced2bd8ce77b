// Test tones: a whole number of waves, so that they repeat for ever without a click. The player
// recognises their names and ignores the master volume for them, because operators measure with
// them.
#include <cmath>

#include "art/sound/catalogue.h"

namespace art::sound {

namespace {

Wave sine(int hz) {
  return {1, fill(2, [&](double t) { return 0.5 * std::sin(kTau * hz * t); })};
}

constexpr Row kRows[] = {{"sine100", Kind::kOperator, true, sine, 100},
                         {"sine1k", Kind::kOperator, true, sine, 1000}};

}  // namespace

const Family kToneFamily = {"art/sound/tones.cpp", kRows, 0.02};

}  // namespace art::sound
