// Volume, pan, and changes of both without clicks.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <iterator>
#include <numbers>
#include <utility>
#include <vector>

#include "platform/headless/sound_capture.h"
#include "tests/sound_driver/studio.h"

namespace {

constexpr double TONE_HZ = 1000;
constexpr double FULL = 32767;

struct Levels : Studio {
  // Decibels below full scale of a full tone, left and right.
  std::pair<double, double> measure() {
    render(1024);  // until the ramps have ended
    const Take take = render(8820);
    return {decibels(level_at(take.left, TONE_HZ) / FULL),
            decibels(level_at(take.right, TONE_HZ) / FULL)};
  }
};

TEST_F(Levels, VolumeStepIsAThirdOfADecibelBelowMaster) {
  JpsSound& tone = sine(TONE_HZ, 1);
  tone.loop = 1;
  ASSERT_EQ(jpsdrvr_play(&tone, 3), 0);
  EXPECT_NEAR(measure().first, 0, 0.01);
  jpsdrvr_set_volume(3, 225);
  EXPECT_NEAR(measure().first, -10, 0.01);
  jpsdrvr_set_volume(3, 128);
  EXPECT_NEAR(measure().first, -42.33, 0.05);
  jpsdrvr_set_volume(3, 0);
  render(1024);
  EXPECT_LE(peak(render(2000).left), 2) << "85 dB down are not quite silence";
  EXPECT_GE(peak(render(2000).left), 1);
  jpsdrvr_set_volume(3, 300);
  EXPECT_EQ(jpsdrvr_track(3).volume, 255) << "clamped to the scale";

  jpsdrvr_set_master_volume(225);
  EXPECT_NEAR(measure().first, -10, 0.01);
  jpsdrvr_set_volume(3, 225);
  EXPECT_NEAR(measure().first, -20, 0.01);
  jpsdrvr_set_master_volume(0);
  jpsdrvr_set_volume(3, 0);
  render(1024);
  EXPECT_EQ(peak(render(2000).left), 0) << "the sum is limited to -100 dB";
}

TEST_F(Levels, PanAttenuatesTheOtherSide) {
  JpsSound& tone = sine(TONE_HZ, 1, {1, 16, 44100});
  tone.loop = 1;
  jpsdrvr_play(&tone, 0);
  for (const int pan : {2000, -2000, 1, -600}) {
    ASSERT_EQ(jpsdrvr_set_pan(0, pan), 0);
    const auto [left, right] = measure();
    EXPECT_NEAR(left, pan > 0 ? -pan / 100.0 : 0, 0.02) << pan;
    EXPECT_NEAR(right, pan < 0 ? pan / 100.0 : 0, 0.02) << pan;
  }
  EXPECT_EQ(jpsdrvr_set_pan(0, 10001), -1);
  EXPECT_EQ(jpsdrvr_set_pan(0, -10001), -1);
  EXPECT_EQ(jpsdrvr_track(0).pan, -600) << "a refused pan changes nothing";
  jpsdrvr_set_pan(0, -10000);
  render(1024);
  EXPECT_EQ(peak(render(2000).right), 0);
}

TEST_F(Levels, TrackKeepsVolumeAndPanBetweenSounds) {
  jpsdrvr_set_volume(7, 225);
  jpsdrvr_set_pan(7, 1000);
  for (int i = 0; i < 2; ++i) {
    JpsSound& tone = sine(TONE_HZ, 1);
    jpsdrvr_play(&tone, 7);
    const auto [left, right] = measure();
    EXPECT_NEAR(left, -20, 0.02);
    EXPECT_NEAR(right, -10, 0.02);
  }
}

TEST_F(Levels, ListedSoundsIgnoreMasterVolume) {
  const std::pair<JpsKey, double> rows[] = {
      {{0x36180000, 0xD3FA4754}, -13.33}, {{0x07460000, 0xBFF05DC7}, 0},
      {{0xCFE10000, 0xCA6D40BD}, 0},      {jps_key("sine100.wav"), 0},
      {jps_key("sine1k.wav"), 0},         {jps_key("any.wav"), -42.33},
  };
  jpsdrvr_set_master_volume(128);
  for (const auto& [key, expected] : rows) {
    JpsSound& tone = sine(TONE_HZ, 1);
    tone.key = key;
    tone.loop = 1;
    jpsdrvr_play(&tone, 1);
    EXPECT_NEAR(measure().first, expected, 0.05);
    jpsdrvr_set_volume(1, 225);
    EXPECT_NEAR(measure().first, expected - 10, 0.15) << "its own volume counts";
    jpsdrvr_set_volume(1, 255);
    jpsdrvr_set_master_volume(128);  // sets all tracks again
    EXPECT_NEAR(measure().first, expected, 0.05);
  }
}

TEST_F(Levels, SumIsClippedAtFullScale) {
  JpsSound& square = wave([](int i) { return i == 0 ? 0 : i / 50 % 2 == 0 ? 1 : -1; }, 5000, {});
  square.loop = 1;
  for (int track = 0; track < JPS_TRACKS; ++track) ASSERT_EQ(jpsdrvr_play(&square, track), 0);
  const Take take = render(5000);
  for (int i = 100; i < 4900; ++i) {
    ASSERT_EQ(take.left[i], i / 50 % 2 == 0 ? 32767 : -32768) << i;
  }
}

// The largest step allowed: twice the tone's own steepest, where one fades out as the next begins,
// and the step of a ramp over 128 frames. Without ramps there would be steps of up to 20000.
TEST_F(Levels, NoChangeClicks) {
  constexpr double AMPLITUDE = 20000;
  const double slope = 2 * std::numbers::pi * 300 / 44100 * AMPLITUDE;
  const double most = 2 * slope + AMPLITUDE / 128 * 1.2;
  const std::pair<const char*, std::function<void(JpsSound&)>> changes[] = {
      {"volume down", [](JpsSound&) { jpsdrvr_set_volume(0, 30); }},
      {"volume up", [](JpsSound&) { jpsdrvr_set_volume(0, 255); }},
      {"pan", [](JpsSound&) { jpsdrvr_set_pan(0, 10000); }},
      {"pan back", [](JpsSound&) { jpsdrvr_set_pan(0, 0); }},
      {"master", [](JpsSound&) { jpsdrvr_set_master_volume(100); }},
      {"master back", [](JpsSound&) { jpsdrvr_set_master_volume(255); }},
      {"frequency", [](JpsSound&) { jpsdrvr_set_frequency(0, 40000); }},
      {"same rate again", [](JpsSound&) { jpsdrvr_set_frequency(0, 44100); }},
      {"start anew", [](JpsSound& tone) { jpsdrvr_play(&tone, 0); }},
      {"twice in a row", [](JpsSound& tone) { jpsdrvr_play(&tone, 0), jpsdrvr_play(&tone, 0); }},
      {"stop", [](JpsSound&) { jpsdrvr_stop(0); }},
  };
  for (const int phase : {0, 37, 73}) {
    JpsSound& tone = wave(
        [](int i) { return AMPLITUDE / FULL * std::sin(2 * std::numbers::pi * 300 / 44100 * i); },
        14700, {});
    tone.loop = 1;
    jpsdrvr_play(&tone, 0);
    Samples whole = render(4000 + phase).left;
    for (const auto& [name, change] : changes) {
      change(tone);
      const Take take = render(1500);
      whole.insert(whole.end(), take.left.begin(), take.left.end());
      EXPECT_LE(steepest(whole), most) << name << ", phase " << phase;
      whole = take.left;
    }
    EXPECT_EQ(peak(render(100).left), 0);
  }
}

// A ramp may end with the first frame of a block.
TEST_F(Levels, RampIsTheSameInBlocksOfAnySize) {
  JpsSound& steady = wave([](int) { return 0.5; }, 4410, {});
  const auto heard_in = [&](const std::vector<int>& blocks) {
    Samples all;
    jpsdrvr_play(&steady, 0);
    for (const int frames : blocks) std::ranges::copy(render(frames).left, std::back_inserter(all));
    jpsdrvr_stop(0);
    render(512);
    return all;
  };
  const Samples whole = heard_in({256});
  const Samples parts = heard_in({63, 100, 93});
  for (std::size_t i = 0; i < whole.size(); ++i) EXPECT_NEAR(parts[i], whole[i], 2) << i;
}

// A constant level, which begins and ends with a step of its own.
TEST_F(Levels, WaveWithoutOwnFadeIsFadedInAndOut) {
  JpsSound& cut = wave([](int) { return 0.6; }, 1000, {});
  jpsdrvr_play(&cut, 0);
  const Take take = render(1200);
  const double top = std::lround(0.6 * 32767);
  EXPECT_LE(steepest(take.left), top / 60);
  for (int i = 64; i < 1000; ++i) ASSERT_EQ(take.left[i], top) << i;
  EXPECT_EQ(take.left[1064], 0);
  EXPECT_EQ(jpsdrvr_is_playing(0), 0);
  // One that ends while it is still faded in fades out from the level that it has reached.
  jpsdrvr_play(&wave([](int) { return 0.6; }, 32, {}), 0);
  const Samples brief = render(200).left;
  EXPECT_GT(brief[31], top / 4);
  EXPECT_NEAR(brief[32], brief[31] * 63 / 64, 1);
  for (const int pan : {-10000, 10000}) {
    jpsdrvr_set_pan(0, pan);
    jpsdrvr_play(&cut, 0);
    const Take panned = render(1200);
    EXPECT_LE(steepest(pan < 0 ? panned.left : panned.right), top / 60);
    EXPECT_EQ(peak(pan < 0 ? panned.right : panned.left), 0) << "nor does its end go to the other";
  }
}

}  // namespace
