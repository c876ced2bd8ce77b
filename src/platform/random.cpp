#include "platform/random.h"

#include <atomic>

namespace {

// A Weyl sequence with scrambled output: the next number needs one atomic addition and no lock, so
// any thread may draw. The start is fixed until a seed is set.
constexpr std::uint64_t WEYL_STEP = 0x9E3779B97F4A7C15;

constinit std::atomic<std::uint64_t> weyl{};

constexpr std::uint64_t scrambled(std::uint64_t word) {
  word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9;
  word = (word ^ (word >> 27)) * 0x94D049BB133111EB;
  return word ^ (word >> 31);
}

}  // namespace

int random_15bit() {
  return static_cast<int>(scrambled(weyl.fetch_add(WEYL_STEP, std::memory_order_relaxed)) >> 49);
}

double random_unit() {
  return random_15bit() / 32767.0;
}

void random_seed(std::uint64_t seed) {
  weyl.store(seed, std::memory_order_relaxed);
}
