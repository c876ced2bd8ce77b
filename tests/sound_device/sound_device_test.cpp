// The real device, through SDL's driver that writes to a file in real time: it is unplugged by
// removing the file's folder or limiting the file's size. And what replaces a missing device.
#include "platform/sound_device.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/environment.h"
#include "platform/files.h"
#include "platform/sound_backends.h"
#include "platform/thread.h"
#include "sound/driver.h"
#include "tests/temp_folder.h"

void jps_update_all() {}

namespace {

using Clock = std::chrono::steady_clock;

std::atomic<int> pulled_frames{0};
std::atomic<int> pulling{0};  // threads in the callback

// Numbers the frames.
void count_up(std::int16_t* out, int frames) {
  EXPECT_EQ(pulling.fetch_add(1), 0) << "two threads pull at once";
  const int first = pulled_frames;
  for (int i = 0; i < frames; ++i) {
    out[2 * i] = static_cast<std::int16_t>((first + i) & 0x7FFF);
    out[2 * i + 1] = static_cast<std::int16_t>(-out[2 * i]);
  }
  pulled_frames = first + frames;
  pulling.fetch_sub(1);
}

bool wait_for(const std::function<bool()>& done, int bound_ms = 60'000) {
  const auto end = Clock::now() + std::chrono::milliseconds(bound_ms);
  while (!done() && Clock::now() < end) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  return done();
}

struct SoundDevice : testing::Test {
  SoundDevice() {
    files_use_roots(folder.path(), folder.path());
    plug_in();
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", path.c_str(), 1);
    unsetenv("SDL_AUDIO_DEVICE_NAME");
    std::signal(SIGXFSZ, SIG_IGN);
    pulled_frames = 0;
    environment = Environment{};
  }
  ~SoundDevice() override {
    limit_files(RLIM_INFINITY);
    environment = Environment{};
  }

  static void limit_files(rlim_t bytes) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  void plug_in() const { std::filesystem::create_directories(folder.file("loudspeaker")); }
  void unplug() const { std::filesystem::remove_all(folder.file("loudspeaker")); }

  // Without the silence at the start.
  [[nodiscard]] std::vector<std::int16_t> played() const {
    const std::string bytes = folder.read("loudspeaker/raw");
    std::vector<std::int16_t> samples(bytes.size() / 4 * 2);
    std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    const auto first = std::find_if(samples.begin(), samples.end(), [](int x) { return x != 0; });
    return {first - (first - samples.begin()) % 2, samples.end()};
  }

