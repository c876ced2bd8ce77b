// Sounds of every format and rate, played at any other, without loss, images or aliases.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "sound/resampler.h"
#include "tests/sound_driver/studio.h"

namespace {

using Pitch = Studio;

double zero_crossings_hz(const Samples& samples) {
  int rises = 0;
  std::size_t first = 0, last = 0;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    if (samples[i - 1] >= 0 || samples[i] < 0) continue;
    if (rises++ == 0) first = i;
    last = i;
  }
  return rises < 2 ? 0 : (rises - 1) * 44100.0 / static_cast<double>(last - first);
}

// Everything but the tone at `hz`, in decibels relative to it.
double purity(const Samples& samples, double hz) {
  const double step = 2 * std::numbers::pi * hz / 44100;
  double ss = 0, sc = 0, cc = 0, xs = 0, xc = 0, xx = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double s = std::sin(step * static_cast<double>(i));
    const double c = std::cos(step * static_cast<double>(i));
    ss += s * s, sc += s * c, cc += c * c;
    xs += samples[i] * s, xc += samples[i] * c, xx += samples[i] * samples[i];
  }
  const double a = (xs * cc - xc * sc) / (ss * cc - sc * sc);
  const double b = (xc * ss - xs * sc) / (ss * cc - sc * sc);
  const double tone = a * xs + b * xc;
  return decibels(std::sqrt((xx - tone) / tone));
}

TEST_F(Pitch, EveryFormatPlaysAtItsOwnRate) {
  for (const int rate : {8000, 11025, 22050, 44100, 48000, 96000}) {
    for (const int channels : {1, 2}) {
      for (const int bits : {8, 16}) {
        JpsSound& tone = sine(1000, 0.8, {channels, bits, rate}, rate);
        ASSERT_EQ(jpsdrvr_play(&tone, 2), 0);
        EXPECT_EQ(jpsdrvr_get_frequency(2), rate);
        render(1024);
        const Take take = render(22050);
        const double full = bits == 8 ? 127 * 256 : 32767;
        EXPECT_NEAR(decibels(level_at(take.left, 1000) / full), decibels(0.8), 0.1)
            << rate << " Hz, " << channels << " x " << bits;
        EXPECT_NEAR(level_at(take.right, 1000), level_at(take.left, 1000), 1);
        EXPECT_LE(purity(take.left, 1000), bits == 8 ? -40 : -65) << rate << " Hz, " << bits;
      }
    }
  }
}

TEST_F(Pitch, PlaysAtTheFrequencySet) {
  JpsSound& tone = sine(500, 0.8);
  tone.loop = 1;
  jpsdrvr_play(&tone, 0);
  for (const int hz : {100, 8000, 44099, 44101, 50000, 66150, 88200, 100000}) {
    ASSERT_EQ(jpsdrvr_set_frequency(0, hz), 0);
    render(1024);
    const int frames = hz < 1000 ? 44100 * 4 : 22050;
    EXPECT_NEAR(zero_crossings_hz(render(frames).left) / (500.0 * hz / 44100), 1, 1e-3) << hz;
  }
  EXPECT_EQ(jpsdrvr_set_frequency(0, 99), -1);
  EXPECT_EQ(jpsdrvr_set_frequency(0, 100001), -1);
  EXPECT_EQ(jpsdrvr_get_frequency(0), 44100) << "the sound's own rate";
  EXPECT_EQ(jpsdrvr_set_frequency(1, 99), 0) << "ignored without a sound";

  jpsdrvr_play(&tone, 0);
  render(1024);
  EXPECT_NEAR(zero_crossings_hz(render(22050).left), 500, 1)
      << "a restart uses the sound's own rate";
}

