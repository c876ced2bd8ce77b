// The mixing's inner loops, plain and wide, held against the same sums in doubles. A processor runs
// one of the two, so what is played doesn't show what the other does.
#include "sound/kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace {

std::vector<float> noise(std::size_t count, float most = 30000) {
  static std::mt19937 random(1);
  std::uniform_real_distribution<float> level(-most, most);
  std::vector<float> values(count);
  for (float& value : values) value = level(random);
  return values;
}

class Kernels : public testing::TestWithParam<const SoundKernels*> {
 protected:
  const SoundKernels& kernels = *GetParam();
};

TEST_P(Kernels, UnpackGives16BitLevels) {
  std::vector<std::byte> in(4 * 67);
  std::mt19937 random(2);
  for (std::byte& byte : in) byte = static_cast<std::byte>(random());
  for (const int bytes : {1, 2}) {
    for (const int channels : {1, 2}) {
      std::vector<float> out[2] = {std::vector<float>(68, 7), std::vector<float>(68, 7)};
      kernels.unpack(in.data(), 67, channels, bytes, out[0].data(), out[1].data());
      for (int i = 0; i < 67 * channels; ++i) {
        const int low = static_cast<int>(in[i * bytes]);
        const int level =
            bytes == 1 ? (low - 128) * 256
                       : static_cast<std::int16_t>(low | static_cast<int>(in[i * 2 + 1]) << 8);
        ASSERT_EQ(out[i % channels][i / channels], static_cast<float>(level)) << bytes << ' ' << i;
      }
      EXPECT_EQ(out[0][67] + out[1][67], 14) << "nothing is written behind them";
      EXPECT_EQ(out[1][0] == 7, channels == 1) << "mono has no right side";
    }
  }
}

TEST_P(Kernels, ResampleWeighsTapsBetweenRows) {
  constexpr std::uint64_t STEP = 0x1'2345'6789;
  constexpr int FRAMES = 43;
  for (const int taps : {16, 24, 32, 40}) {
    const std::vector<float> rows = noise(static_cast<std::size_t>(257 * taps), 0.2F);
    const std::vector<float> in[2] = {noise(120), noise(120)};
    std::vector<float> out[2] = {std::vector<float>(FRAMES + 1, 7),
                                 std::vector<float>(FRAMES + 1, 7)};
    ResampleRun run{rows.data(),  taps,         0x89ABCDEF,    STEP,         FRAMES,
                    in[0].data(), in[1].data(), out[0].data(), out[1].data()};
    kernels.resample(run);
    for (int side = 0; side < 2; ++side) {
      for (int i = 0; i < FRAMES; ++i) {
        const std::uint64_t position = 0x89ABCDEF + static_cast<std::uint64_t>(i) * STEP;
        const double place = static_cast<double>(position & 0xFFFFFFFF) / 0x1p24;
        const int row = static_cast<int>(place);
        double sum = 0;
        for (int tap = 0; tap < taps; ++tap) {
          const double low = rows[row * taps + tap], high = rows[(row + 1) * taps + tap];
          sum += (low + (place - row) * (high - low)) * in[side][(position >> 32) + tap];
        }
        ASSERT_NEAR(out[side][i], sum, 0.5) << taps << ' ' << side << ' ' << i;
      }
    }
    EXPECT_EQ(out[0][FRAMES] + out[1][FRAMES], 14) << "nothing is written behind them";
    const std::vector<float> left = out[0];
    run.in_right = nullptr;
    out[1].assign(FRAMES + 1, 7);
    kernels.resample(run);
    EXPECT_EQ(out[0], left);
    EXPECT_EQ(std::ranges::count(out[1], 7.0F), FRAMES + 1);
  }
}

TEST_P(Kernels, MixAddsWithRisingGain) {
  const std::vector<float> in = noise(45), before = noise(46);
  std::vector<float> bus = before;
  kernels.mix(in.data(), 45, 0.25F, 0.01F, bus.data());
  for (int i = 0; i < 45; ++i) {
    ASSERT_NEAR(bus[i], before[i] + in[i] * (0.25 + i * 0.01), 0.1) << i;
  }
  EXPECT_EQ(bus[45], before[45]);
}

TEST_P(Kernels, PackRoundsAndSaturates) {
  std::vector<float> left = noise(29, 40000), right = noise(29, 40000);
  left[0] = left[27] = 0.75F;
  right[0] = right[27] = -0.75F;
  std::vector<std::int16_t> out(60, 7);
  kernels.pack(left.data(), right.data(), 29, out.data());
  for (int i = 0; i < 58; ++i) {
    const double level = (i % 2 == 0 ? left : right)[i / 2];
    ASSERT_EQ(out[i], std::clamp(std::lround(level), -32768L, 32767L)) << i;
  }
  EXPECT_EQ(out[58], 7);
}

std::vector<const SoundKernels*> kernels_of_this_processor() {
  std::vector<const SoundKernels*> all{&sound_kernels_plain};
  if (&sound_kernels() != all[0]) all.push_back(&sound_kernels());
  return all;
}

INSTANTIATE_TEST_SUITE_P(All, Kernels, testing::ValuesIn(kernels_of_this_processor()));

}  // namespace
