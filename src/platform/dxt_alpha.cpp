#include "platform/dxt_alpha.h"

#include <cstddef>
#include <cstring>

namespace {

constexpr int SIDE = 4;                 // pixels of a block
constexpr std::size_t BLOCK_SIZE = 16;  // two end values, 16 indexes of 3 bits, then the colours
constexpr std::uint8_t BETWEEN = 128;

struct Ramp {
  std::uint8_t alpha[8];
};

// If the first end value is above the second, there are six steps between them; otherwise four,
// plus 0 and 255.
Ramp ramp_of(std::uint8_t first, std::uint8_t second) {
  Ramp ramp{{first, second}};
  const std::uint8_t step = first == second ? first : BETWEEN;
  std::memset(ramp.alpha + 2, step, 6);
  if (first <= second) {
    ramp.alpha[6] = 0;
    ramp.alpha[7] = 255;
  }
  return ramp;
}

void block_decode(const std::uint8_t* block, std::uint8_t* out, std::size_t pitch) {
  std::uint64_t indexes = 0;
  std::memcpy(&indexes, block, 8);
  indexes >>= 16;
  if (indexes == 0) {  // one alpha, as in most blocks
    for (int row = 0; row < SIDE; ++row) std::memset(out + row * pitch, block[0], SIDE);
    return;
  }
  const Ramp ramp = ramp_of(block[0], block[1]);
  for (int row = 0; row < SIDE; ++row) {
    for (int column = 0; column < SIDE; ++column, indexes >>= 3) {
      out[row * pitch + column] = ramp.alpha[indexes & 7];
    }
  }
}

}  // namespace

void dxt5_alpha(int width, int height, const std::uint8_t* blocks, std::uint8_t* alpha) {
  const auto pitch = static_cast<std::size_t>(width);
  for (int y = 0; y < height; y += SIDE) {
    for (int x = 0; x < width; x += SIDE, blocks += BLOCK_SIZE) {
      block_decode(blocks, alpha + y * pitch + x, pitch);
    }
  }
}
