// The software mixer and two libraries that could take its place, in one run; and the cost of
// starting a sound while many others play.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <list>
#include <numbers>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "platform/files.h"
#include "platform/headless/sound_capture.h"
#include "sound/driver.h"
#include "sound/mixer.h"
#ifdef BENCH_SDL_MIXER
#include <SDL2/SDL.h>
#include <SDL2/SDL_mixer.h>
#endif
#ifdef BENCH_OPENAL
#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>
#endif

void jps_update_all() {}

#ifdef BENCH_SDL_MIXER
namespace {
SDL_AudioSpec captured;
}

// The library mixes only for a device. This replaces SDL's call that opens one, so that the
// benchmark can call the mixing as fast as it goes.
extern "C" SDL_AudioDeviceID SDL_OpenAudioDevice(const char* /*device*/, int /*capture*/,
                                                 const SDL_AudioSpec* wanted,
                                                 SDL_AudioSpec* obtained, int /*changes*/) {
  captured = *wanted;
  if (obtained != nullptr) *obtained = *wanted;
  return 1000;
}
#endif

namespace {

constexpr int SECOND = 44100;  // frames of output
constexpr int BLOCK = 512;     // frames the device asks for at a time
constexpr int VOICES = 16;
constexpr int SOURCE_HZ = 44100;

// Each voice at a rate of its own, up to half an octave from the output's.
int voice_hz(int voice, bool resampled) {
  return resampled ? 31'000 + 1'900 * voice : SOURCE_HZ;
}

// A second of two tones, 16-bit stereo.
std::vector<std::int16_t> stereo_second() {
  std::vector<std::int16_t> samples;
  for (int i = 0; i < SECOND; ++i) {
    const double angle = 2 * std::numbers::pi * i / SECOND;
    samples.push_back(static_cast<std::int16_t>(2000 * std::sin(440 * angle)));
    samples.push_back(static_cast<std::int16_t>(2000 * std::sin(660 * angle)));
  }
  return samples;
}

using Block = std::array<std::int16_t, BLOCK * 2>;

// Silence would be mixed faster.
void check_loudness(benchmark::State& state, const Block& block) {
  const auto [low, high] = std::minmax_element(block.begin(), block.end());
  if (*high - *low < 2000) state.SkipWithError("nothing to hear in the mix");
}

// Sixteen looped voices; one pass mixes a second of them, so 1 ms is 0.1 % of a core.
void our_mixer(benchmark::State& state) {
  const std::vector<std::int16_t> samples = stereo_second();
  mixer_reset();
  const SampleSource source = {
      reinterpret_cast<const std::byte*>(samples.data()), nullptr, nullptr, SECOND, 2, 2, true};
  for (int voice = 0; voice < VOICES; ++voice) {
    voice_set_level(voice, -600, voice * 100);
    voice_start(voice, source, voice_hz(voice, state.range(0) != 0));
  }
  Block block{};
  for (auto _ : state) {
    for (int done = 0; done < SECOND; done += BLOCK) mixer_render(block.data(), BLOCK);
    benchmark::DoNotOptimize(block);
  }
  check_loudness(state, block);
  for (int voice = 0; voice < VOICES; ++voice) voice_stop(voice);
  mixer_render(block.data(), BLOCK);
}
BENCHMARK(our_mixer)->ArgName("resampled")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

#ifdef BENCH_OPENAL
// The same through a loopback device, with the resampler of this number. The library's default is
// linear interpolation.
void openal_soft(benchmark::State& state) {
  const auto open = reinterpret_cast<LPALCLOOPBACKOPENDEVICESOFT>(
      alcGetProcAddress(nullptr, "alcLoopbackOpenDeviceSOFT"));
  const auto render =
      reinterpret_cast<LPALCRENDERSAMPLESSOFT>(alcGetProcAddress(nullptr, "alcRenderSamplesSOFT"));
  ALCdevice* device = open(nullptr);
  const ALCint attributes[] = {ALC_FORMAT_CHANNELS_SOFT,
                               ALC_STEREO_SOFT,
                               ALC_FORMAT_TYPE_SOFT,
                               ALC_SHORT_SOFT,
                               ALC_FREQUENCY,
                               SECOND,
                               ALC_HRTF_SOFT,
                               ALC_FALSE,
                               0};
  ALCcontext* context = alcCreateContext(device, attributes);
  alcMakeContextCurrent(context);
  const std::vector<std::int16_t> samples = stereo_second();
  ALuint buffer = 0;
  alGenBuffers(1, &buffer);
  alBufferData(buffer, AL_FORMAT_STEREO16, samples.data(), static_cast<ALsizei>(samples.size() * 2),
               SOURCE_HZ);
  std::array<ALuint, VOICES> sources{};
  alGenSources(VOICES, sources.data());
  for (int voice = 0; voice < VOICES; ++voice) {
    const double hz = voice_hz(voice, state.range(0) != 0);
    alSourcei(sources[voice], AL_BUFFER, static_cast<ALint>(buffer));
    alSourcei(sources[voice], AL_LOOPING, AL_TRUE);
    alSourcef(sources[voice], AL_GAIN, 0.5F);
    alSourcef(sources[voice], AL_PITCH, static_cast<float>(hz / SOURCE_HZ));
    alSourcei(sources[voice], AL_SOURCE_RESAMPLER_SOFT, static_cast<ALint>(state.range(1)));
    alSourcePlay(sources[voice]);
  }
  const auto name = reinterpret_cast<LPALGETSTRINGISOFT>(alGetProcAddress("alGetStringiSOFT"));
  state.SetLabel(name(AL_RESAMPLER_NAME_SOFT, static_cast<ALsizei>(state.range(1))));
  Block block{};
  for (auto _ : state) {
    for (int done = 0; done < SECOND; done += BLOCK) render(device, block.data(), BLOCK);
    benchmark::DoNotOptimize(block);
  }
  if (alGetError() != AL_NO_ERROR) state.SkipWithError("OpenAL says there was an error");
  check_loudness(state, block);
  alcMakeContextCurrent(nullptr);
  alcDestroyContext(context);
  alcCloseDevice(device);
}
BENCHMARK(openal_soft)
    ->ArgNames({"resampled", "resampler"})
    ->Args({0, 1})
    ->Args({1, 1})
    ->Args({1, 2})
    ->Args({1, 3})
    ->Args({1, 4})
    ->Unit(benchmark::kMillisecond);
#endif

#ifdef BENCH_SDL_MIXER
// This library converts sounds to the output's rate when they are loaded. Another pitch needs
// another conversion: the resampled passes do one for each voice and second.
void sdl_mixer(benchmark::State& state) {
  if (Mix_OpenAudioDevice(SECOND, AUDIO_S16SYS, 2, BLOCK, nullptr, 0) != 0) {
    state.SkipWithError(SDL_GetError());
    return;
  }
  Mix_AllocateChannels(VOICES);
  const std::vector<std::int16_t> samples = stereo_second();
  const auto size = static_cast<std::uint32_t>(samples.size() * 2);
  std::array<std::vector<std::uint8_t>, VOICES> sounds;
  const auto load = [&](int voice) {
    SDL_AudioCVT cvt;
    const int hz = voice_hz(voice, state.range(0) != 0);
    SDL_BuildAudioCVT(&cvt, AUDIO_S16SYS, 2, hz, AUDIO_S16SYS, 2, SECOND);
    // The part that the voice plays in a second.
    cvt.len = static_cast<int>(std::min<std::int64_t>(size, hz * 4LL));
    sounds[voice].resize(static_cast<std::size_t>(size) * cvt.len_mult);
    cvt.buf = sounds[voice].data();
    std::copy_n(reinterpret_cast<const std::uint8_t*>(samples.data()), cvt.len, cvt.buf);
    if (cvt.needed != 0) SDL_ConvertAudio(&cvt);
  };
  for (int voice = 0; voice < VOICES; ++voice) {
    load(voice);
    Mix_Volume(voice, MIX_MAX_VOLUME / 2);
    Mix_PlayChannel(voice, Mix_QuickLoad_RAW(sounds[voice].data(), size), -1);
  }
  Block block{};
  for (auto _ : state) {
    for (int voice = 0; voice < VOICES && state.range(0) != 0; ++voice) load(voice);
    for (int done = 0; done < SECOND; done += BLOCK) {
      captured.callback(captured.userdata, reinterpret_cast<Uint8*>(block.data()), sizeof block);
    }
    benchmark::DoNotOptimize(block);
  }
  check_loudness(state, block);
  Mix_CloseAudio();
}
BENCHMARK(sdl_mixer)->ArgName("resampled")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
#endif

// The driver with a device that calls the mixing in real time.
class Cabinet {
 public:
  Cabinet() : folder_(std::filesystem::temp_directory_path() / "lilyhop-sound-bench") {
    std::filesystem::create_directories(folder_);
    files_use_roots(folder_.string(), folder_.string());
    if (jpsdrvr_init() != 0) std::abort();
    for (int track = 0; track < JPS_TRACKS; ++track) jpsdrvr_set_volume(track, 255);
  }
  ~Cabinet() {
    if (device_.joinable()) stop_and_take();
    for (JpsSound& sound : sounds_) jpsdrvr_free_sound(sound);
    jpsdrvr_shutdown();
    std::filesystem::remove_all(folder_);
  }
  Cabinet(const Cabinet&) = delete;
  Cabinet& operator=(const Cabinet&) = delete;