  TempFolder folder;
  std::string path = folder.file("loudspeaker/raw");
};

TEST_F(SoundDevice, PlaysWhatTheCallbackReturns) {
  testing::internal::CaptureStdout();
  ASSERT_TRUE(sound_device_open(count_up));
  EXPECT_TRUE(wait_for([] { return pulled_frames > 4096; }));
  sound_device_close();
  EXPECT_EQ(testing::internal::GetCapturedStdout().rfind("picked device ", 0), 0U);
  const std::vector<std::int16_t> samples = played();
  ASSERT_GE(samples.size(), 2 * 4000U);
  for (std::size_t i = 0; i < 4000; ++i) {
    ASSERT_EQ(samples[2 * i], static_cast<int>(i + 1));
    ASSERT_EQ(samples[2 * i + 1], -static_cast<int>(i + 1));
  }
  const int at_end = pulled_frames;
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  EXPECT_EQ(pulled_frames, at_end) << "called after close";
}

int processors() {
  cpu_set_t set;
  CPU_ZERO(&set);
  sched_getaffinity(0, sizeof set, &set);
  return CPU_COUNT(&set);
}

// The main thread, which draws, is pinned to one processor.
TEST_F(SoundDevice, CallbackRunsOnAnyProcessorThoughOpenerIsPinned) {
  static std::atomic<int> callbacks_processors;
  const int all = processors();
  const auto note = [](std::int16_t* out, int frames) {
    std::fill_n(out, frames * 2, std::int16_t{0});
    callbacks_processors = processors();
  };
  testing::internal::CaptureStdout();
  for (const bool pinned : {true, false}) {
    callbacks_processors = 0;
    if (pinned) thread_pin_to_one_processor();
    ASSERT_TRUE(sound_device_open(note));
    EXPECT_EQ(processors(), pinned ? 1 : all) << "the opener stays pinned";
    EXPECT_TRUE(wait_for([] { return callbacks_processors != 0; }));
    EXPECT_EQ(callbacks_processors, all);
    sound_device_close();
    thread_unpin();
  }
  testing::internal::GetCapturedStdout();
}

TEST_F(SoundDevice, CallbackRunsInRealTimeWithoutADevice) {
  unplug();
  for (const char* driver : {"disk", "nothing"}) {
    setenv("SDL_AUDIODRIVER", driver, 1);
    pulled_frames = 0;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    EXPECT_TRUE(sound_device_open(count_up));
    EXPECT_TRUE(wait_for([] { return pulled_frames > 2048; }));
    sound_device_close();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(told.rfind("There is no sound device (", 0), 0U) << told;
    EXPECT_EQ(told.find('\n'), told.size() - 1) << "one line";
  }
  const int at_end = pulled_frames;
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  EXPECT_EQ(pulled_frames, at_end) << "called after close";
}

TEST_F(SoundDevice, NoneAndSocketDoNotOpenTheDevice) {
  environment.sound = SOUND_NONE;
  for (const char* socket : {"", "/nowhere/sound"}) {
    environment.sound_socket = socket;
    pulled_frames = 0;
    testing::internal::CaptureStdout();
    EXPECT_EQ(jpsdrvr_init(), 0);
    EXPECT_EQ(jpsdrvr_stop(0), 0);
    jpsdrvr_shutdown();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(std::filesystem::exists(path));
  }
}

TEST(SoundPace, BlocksAreDueAtTheSampleRateExceptAfterLongDelays) {
  constexpr std::int64_t START_US = 77'000'000'000'000;
  SoundPace pace(START_US);
  int blocks = 0;
  for (std::int64_t us = 0; us < 10'000'000; us += 1000) {
    while (pace.take(START_US + us)) ++blocks;
    EXPECT_GT(pace.due_us(), START_US + us);
  }
  EXPECT_EQ(blocks, 10 * SOUND_RATE_HZ / SOUND_BLOCK_FRAMES + 1) << "the first is due at once";
  // 400 ms late are caught up with, ten seconds are not.
  std::int64_t now_us = START_US + 10'400'000;
  for (blocks = 0; pace.take(now_us); ++blocks) {
  }
  EXPECT_NEAR(blocks, 400'000 / 11'610, 1);
  now_us += 10'000'000;
  EXPECT_TRUE(pace.take(now_us));
  EXPECT_FALSE(pace.take(now_us));
  EXPECT_EQ(pace.due_us(), now_us + 11'609);
}

// The cabinet's end of the socket.
struct Listener {
  explicit Listener(const std::string& path) : listener(socket(AF_UNIX, SOCK_SEQPACKET, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    EXPECT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(listener, 1), 0);
    const timeval bound{10, 0};  // of accept
    setsockopt(listener, SOL_SOCKET, SO_RCVTIMEO, &bound, sizeof bound);
  }
  ~Listener() {
    hang_up();
    close(listener);
  }
  void accept_one() { connection = accept(listener, nullptr, nullptr); }
  void hang_up() {
    if (connection >= 0) close(connection);
    connection = -1;
  }
  // The next packet; false after a second without one.
  bool take() {
    const timeval bound{1, 0};
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &bound, sizeof bound);
    char bytes[4096];
    const ssize_t size = recv(connection, bytes, sizeof bytes, 0);
    if (size < static_cast<ssize_t>(sizeof head)) return false;
    std::memcpy(&head, bytes, sizeof head);
    samples.resize((static_cast<std::size_t>(size) - sizeof head) / 2);
    std::memcpy(samples.data(), bytes + sizeof head, samples.size() * 2);
    return true;
  }
  int listener, connection = -1;
  SoundPacketHead head{};
  std::vector<std::int16_t> samples;
};

TEST_F(SoundDevice, SocketGetsWholeBlocksInOrder) {
  environment.sound = SOUND_SOCKET;
  environment.sound_socket = folder.file("sound");
  Listener listener(environment.sound_socket);
  ASSERT_TRUE(sound_device_open(count_up));
  listener.accept_one();
  std::int64_t frame = -1, time_us = 0;
  for (int i = 0; i < 20; ++i) {
    ASSERT_TRUE(listener.take());
    EXPECT_TRUE(i == 0 || listener.head.frame == frame) << "block " << i;
    EXPECT_GT(listener.head.time_us, time_us);
    ASSERT_EQ(listener.head.frames, SOUND_BLOCK_FRAMES);
    ASSERT_EQ(listener.samples.size(), SOUND_BLOCK_FRAMES * 2U);
    for (int at = 0; at < SOUND_BLOCK_FRAMES; ++at) {
      ASSERT_EQ(listener.samples[2 * at], (listener.head.frame + at) & 0x7FFF);
      ASSERT_EQ(listener.samples[2 * at + 1], -listener.samples[2 * at]);
    }
    frame = listener.head.frame + listener.head.frames;
    time_us = listener.head.time_us;
  }
  sound_device_close();
}

// An hour of sound for a listener that reads nothing. The times are the test's own.
TEST_F(SoundDevice, SlowListenerLosesBlocksAndNewListenerIsFound) {
  const std::vector<std::int16_t> block(SOUND_BLOCK_FRAMES * 2, 7);
  std::int64_t frame = 0, time_us = 0;
  SoundSocket sound(folder.file("sound"));
  const auto send = [&](int blocks) {
    for (int i = 0; i < blocks; ++i, frame += SOUND_BLOCK_FRAMES, time_us += 11'610) {
      sound.send(frame, time_us, block.data(), SOUND_BLOCK_FRAMES);
    }
  };
  send(3);  // no listener yet
  {
    Listener listener(folder.file("sound"));
    send(310'000);
    listener.accept_one();
    std::int64_t taken = 0;
    ASSERT_TRUE(listener.take());
    EXPECT_GT(listener.head.frame, 0);
    for (; listener.head.frame + SOUND_BLOCK_FRAMES < frame && taken < 5000; ++taken) {
      if (taken % 50 == 0) send(1);
      const std::int64_t before = listener.head.frame;
      ASSERT_TRUE(listener.take());
      EXPECT_EQ(listener.head.frame % SOUND_BLOCK_FRAMES, 0);
      EXPECT_GT(listener.head.frame, before);
    }
    EXPECT_LT(taken, 5000) << "the rest is dropped";
  }
  std::filesystem::remove(folder.file("sound"));
  send(30);  // gone
  Listener other(folder.file("sound"));
  send(30);
  other.accept_one();
  ASSERT_TRUE(other.take());
  EXPECT_EQ(other.samples, block);
}

TEST_F(SoundDevice, UnknownDeviceNameIsReportedAndIgnored) {
  // This driver takes any name for that of its file.
  setenv("SDL_AUDIO_DEVICE_NAME", folder.file("nowhere/raw").c_str(), 1);
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  const auto start = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());  // the other name is relative
  EXPECT_TRUE(sound_device_open(count_up));
  sound_device_close();
  std::filesystem::current_path(start);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "picked device System audio output device\n");
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_NE(said.find("SDL_AUDIO_DEVICE_NAME="), std::string::npos);
  EXPECT_NE(said.find("\n  System audio output device\n"), std::string::npos) << said;

