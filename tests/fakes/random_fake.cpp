#include "tests/fakes/random_fake.h"

#include <cstdint>
#include <random>
#include <utility>

#include "platform/random.h"

namespace {

std::mt19937 engine;

}  // namespace

int random_15bit() {
  if (random_fake_before_next) std::exchange(random_fake_before_next, nullptr)();
  return static_cast<int>(engine() >> 17U);
}

double random_unit() {
  return random_15bit() / 32767.0;
}

void random_seed(std::uint64_t seed) {
  engine.seed(static_cast<std::uint32_t>(seed));
}