  JpsSound& sound(const std::vector<std::int16_t>& samples, bool streamed) {
    const std::string name = "sound" + std::to_string(sounds_.size());
    std::ofstream((folder_ / name).string(), std::ios::binary)
        .write(reinterpret_cast<const char*>(samples.data()),
               static_cast<std::streamsize>(samples.size() * 2));
    JpsSound& made = sounds_.emplace_back();
    made.streamed = streamed ? 1 : 0;
    made.loop = 1;
    made.file = read_open(name.c_str());
    const auto size = static_cast<std::uint32_t>(samples.size() * 2);
    if (jpsdrvr_create_buffer({1, 2, SECOND, 4 * SECOND, 4, 16}, size, made) != 0) std::abort();
    return made;
  }

  void pull_in_real_time(int most_seconds) {
    taken_.assign(static_cast<std::size_t>(most_seconds) * SECOND / BLOCK * BLOCK * 2, 0);
    device_ = std::thread([this] {
      const auto start = std::chrono::steady_clock::now();
      for (std::size_t frames = 0; !stop_ && (frames + BLOCK) * 2 <= taken_.size();
           frames += BLOCK) {
        std::this_thread::sleep_until(start +
                                      std::chrono::nanoseconds(frames * 1'000'000'000 / SECOND));
        sound_capture_render(BLOCK, taken_.data() + frames * 2);
      }
    });
  }
  std::vector<std::int16_t> take_all() {
    device_.join();
    return taken_;
  }
  std::vector<std::int16_t> stop_and_take() {
    stop_ = true;
    return take_all();
  }

 private:
  std::filesystem::path folder_;
  std::list<JpsSound> sounds_;
  std::vector<std::int16_t> taken_;
  std::atomic<bool> stop_{false};
  std::thread device_;
};

// The time of a call that starts a sound, while 14 voices and 2 streams play.
void start_a_sound(benchmark::State& state) {
  Cabinet cabinet;
  const std::vector<std::int16_t> second = stereo_second();
  std::vector<std::int16_t> minute;
  for (int i = 0; i < 30; ++i) minute.insert(minute.end(), second.begin(), second.end());
  for (int track = 0; track < JPS_TRACKS; ++track) {
    jpsdrvr_play(&cabinet.sound(track < 2 ? minute : second, track < 2), track);
    if (track >= 2) jpsdrvr_set_frequency(track, voice_hz(track, true));
  }
  JpsSound& next = cabinet.sound(state.range(0) != 0 ? minute : second, state.range(0) != 0);
  cabinet.pull_in_real_time(60);
  std::vector<double> taken_us;
  int track = 2;
  for (auto _ : state) {
    std::this_thread::sleep_for(std::chrono::microseconds(500));
    const auto start = std::chrono::steady_clock::now();
    jpsdrvr_play(&next, track);
    const std::chrono::duration<double, std::micro> taken =
        std::chrono::steady_clock::now() - start;
    taken_us.push_back(taken.count());
    state.SetIterationTime(taken.count() / 1e6);
    track = track == 15 ? 2 : track + 1;
  }
  std::sort(taken_us.begin(), taken_us.end());
  state.counters["median_us"] = taken_us[taken_us.size() / 2];
  state.counters["p99_us"] = taken_us[taken_us.size() * 99 / 100];
  state.counters["worst_us"] = taken_us.back();
}
BENCHMARK(start_a_sound)
    ->ArgName("stream")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Iterations(10'000)
    ->Unit(benchmark::kMicrosecond);

// Two looped streams for so many seconds of real time with every core busy. The output is compared
// with the files.
void streams_under_load(benchmark::State& state) {
  Cabinet cabinet;
  std::mt19937 random(1);
  std::array<std::vector<std::int16_t>, 2> files;
  for (int side = 0; side < 2; ++side) {
    for (int i = 0; i < 300'000 + 40'000 * side; ++i) {
      const auto noise = static_cast<std::int16_t>(i == 0 ? 0 : random());
      files[side].push_back(side == 0 ? noise : std::int16_t{0});
      files[side].push_back(side == 1 ? noise : std::int16_t{0});
    }
    jpsdrvr_play(&cabinet.sound(files[side], true), side);
  }
  std::atomic<bool> burn{true};
  std::vector<std::thread> burners;
  for (unsigned i = 0; i < 2 * std::thread::hardware_concurrency(); ++i) {
    burners.emplace_back([&burn] {
      while (burn) benchmark::ClobberMemory();
    });
  }
  std::vector<std::int16_t> out;
  for (auto _ : state) {
    cabinet.pull_in_real_time(static_cast<int>(state.range(0)));
    out = cabinet.take_all();
  }
  burn = false;
  for (std::thread& burner : burners) burner.join();
  std::int64_t wrong = 0;
  std::size_t first = out.size();
  for (std::size_t i = 0; i < out.size(); ++i) {
    const std::vector<std::int16_t>& file = files[i % 2];
    if (out[i] == file[i % file.size()]) continue;
    first = std::min(first, i);
    ++wrong;
  }
  const std::string told = std::to_string(wrong) + " samples differ from the files, the first at " +
                           std::to_string(static_cast<double>(first / 2) / SECOND) + " s";
  if (wrong != 0) state.SkipWithError(told.c_str());
}
BENCHMARK(streams_under_load)->ArgName("s")->Arg(60)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