  setenv("SDL_AUDIO_DEVICE_NAME", path.c_str(), 1);
  testing::internal::CaptureStdout();
  EXPECT_TRUE(sound_device_open(count_up));
  sound_device_close();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "picked device " + path + "\n");
}

// What standard error says, to be read while it is said.
class Said {
 public:
  explicit Said(std::string path) : path_(std::move(path)), before_(dup(STDERR_FILENO)) {
    const int file = open(path_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    dup2(file, STDERR_FILENO);
    close(file);
  }
  ~Said() {
    dup2(before_, STDERR_FILENO);
    close(before_);
  }
  Said(const Said&) = delete;
  Said& operator=(const Said&) = delete;

  [[nodiscard]] int times(const std::string& line) const {
    std::ifstream stream(path_);
    int count = 0;
    for (std::string one; std::getline(stream, one);) count += one == line ? 1 : 0;
    return count;
  }

 private:
  std::string path_;
  int before_;
};

TEST_F(SoundDevice, LostDeviceIsReopenedWhileCallbackGoesOn) {
  const std::string lost = "The sound device is lost. The game looks for it every second.";
  const Said said(folder.file("said"));
  testing::internal::CaptureStdout();
  ASSERT_TRUE(sound_device_open(count_up));
  ASSERT_TRUE(wait_for([] { return pulled_frames > 4096; }));
  unplug();
  limit_files(4096);  // the next write fails
  const bool noticed = wait_for([&] { return pulled_frames > 8192 && said.times(lost) > 0; });
  limit_files(RLIM_INFINITY);
  ASSERT_TRUE(noticed);
  const int lost_at = pulled_frames;
  EXPECT_TRUE(wait_for([=] { return pulled_frames > lost_at + 3 * SOUND_RATE_HZ / 2; }))
      << "the callback goes on, and one retry fails";
  plug_in();
  ASSERT_TRUE(wait_for([this] { return played().size() > 8192; })) << "it plays again";
  sound_device_close();
  const std::string picked = testing::internal::GetCapturedStdout();
  EXPECT_NE(picked.find("picked device", 1), std::string::npos) << picked;
  EXPECT_EQ(said.times(lost), 1);
  const std::vector<std::int16_t> samples = played();
  for (std::size_t i = 1; i < 4096; ++i) {
    ASSERT_EQ((samples[2 * i] - samples[2 * i - 2]) & 0x7FFF, 1) << "frame " << i;
  }
}

// Two looped streams for three seconds through the real device and the real transition thread, with
// more busy threads than processors. Every sample is compared.
TEST_F(SoundDevice, StreamsKeepUpUnderLoad) {
  constexpr std::size_t FRAMES = 3 * SOUND_RATE_HZ;
  ASSERT_EQ(jpsdrvr_init(), 0);
  std::mt19937 random(3);
  std::string files[2];
  JpsSound sounds[2] = {};
  for (int side = 0; side < 2; ++side) {
    for (int i = 0; i < 100'003; ++i) {
      const auto noise = static_cast<std::int16_t>(i == 0 ? 0 : random());
      const std::int16_t frame[2] = {side == 0 ? noise : std::int16_t{0},
                                     side == 1 ? noise : std::int16_t{0}};
      files[side].append(reinterpret_cast<const char*>(frame), sizeof frame);
    }
    folder.write(std::to_string(side), files[side]);
    sounds[side].streamed = sounds[side].loop = 1;
    sounds[side].file = read_open(std::to_string(side).c_str());
    const auto size = static_cast<std::uint32_t>(files[side].size());
    ASSERT_EQ(jpsdrvr_create_buffer({1, 2, 44100, 176400, 4, 16}, size, sounds[side]), 0);
  }
  std::atomic<bool> burn{true};
  std::vector<std::thread> burners;
  for (unsigned i = 0; i < 2 * std::thread::hardware_concurrency(); ++i) {
    burners.emplace_back([&burn] {
      while (burn.load(std::memory_order_relaxed)) {
      }
    });
  }
  jpsdrvr_set_master_volume(255);
  const std::size_t silent_bytes = std::filesystem::file_size(path);
  {
    const SoundLock both_at_once;
    for (int track = 0; track < 2; ++track) {
      jpsdrvr_set_volume(track, 255);
      jpsdrvr_play(&sounds[track], track);
    }
  }
  EXPECT_TRUE(wait_for(
      [&] { return std::filesystem::file_size(path) > silent_bytes + (FRAMES + 9000) * 4; }));
  burn = false;
  for (std::thread& burner : burners) burner.join();
  for (JpsSound& sound : sounds) jpsdrvr_free_sound(sound);
  jpsdrvr_shutdown();

  const std::vector<std::int16_t> samples = played();
  for (int side = 0; side < 2; ++side) {
    // The first frame of each file is silent and the second isn't.
    std::size_t start = 0;
    while (start < samples.size() / 2 && samples[2 * start + side] == 0) ++start;
    for (std::size_t i = 0; i < FRAMES; ++i) {
      std::int16_t expected = 0;
      std::memcpy(&expected, files[side].data() + (i + 1) * 4 % files[side].size() + 2 * side, 2);
      ASSERT_EQ(samples[2 * (start + i) + side], expected) << "side " << side << " frame " << i;
    }
  }
}

}  // namespace
