// Tracks, duplicates, refused calls, and a machine without sound.
#include <malloc.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <thread>
#include <vector>

#include "platform/files.h"
#include "platform/headless/sound_capture.h"
#include "tests/sound_driver/studio.h"

namespace {

using Driver = Studio;

TEST_F(Driver, SameSoundOnTwoTracksSharesItsSamples) {
  JpsSound& tone = sine(1000, 0.25);
  jpsdrvr_play(&tone, 0);
  jpsdrvr_play(&tone, 1);
  JpsSound* row = jpsdrvr_track(1).sound;
  ASSERT_NE(row, &tone);
  EXPECT_EQ(row->buffer, tone.buffer) << "the samples are shared";
  EXPECT_EQ(row->key, tone.key);
  EXPECT_EQ(row->track, 1);
  render(1024);
  EXPECT_NEAR(level_at(render(8820).left, 1000), 0.5 * 32767, 10) << "both play";
  EXPECT_EQ(jpsdrvr_stop(1), 0);
  EXPECT_EQ(row->buffer, nullptr);
  render(1024);
  EXPECT_NEAR(level_at(render(8820).left, 1000), 0.25 * 32767, 5);
  EXPECT_EQ(jpsdrvr_play(&tone, 1), 0);
  EXPECT_EQ(jpsdrvr_track(1).sound, row) << "the row is free again";
  EXPECT_EQ(jpsdrvr_play(&tone, 0), 0);
  EXPECT_EQ(jpsdrvr_track(0).sound, &tone) << "on its own track the sound itself restarts";
}

TEST_F(Driver, FinishedSoundLeavesItsTrack) {
  JpsSound& tone = sine(1000, 0.5, {}, 4410);
  jpsdrvr_play(&tone, 9);
  EXPECT_EQ(jpsdrvr_is_playing(9), 1) << "before the first block too";
  render(4400);
  EXPECT_EQ(jpsdrvr_is_playing(9), 1);
  render(512);
  EXPECT_EQ(jpsdrvr_track(9).sound, &tone);
  EXPECT_EQ(jpsdrvr_is_playing(9), 0);
  EXPECT_EQ(jpsdrvr_track(9).sound, nullptr);
}

// Without a call of jpsdrvr_is_playing in between.
TEST_F(Driver, FinishedSoundStartsOnAnotherTrack) {
  for (const bool streamed : {false, true}) {
    JpsSound& tone = wave([](int i) { return 0.5 * std::sin(i * 0.1); }, 4410, {}, streamed);
    jpsdrvr_play(&tone, 2);
    std::vector<std::int16_t> out(2 * 8000);
    const SoundLock held;
    sound_capture_render(8000, out.data());
    ASSERT_EQ(jpsdrvr_play(&tone, 3), 0);
    EXPECT_EQ(jpsdrvr_track(2).sound, nullptr);
    EXPECT_EQ(jpsdrvr_track(3).sound, &tone);
    EXPECT_EQ(jpsdrvr_is_playing(3), 1);
  }
}

// What each call for a track returns, in a row.
std::vector<int> answers(JpsSound& sound, int track) {
  return {jpsdrvr_play(&sound, track),        jpsdrvr_stop(track),
          jpsdrvr_set_volume(track, 200),     jpsdrvr_set_pan(track, 0),
          jpsdrvr_set_frequency(track, 1000), jpsdrvr_get_frequency(track),
          jpsdrvr_is_playing(track)};
}

TEST_F(Driver, RefusesBadArgumentsAndFormats) {
  JpsSound& tone = sine(1000, 0.5);
  JpsSound none{};
  EXPECT_EQ(jpsdrvr_play(nullptr, 0), -1);
  EXPECT_EQ(jpsdrvr_play(&none, 0), -1);
  EXPECT_EQ(jpsdrvr_free_sound(none), -1);
  for (const int track : {-1, 16}) EXPECT_EQ(answers(tone, track), std::vector<int>(7, -1));
  // Once it is stopped there is nothing to change and no sound whose rate could be told.
  EXPECT_EQ(answers(tone, 0), (std::vector<int>{0, 0, 0, 0, 0, -1, 0}));
  EXPECT_EQ(jpsdrvr_stop(0), 0) << "nothing to stop";

  folder.write("short", "1234567");
  none.file = read_open("short");
  const JpsWaveFormat good = {1, 2, 44100, 176400, 4, 16};
  EXPECT_EQ(jpsdrvr_create_buffer(good, 8, none), -1) << "the file is shorter than it says";
  EXPECT_EQ(jpsdrvr_create_buffer(good, 3, none), -1) << "not one frame";
  for (JpsWaveFormat bad : {JpsWaveFormat{3, 2, 44100, 352800, 8, 32},
                            {1, 3, 44100, 0, 6, 16},
                            {1, 2, 44100, 0, 6, 24},
                            {1, 2, 99, 0, 4, 16},
                            {1, 2, 100001, 0, 4, 16},
                            {0x55, 2, 44100, 0, 1, 0}}) {
    EXPECT_EQ(jpsdrvr_create_buffer(bad, 4, none), -1);
  }
  EXPECT_EQ(none.buffer, nullptr);
  read_close(none.file);
}

TEST_F(Driver, FreedSoundFadesOutOnAllItsTracks) {
  JpsSound& tone = sine(1000, 0.25);
  jpsdrvr_play(&tone, 0);
  jpsdrvr_play(&tone, 1);
  render(1000);
  EXPECT_EQ(jpsdrvr_free_sound(tone), 0);
  EXPECT_EQ(jpsdrvr_track(0).sound, nullptr);
  EXPECT_EQ(jpsdrvr_track(1).sound, nullptr);
  const Samples fading = render(512).left;
  EXPECT_GT(peak(fading), 1000) << "the samples live until it has faded out";
  EXPECT_EQ(peak(render(512).left), 0);
  EXPECT_EQ(jpsdrvr_free_sound(tone), -1);
}

TEST_F(Driver, FreedSoundsGiveTheirMemoryBack) {
  std::size_t in_use[6];
  for (std::size_t& bytes : in_use) {
    JpsSound& tone = sine(1000, 0.25, {}, 500'000);  // 2 MB
    jpsdrvr_play(&tone, 0);
    render(1000);
    jpsdrvr_free_sound(tone);
    render(512);
    const auto memory = mallinfo2();
    bytes = memory.uordblks + memory.hblkhd;
  }
  EXPECT_LT(in_use[5], in_use[1] + 1'000'000);
}

TEST(NoDevice, EveryCallReturnsMinusOne) {
  sound_capture_plug(false);
  testing::internal::CaptureStdout();
  EXPECT_NE(jpsdrvr_init(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "jpsdrvr_init(): ERROR! Couldn't create dsound interface\n");
  JpsSound sound{};
  EXPECT_EQ(jpsdrvr_create_buffer({1, 2, 44100, 176400, 4, 16}, 4, sound), -1);
  EXPECT_EQ(answers(sound, 0), std::vector<int>(7, -1));
  EXPECT_EQ(jpsdrvr_set_master_volume(255), -1);
  jpsdrvr_shutdown();
  sound_capture_plug(true);
  EXPECT_EQ(jpsdrvr_init(), 0) << "works once there is a device";
  jpsdrvr_shutdown();
  EXPECT_FALSE(sound_capture_is_open());
  EXPECT_EQ(jpsdrvr_stop(0), -1);
}

// The device mixes while two threads start, stop and change sounds at random. When all have
// stopped, there is silence.
TEST_F(Driver, CallsMayRaceWithTheMixing) {
  for (int i = 0; i < 6; ++i) {
    wave([](int n) { return 0.5 * std::sin(n * 0.05); }, 3000 + 40'000 * (i % 2), {}, i % 2 == 1,
         i % 3 == 0);
  }
  std::vector<JpsSound*> all;
  for (JpsSound& one : sounds) all.push_back(&one);
  std::atomic<bool> stop{false};
  std::thread device([&stop] {
    std::int16_t block[2 * 512];
    while (!stop) {
      sound_capture_render(512, block);
      // The driver's thread runs at a real-time priority; without a rest here it never sleeps.
      std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
  });
  const auto play_about = [&all](unsigned seed) {
    std::mt19937 random(seed);
    for (int i = 0; i < 20'000; ++i) {
      const int track = static_cast<int>(random() % JPS_TRACKS);
      const unsigned deed = random() % 6;
      if (deed <= 1) jpsdrvr_play(all[random() % all.size()], track);
      if (deed == 2) jpsdrvr_stop(track);
      if (deed == 3) jpsdrvr_set_volume(track, static_cast<int>(random() % 256));
      if (deed == 4) jpsdrvr_set_frequency(track, static_cast<int>(100 + random() % 99'901));
      if (deed == 5) jpsdrvr_is_playing(track);
    }
  };
  testing::internal::CaptureStdout();  // warnings, since the device mixes too fast for streams
  std::thread one(play_about, 1), other(play_about, 2);
  one.join();
  other.join();
  for (JpsSound& sound : sounds) EXPECT_EQ(jpsdrvr_free_sound(sound), 0);
  stop = true;
  device.join();
  testing::internal::GetCapturedStdout();
  render(1024);
  EXPECT_EQ(peak(render(1024).left), 0);
}

}  // namespace
