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

std::vector<int> decoded(const std::vector<std::uint8_t>& bytes) {
  std::uint8_t alpha[16];
  dxt5_alpha(4, 4, bytes.data(), alpha);
  return {alpha, alpha + 16};
}

TEST(DxtAlpha, EndpointsAreExactAndOthersLieBetween) {
  EXPECT_EQ(decoded(block(255, 0, 0)), std::vector<int>(16, 255));
  const std::uint64_t all_eight = 0b111'110'101'100'011'010'001'000;
  std::vector<int> alpha = decoded(block(255, 0, all_eight));
  EXPECT_EQ(alpha[0], 255);
  EXPECT_EQ(alpha[1], 0);
  for (int i = 2; i < 8; ++i) EXPECT_TRUE(alpha[i] > 0 && alpha[i] < 255) << i;
  alpha = decoded(block(0, 255, all_eight));
  EXPECT_EQ(alpha[6], 0) << "with the lower endpoint first, 6 and 7 are 0 and 255";
  EXPECT_EQ(alpha[7], 255);
  alpha = decoded(block(255, 254, all_eight));
  EXPECT_NE(alpha[2], 255) << "a decoder may round it down";
  alpha = decoded(block(1, 0, all_eight));
  EXPECT_NE(alpha[7], 0) << "a decoder may round it up";
  EXPECT_EQ(decoded(block(255, 255, all_eight))[3], 255);
}

TEST(DxtAlpha, BlocksAreInRowOrder) {
  std::vector<std::uint8_t> bytes;
  for (const std::uint8_t end : {10, 20, 30, 40}) {
    const auto one = block(end, end, 0);
    bytes.insert(bytes.end(), one.begin(), one.end());
  }
  std::uint8_t alpha[64];
  dxt5_alpha(8, 8, bytes.data(), alpha);
  EXPECT_EQ(alpha[3], 10);
  EXPECT_EQ(alpha[4], 20);
  EXPECT_EQ(alpha[4 * 8], 30);
  EXPECT_EQ(alpha[63], 40);
}

}  // namespace