// Played twice as fast, 15 kHz become 30 kHz, whose alias is at 14.1 kHz.
TEST_F(Pitch, AliasesAndImagesAreSuppressed) {
  struct Case {
    double tone_hz;
    int rate, hz;
    double alias_hz;
  };
  for (const Case& one : {Case{15000, 44100, 88200, 14100}, Case{20000, 44100, 66150, 14100},
                          Case{12000, 44100, 100000, 44100 - 12000 * 1e5 / 44100},
                          Case{30000, 96000, 96000, 14100},  // of the file itself
                          Case{5000, 22050, 22050, 17050},   // an image, reading slower
                          Case{8000, 22050, 22050, 14050}, Case{3000, 8000, 8000, 5000}}) {
    JpsSound& tone = sine(one.tone_hz, 0.9, {1, 16, one.rate}, one.rate);
    tone.loop = 1;
    jpsdrvr_play(&tone, 0);
    jpsdrvr_set_frequency(0, one.hz);
    render(2048);
    const double alias = decibels(level_at(render(22050).left, one.alias_hz) / (0.9 * 32767));
    RecordProperty("alias", std::to_string(alias));
    std::printf("%.0f Hz of %d Hz read at %d: %.1f dB at %.0f Hz\n", one.tone_hz, one.rate, one.hz,
                alias, one.alias_hz);
    EXPECT_LE(alias, -60) << one.tone_hz << " Hz at " << one.hz;
  }
}

TEST_F(Pitch, TrebleIsNotAttenuated) {
  JpsSound& tone = sine(14000, 0.5, {1, 16, 44100});
  jpsdrvr_play(&tone, 0);
  jpsdrvr_set_frequency(0, 44000);
  render(1024);
  const double hz = 14000.0 * 44000 / 44100;
  EXPECT_NEAR(decibels(level_at(render(22050).left, hz) / (0.5 * 32767)), 0, 0.5);
}

// A loop of whole periods is one long pure tone, at any rate.
TEST_F(Pitch, LoopIsSeamless) {
  for (const int rate : {44100, 22000, 32000}) {
    JpsSound& loop = sine(rate / 50.0, 0.8, {2, 16, rate}, 350);
    loop.loop = 1;
    jpsdrvr_play(&loop, 5);
    render(1024);
    EXPECT_LE(purity(render(22050).left, rate / 50.0), -65) << rate;
    jpsdrvr_set_frequency(5, rate * 5 / 4);
    render(1024);
    EXPECT_LE(purity(render(22050).left, rate / 40.0), -65) << rate;
  }
}

TEST_F(Pitch, ShortestSoundsPlayAtTheFastestRate) {
  JpsSound& click = wave([](int) { return 0.5; }, 1, {1, 8, 100});
  jpsdrvr_play(&click, 0);
  EXPECT_GT(peak(render(400).left), 1000) << "one frame of 10 ms";
  jpsdrvr_play(&click, 0);
  jpsdrvr_set_frequency(0, 100000);
  render(512);
  EXPECT_EQ(jpsdrvr_is_playing(0), 0);
  click.loop = 1;
  jpsdrvr_play(&click, 0);
  jpsdrvr_set_frequency(0, 100000);
  render(512);
  EXPECT_EQ(steepest(render(4096).left), 0) << "one frame in a loop is a constant";
}

// The gain of a filter's first phase at a frequency, in periods a frame.
double gain(const ResampleFilter& filter, double frequency) {
  double sum = 0;
  for (int tap = 0; tap < filter.taps; ++tap) {
    const int distance = tap - (filter.taps / 2 - 1);
    sum += filter.rows[tap] * std::cos(2 * std::numbers::pi * frequency * distance);
  }
  return sum;
}

// At 0.92 of what the output can hold it is down to a half.
TEST(Resampler, FilterOfEachRatioEndsBelowTheOutputsLimit) {
  resample_prepare();
  for (int eighths = 0; eighths <= 11; ++eighths) {
    const std::uint64_t step = RESAMPLE_SAME_RATE + RESAMPLE_SAME_RATE / 8 * eighths;
    const double limit = 0.5 / (1 + eighths / 8.0);
    const ResampleFilter filter = resample_filter(step);
    EXPECT_NEAR(gain(filter, 0.92 * limit), 0.5, 0.06) << eighths;
    EXPECT_NEAR(gain(filter, 0), 1, 1e-5) << eighths;
    if (eighths == 0) continue;
    EXPECT_EQ(resample_filter(step - 1).rows, filter.rows)
        << "a ratio between two has the lower limit";
    EXPECT_NE(resample_filter(step - RESAMPLE_SAME_RATE / 8).rows, filter.rows);
  }
}

}  // namespace
