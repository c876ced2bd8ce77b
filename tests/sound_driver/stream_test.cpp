// Streams play the bytes of their file, once or looped, through a ring of 64 KB.
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <future>
#include <numbers>
#include <string>
#include <thread>
#include <vector>

#include "platform/headless/sound_capture.h"
#include "sound/complaints.h"
#include "tests/sound_driver/studio.h"

namespace {
std::atomic<bool> disk_stalls{false};
std::atomic<int> reads_waiting{0};
}  // namespace

// In place of the system's: a disk that can be made to stall.
extern "C" ssize_t pread(int file, void* data, std::size_t size, off_t offset) {
  ++reads_waiting;
  while (disk_stalls) std::this_thread::yield();
  --reads_waiting;
  return syscall(SYS_pread64, file, data, size, offset);
}

namespace {

using Streams = Studio;

constexpr Pcm STEREO_16 = {2, 16, 44100};
constexpr Pcm MONO_8 = {1, 8, 44100};
constexpr Pcm MONO_16 = {1, 16, 44100};
constexpr Pcm STEREO_8 = {2, 8, 44100};

void expect_same(const Take& take, const std::string& bytes, Pcm pcm) {
  const Samples left = heard(bytes, pcm, 0), right = heard(bytes, pcm, 1);
  ASSERT_LE(left.size(), take.left.size());
  for (std::size_t i = 0; i < left.size(); ++i) {
    ASSERT_EQ(take.left[i], left[i]) << "frame " << i << " of " << left.size();
    ASSERT_EQ(take.right[i], right[i]) << "frame " << i << " of " << right.size();
  }
}

TEST_F(Streams, OneShotPlaysItsBytesAndEnds) {
  for (const Pcm pcm : {STEREO_16, MONO_8, MONO_16, STEREO_8}) {
    for (const std::size_t size :
         {65536UL, 65537UL, 65540UL, 98304UL, 131072UL, 400'004UL, 400UL}) {
      const std::string bytes = noise_bytes(size, pcm, 1);
      JpsSound& stream = sound(bytes, pcm, true);
      ASSERT_EQ(stream.buffer_size, JPS_STREAM_BUFFER);
      ASSERT_EQ(jpsdrvr_play(&stream, 4), 0);
      const int frames = static_cast<int>(size) / pcm.frame_bytes();
      const Take take = render(frames + 1200);
      expect_same(take, bytes, pcm);
      for (int i = frames + 64; i < frames + 1200; ++i) ASSERT_EQ(take.left[i], 0) << i;
      EXPECT_EQ(jpsdrvr_track(4).sound, nullptr) << "the event at its end cleans up";
      EXPECT_EQ(stream.notify_event, nullptr);
    }
  }
}

TEST_F(Streams, LoopRepeatsWithoutGap) {
  for (const Pcm pcm : {STEREO_16, MONO_8}) {
    for (const std::size_t size : {65536UL, 65540UL, 65532UL, 32768UL, 131072UL, 100'000UL, 36UL}) {
      std::string bytes = noise_bytes(size, pcm, 2);
      JpsSound& stream = sound(bytes, pcm, true, true);
      ASSERT_EQ(jpsdrvr_play(&stream, 0), 0);
      std::string laps;
      while (laps.size() < 500'000) laps += bytes;
      expect_same(render(static_cast<int>(laps.size()) / pcm.frame_bytes()), laps, pcm);
      EXPECT_EQ(jpsdrvr_is_playing(0), 1);
      jpsdrvr_stop(0);
      render(512);
    }
  }
}

TEST_F(Streams, PartialFrameAtTheEndIsIgnored) {
  const std::string bytes = noise_bytes(70'003, STEREO_16, 3);
  JpsSound& stream = sound(bytes, STEREO_16, true, true);
  EXPECT_EQ(stream.length, 70'000U);
  jpsdrvr_play(&stream, 0);
  const std::string lap = bytes.substr(0, 70'000);
  expect_same(render(52'500), lap + lap + lap, STEREO_16);
}

TEST_F(Streams, ResampledStreamEqualsSoundInMemory) {
  const Pcm pcm = {2, 16, 32000};
  const std::string bytes = noise_bytes(300'000, pcm, 4);
  JpsSound& whole = sound(bytes, pcm, false, true);
  jpsdrvr_play(&whole, 0);
  const Take expected = render(200'000);
  jpsdrvr_stop(0);
  render(512);
  JpsSound& stream = sound(bytes, pcm, true, true);
  jpsdrvr_play(&stream, 0);
  const Take take = render(200'000);
  EXPECT_EQ(take.left, expected.left);
  EXPECT_EQ(take.right, expected.right);
}

TEST_F(Streams, SecondPlayOfAStreamIsIndependent) {
  const std::string bytes = noise_bytes(200'000, MONO_16, 5);
  JpsSound& stream = sound(bytes, MONO_16, true);
  jpsdrvr_set_pan(0, -10000);
  jpsdrvr_set_pan(1, 10000);
  jpsdrvr_play(&stream, 0);
  const Take before = render(30'720);
  jpsdrvr_play(&stream, 1);
  JpsSound* row = jpsdrvr_track(1).sound;
  ASSERT_NE(row, &stream);
  EXPECT_EQ(row->is_duplicate, 1U);
  EXPECT_NE(row->notify, stream.notify);
  EXPECT_NE(row->notify_event, stream.notify_event);
  const Take both = render(100'000);
  const Samples samples = heard(bytes, MONO_16, 0);
  for (int i = 0; i < 60'000; ++i) {
    ASSERT_EQ(both.left[i], samples[30'720 + i]) << i;
    ASSERT_EQ(both.right[i], samples[i]) << i;
  }
  render(512);
  EXPECT_EQ(row->buffer, nullptr) << "finished: the row is free";
  EXPECT_EQ(jpsdrvr_track(0).sound, nullptr);
}

TEST_F(Streams, RestartDoesNotOverwriteWhatFadesOut) {
  JpsSound& stream =
      wave([](int i) { return 0.6 * std::sin(2 * std::numbers::pi * 300 / 44100 * i); }, 44100,
           MONO_16, true, true);
  jpsdrvr_play(&stream, 0);
  Samples all;
  for (int i = 0; i < 300; ++i) {
    const Samples some = render(900 + i % 7 * 100).left;
    all.insert(all.end(), some.begin(), some.end());
    ASSERT_EQ(jpsdrvr_play(&stream, 0), 0) << "start " << i;
  }
  // One fades out as the next begins. Mixed bytes would give steps of up to 39000.
  EXPECT_LE(steepest(all), 2 * 2 * std::numbers::pi * 300 / 44100 * 19661 + 19661.0 / 100);
}

TEST_F(Streams, NotifyPointsRefillAndUpdatePlaylists) {
  JpsSound& stream = sound(noise_bytes(2'000'000, STEREO_16, 6), STEREO_16, true);
  jpsdrvr_play(&stream, 0);
  const std::uint32_t filled = stream.file_pos;
  render(8192 - 512);
  EXPECT_EQ(stream.file_pos, filled);
  EXPECT_EQ(studio_updates, 0);
  render(1024);  // 0x7FFF lies behind
  EXPECT_GT(stream.file_pos, filled + 32000);
  EXPECT_EQ(studio_updates, 1);
  render(8192);
  EXPECT_EQ(studio_updates, 2);
  EXPECT_EQ(stream.write_cursor, (stream.file_pos - stream.data_offset) % JPS_STREAM_BUFFER);
}

TEST_F(Streams, LateRefillIsReportedAndPlayGoesOn) {
  const std::string bytes = noise_bytes(400'000, STEREO_16, 7);
  JpsSound& stream = sound(bytes, STEREO_16, true);
  jpsdrvr_play(&stream, 0);
  jps_complaints_reset();  // other tests may have used up this second's messages
  testing::internal::CaptureStdout();
  std::vector<std::int16_t> out(2 * 17'000);
  {
    const SoundLock held;  // blocks the refill
    sound_capture_render(17'000, out.data());
  }
  jpsdrvr_transition();
  const Samples samples = heard(bytes, STEREO_16, 0);
  EXPECT_EQ(out[2 * 16'900], samples[16'900 - 16'384]) << "the ring repeats old data";
  const Take take = render(80'000);
  jpsdrvr_shutdown();  // waits for the driver's thread, which may print it
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "fill_buffer(): WARNING! not filling fast enough\n");
  EXPECT_GT(peak(take.left), 0);
}

TEST_F(Streams, StartReadsNothingFromTheFile) {
  for (const std::size_t size : {65'536UL, 1'000UL, 400'000UL}) {
    const std::string name = "sound" + std::to_string(sounds.size());
    const std::string bytes = noise_bytes(size, MONO_16, 9);
    JpsSound& stream = sound(bytes, MONO_16, true);
    std::filesystem::resize_file(folder.file(name), 0);
    ASSERT_EQ(jpsdrvr_play(&stream, 0), 0);
    expect_same(render(33'000), bytes.substr(0, JPS_STREAM_BUFFER), MONO_16);
    jpsdrvr_stop(0);
    render(512);
  }
}

// The transition thread waits for the disk. Other threads do not, and what is read late for a
// stopped stream is dropped.
TEST_F(Streams, SlowDiskBlocksNoOtherCall) {
  const std::string bytes = noise_bytes(400'000, STEREO_16, 10);
  JpsSound& stream = sound(bytes, STEREO_16, true);
  const std::function<void()> deeds[] = {
      [] { jpsdrvr_set_volume(5, 200); },
      [&] {
        jpsdrvr_stop(0);
        jpsdrvr_play(&stream, 0);
      },
      [&] { jpsdrvr_free_sound(stream); },
  };
  for (const auto& deed : deeds) {
    jpsdrvr_play(&stream, 0);
    std::vector<std::int16_t> out(2 * 9'000);
    disk_stalls = true;
    sound_capture_render(9'000, out.data());
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (reads_waiting == 0 && std::chrono::steady_clock::now() < end) std::this_thread::yield();
    EXPECT_EQ(reads_waiting, 1);
    const auto done = std::async(std::launch::async, deed);
    EXPECT_EQ(done.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    disk_stalls = false;
    done.wait();
    jpsdrvr_transition();
    if (stream.buffer == nullptr) break;
    const Samples left = render(90'000).left, expected = heard(bytes, STEREO_16, 0);
    for (int i = 128; &deed == &deeds[1] && i < 90'000; ++i) ASSERT_EQ(left[i], expected[i]) << i;
    jpsdrvr_stop(0);
    render(512);
  }
  render(512);
  EXPECT_EQ(peak(render(512).left), 0);
}

TEST_F(Streams, TruncatedFilePlaysSilence) {
  for (const Pcm pcm : {STEREO_8, STEREO_16}) {
    const std::string name = "sound" + std::to_string(sounds.size());
    JpsSound& stream = sound(noise_bytes(400'000, pcm, 8), pcm, true, true);
    jpsdrvr_play(&stream, 0);
    std::filesystem::resize_file(folder.file(name), 1000);
    const Take take = render(400'000);
    EXPECT_EQ(peak(Samples(take.left.begin() + 70'000, take.left.begin() + 90'000)), 0);
    EXPECT_EQ(jpsdrvr_is_playing(0), 1);
    jpsdrvr_stop(0);
  }
}

}  // namespace
