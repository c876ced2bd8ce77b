// Every wave file of the kit: format, loudness, peaks, ends, and the seams of loops.
#include <ebur128.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "art/sound/catalogue.h"
#include "tests/sound_kit/kit.h"

using art::sound::Kind;
using art::sound::Row;

namespace {

std::vector<Row> all_rows() {
  std::vector<Row> rows;
  for (const auto* family : art::sound::families())
    rows.insert(rows.end(), family->rows.begin(), family->rows.end());
  return rows;
}

ebur128_state* meter(const Heard& wave, int mode) {
  ebur128_state* state = ebur128_init(static_cast<unsigned>(wave.channels), 44100, mode);
  if (wave.channels == 1) ebur128_set_channel(state, 0, EBUR128_DUAL_MONO);
  return state;
}

double true_peak(const Heard& wave) {
  ebur128_state* state = meter(wave, EBUR128_MODE_TRUE_PEAK);
  ebur128_add_frames_float(state, wave.samples.data(), wave.frames());
  double peak = 0;
  for (int c = 0; c < wave.channels; c++) {
    double now = 0;
    ebur128_true_peak(state, static_cast<unsigned>(c), &now);
    peak = std::max(peak, now);
  }
  ebur128_destroy(&state);
  return 20 * std::log10(peak);
}

double integrated(const Heard& wave) {
  ebur128_state* state = meter(wave, EBUR128_MODE_I);
  ebur128_add_frames_float(state, wave.samples.data(), wave.frames());
  double loudness = 0;
  ebur128_loudness_global(state, &loudness);
  ebur128_destroy(&state);
  return loudness;
}

// The loudest 0.4 s, with silence around what is shorter.
double loudest_moment(const Heard& wave) {
  ebur128_state* state = meter(wave, EBUR128_MODE_M);
  const std::vector<float> silence(441 * static_cast<size_t>(wave.channels));
  double loudest = -HUGE_VAL;
  auto feed = [&](const float* samples, size_t frames) {
    double now = -HUGE_VAL;
    ebur128_add_frames_float(state, samples, frames);
    ebur128_loudness_momentary(state, &now);
    loudest = std::max(loudest, now);
  };
  for (int i = 0; i < 40; i++) feed(silence.data(), 441);
  for (size_t i = 0; i < wave.frames(); i += 441)
    feed(wave.samples.data() + i * static_cast<size_t>(wave.channels),
         std::min<size_t>(441, wave.frames() - i));
  for (int i = 0; i < 40; i++) feed(silence.data(), 441);
  ebur128_destroy(&state);
  return loudest;
}

class EachWave : public testing::TestWithParam<Row> {
 protected:
  Heard wave_ = hear(kit_folder() + "/" + GetParam().name + ".wav");
};

TEST_P(EachWave, HasTheMixersFormat) {
  EXPECT_EQ(wave_.rate, 44100);
  EXPECT_EQ(wave_.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_16);
  EXPECT_EQ(wave_.format & SF_FORMAT_TYPEMASK, SF_FORMAT_WAV);
  EXPECT_EQ(wave_.channels, GetParam().kind == Kind::kMusic ? 2 : 1);
  // What isn't music is held in memory and has to be over soon.
  if (GetParam().kind != Kind::kMusic) {
    EXPECT_LE(wave_.frames(), 44100u * 5);
  }
}

TEST_P(EachWave, HasTheLoudnessOfItsKind) {
  const Kind kind = GetParam().kind;
  const double lufs = kind == Kind::kMusic ? integrated(wave_) : loudest_moment(wave_);
  EXPECT_NEAR(lufs, art::sound::target_lufs(kind), 3);
}

TEST_P(EachWave, IsNotClippedAndHasNoOffset) {
  EXPECT_LT(true_peak(wave_), -1);
  for (int c = 0; c < wave_.channels; c++) {
    double sum = 0, square = 0;
    for (size_t i = 0; i < wave_.frames(); i++) {
      sum += wave_.at(i, c);
      square += wave_.at(i, c) * wave_.at(i, c);
    }
    const double n = static_cast<double>(wave_.frames()), rms = std::sqrt(square / n);
    EXPECT_GT(rms, 0.01) << "silent";
    EXPECT_LT(std::abs(sum / n), 0.005) << "a constant part";
  }
}

TEST_P(EachWave, StartsAndEndsWithoutClick) {
  for (int c = 0; c < wave_.channels; c++) {
    const size_t n = wave_.frames();
    if (!GetParam().loop) {
      float peak = 0;
      for (float x : wave_.samples) peak = std::max(peak, std::abs(x));
      EXPECT_LT(std::abs(wave_.at(0, c)), 0.02f * peak);
      EXPECT_LT(std::abs(wave_.at(n - 1, c)), 0.02f * peak);
      continue;
    }
    // A step from the last sample to the first, and a bend there, no sharper than those around it.
    float step = 0, bend = 0;
    auto x = [&](size_t i) { return wave_.at((n - 2205 + i) % n, c); };
    for (size_t i = 1; i + 1 < 4410; i++) {
      if (i >= 2203 && i <= 2206) continue;
      step = std::max(step, std::abs(x(i) - x(i - 1)));
      bend = std::max(bend, std::abs(x(i + 1) - 2 * x(i) + x(i - 1)));
    }
    EXPECT_LE(std::abs(x(2205) - x(2204)), step * 1.01f + 1e-4f);
    for (size_t i : {2204u, 2205u})
      EXPECT_LE(std::abs(x(i + 1) - 2 * x(i) + x(i - 1)), bend * 1.01f + 1e-4f);
  }
}

INSTANTIATE_TEST_SUITE_P(Kit, EachWave, testing::ValuesIn(all_rows()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Kit, RendersTheSameBytesAgain) {
  if (std::getenv("LILYHOP_SOUNDS")) GTEST_SKIP() << "that folder isn't the render's";
  std::filesystem::remove_all(SOUND_AGAIN);
  ASSERT_EQ(std::system(SOUND_RENDER " " SOUND_AGAIN " >" SOUND_AGAIN ".log 2>&1"), 0);
  for (const Row& row : all_rows()) {
    const std::string file = std::string("/") + row.name + ".wav";
    EXPECT_TRUE(bytes_of(kit_folder() + file) == bytes_of(SOUND_AGAIN "/sounds" + file)) << file;
  }
  std::filesystem::remove_all(SOUND_AGAIN);
}

TEST(Kit, FitsIntoSixtyMegabytes) {
  uintmax_t size = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kit_folder()))
    size += entry.file_size();
  EXPECT_LT(size, 60'000'000u);
}

TEST(RenderSounds, RefusesUnknownName) {
  const int code = std::system(SOUND_RENDER " " SOUND_AGAIN " nosuchsound 2>/dev/null");
  EXPECT_NE(code, 0);
  EXPECT_FALSE(std::filesystem::exists(SOUND_AGAIN));
}

}  // namespace
