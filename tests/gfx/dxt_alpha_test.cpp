#include "platform/dxt_alpha.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

// A block of two endpoints and an index for each of its 16 pixels.
std::vector<std::uint8_t> block(std::uint8_t first, std::uint8_t second, std::uint64_t indexes) {
  std::vector<std::uint8_t> bytes = {first, second};
  for (int i = 0; i < 6; ++i) bytes.push_back(indexes >> (8 * i) & 0xFF);
  bytes.resize(16, 0xAA);
  return bytes;
}

// Exact values; anything between them is shown as 1.
TEST(DxtAlpha, EndpointsAreExactAndOthersLieBetween) {
  using Alphas = std::vector<int>;
  const auto of_indexes_0_to_7 = [](std::uint8_t first, std::uint8_t second) {
    std::uint8_t alpha[16];
    dxt5_alpha(4, 4, block(first, second, 0b111'110'101'100'011'010'001'000).data(), alpha);
    Alphas rough;
    for (int i = 0; i < 8; ++i) rough.push_back(alpha[i] == 0 || alpha[i] == 255 ? alpha[i] : 1);
    EXPECT_EQ(alpha[8], alpha[0]);
    EXPECT_EQ(alpha[15], alpha[0]);
    return rough;
  };
  EXPECT_EQ(of_indexes_0_to_7(255, 0), (Alphas{255, 0, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(of_indexes_0_to_7(0, 255), (Alphas{0, 255, 1, 1, 1, 1, 0, 255}));
  // A decoder may round these down or up.
  EXPECT_EQ(of_indexes_0_to_7(255, 254), (Alphas{255, 1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(of_indexes_0_to_7(1, 0), (Alphas{1, 0, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(of_indexes_0_to_7(255, 255), (Alphas{255, 255, 255, 255, 255, 255, 0, 255}));
}

TEST(DxtAlpha, BlocksAreInRowOrder) {
  std::vector<std::uint8_t> bytes;
  for (const std::uint8_t end : {10, 20, 30, 40}) {
    const auto one = block(end, end + 1, 0);
    bytes.insert(bytes.end(), one.begin(), one.end());
  }
  std::uint8_t alpha[64];
  dxt5_alpha(8, 8, bytes.data(), alpha);
  for (int i = 0; i < 64; ++i) EXPECT_EQ(alpha[i], 10 * (1 + i % 8 / 4 + i / 32 * 2)) << i;
}

}  // namespace
