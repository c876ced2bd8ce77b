#include <SDL2/SDL.h>
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "platform/clock.h"
#include "platform/sound_backends.h"
#include "platform/thread.h"

namespace {

constexpr int WATCH_MS = 20;     // how often the device is checked
constexpr int REOPEN_MS = 1000;  // between two attempts to open a lost device
constexpr int STALL_MS = 3000;   // a device that asks for nothing this long counts as lost
constexpr int MOST_FRAMES_UNHEARD = 22050;  // at most, after the watch was delayed

struct Device {
  SoundRender render = nullptr;
  SDL_AudioDeviceID id = 0;
  std::shared_ptr<Thread> watch;
  std::atomic<std::uint32_t> blocks{0};  // requested by the device so far
  bool named_one_missing = false;        // has been reported
};

constinit Device state;

void pull(void* /*context*/, Uint8* bytes, int size) {
  state.render(reinterpret_cast<std::int16_t*>(bytes), size / 4);
  state.blocks.fetch_add(1, std::memory_order_relaxed);
}

bool open_named(const char* name) {
  SDL_AudioSpec spec{};
  spec.freq = SOUND_RATE_HZ;
  spec.format = AUDIO_S16SYS;
  spec.channels = 2;
  spec.samples = SOUND_BLOCK_FRAMES;
  spec.callback = pull;
  state.id = SDL_OpenAudioDevice(name, 0, &spec, nullptr, 0);
  return state.id != 0;
}

void say_named_one_missing(const char* wanted) {
  if (state.named_one_missing) return;
  state.named_one_missing = true;
  std::fprintf(stderr, "SDL_AUDIO_DEVICE_NAME=\"%s\": %s. The devices are:\n", wanted,
               SDL_GetError());
  for (int i = 0; i < SDL_GetNumAudioDevices(0); ++i) {
    std::fprintf(stderr, "  %s\n", SDL_GetAudioDeviceName(i, 0));
  }
}

// Another device is better than no sound, so an unknown name is reported and another device opened.
// Without a name, null means the default device. With an unknown name SDL would look at the
// variable itself, so the first device is opened by its name.
bool open_device() {
  const char* wanted = std::getenv("SDL_AUDIO_DEVICE_NAME");
  const char* description = "default";
  char* default_name = nullptr;
  bool opened = false;
  if (wanted != nullptr && *wanted != '\0') {
    description = wanted;
    opened = open_named(wanted);
    if (!opened) {
      say_named_one_missing(wanted);
      description = SDL_GetAudioDeviceName(0, 0);
      opened = description != nullptr && open_named(description);
    }
  } else {
    SDL_AudioSpec ignored{};
    if (SDL_GetDefaultAudioInfo(&default_name, &ignored, 0) == 0 && default_name != nullptr) {
      description = default_name;
    } else if (SDL_GetNumAudioDevices(0) > 0) {
      description = SDL_GetAudioDeviceName(0, 0);
    }
    opened = open_named(nullptr);
  }
  if (opened) {
    std::printf("picked device %s\n", description);
    std::fflush(stdout);
    SDL_PauseAudioDevice(state.id, 0);
  }
  SDL_free(default_name);
  return opened;
}

void close_device() {
  if (state.id != 0) SDL_CloseAudioDevice(state.id);
  state.id = 0;
}

void say_nothing(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                 const char* /*format*/, ...) {}

// ALSA prints a dozen lines about each device that it can't open. SDL reports the result in one.
void silence_alsa() {
  using Handler = void (*)(const char*, int, const char*, int, const char*, ...);
  using SetHandler = int (*)(Handler);
  void* const symbol = dlsym(RTLD_DEFAULT, "snd_lib_error_set_handler");
  if (symbol != nullptr) reinterpret_cast<SetHandler>(symbol)(say_nothing);
}

bool open_first() {
  silence_alsa();
  if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) return false;
  if (open_device()) return true;
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
  return false;
}

// If a sound server goes away, its connection is lost too, so SDL's whole sound part is restarted
// with the device.
bool reopen_device() {
  SDL_AudioQuit();
  return SDL_AudioInit(std::getenv("SDL_AUDIODRIVER")) == 0 && open_device();
}

// Advances what plays while it is unheard: sounds end and their tracks become free.
class Unheard {
 public:
  void begin() { last_ms_ = clock_ms(); }

  void catch_up() {
    const std::int64_t now_ms = clock_ms();
    owed_ += (now_ms - last_ms_) * SOUND_RATE_HZ / 1000;
    last_ms_ = now_ms;
    owed_ = std::min<std::int64_t>(owed_, MOST_FRAMES_UNHEARD);
    for (; owed_ >= SOUND_BLOCK_FRAMES; owed_ -= SOUND_BLOCK_FRAMES)
      state.render(block_.data(), SOUND_BLOCK_FRAMES);
  }

 private:
  std::array<std::int16_t, SOUND_BLOCK_FRAMES * 2> block_{};
  std::int64_t last_ms_ = 0, owed_ = 0;
};

// Whether the device still asks for sound. SDL marks a lost device as stopped; a device that hangs
// makes no requests.
class Pulse {
 public:
  void begin() { last_ms_ = clock_ms(); }

  bool beats() {
    const std::uint32_t blocks = state.blocks.load(std::memory_order_relaxed);
    if (blocks != blocks_) begin();
    blocks_ = blocks;
    return SDL_GetAudioDeviceStatus(state.id) == SDL_AUDIO_PLAYING &&
           clock_ms() - last_ms_ < STALL_MS;
  }

 private:
  std::uint32_t blocks_ = 0;
  std::int64_t last_ms_ = 0;
};

void watch_device(const Thread& self, void* /*context*/) {
  Pulse pulse;
  Unheard unheard;
  std::int64_t next_try_ms = 0;
  pulse.begin();
  for (; !thread_stop_requested(self); clock_sleep_ms(WATCH_MS)) {
    if (state.id != 0 && pulse.beats()) continue;
    if (state.id != 0) {
      std::fprintf(stderr, "The sound device is lost. The game looks for it every second.\n");
      close_device();
      unheard.begin();
      next_try_ms = clock_ms() + REOPEN_MS;
    } else if (clock_ms() >= next_try_ms && reopen_device()) {
      pulse.begin();
      continue;
    } else if (clock_ms() >= next_try_ms) {
      next_try_ms = clock_ms() + REOPEN_MS;
    }
    unheard.catch_up();
  }
  SDL_TLSCleanup();  // SDL's data for this thread
}

}  // namespace

bool sound_sdl_open(SoundRender render, std::string& error) {
  state.render = render;
  state.named_one_missing = false;
  // SDL's threads inherit the caller's processors, and the one that the caller is tied to is busy
  // with the picture.
  const bool was_pinned = thread_unpin();
  const bool opened = open_first();
  if (!opened) error = SDL_GetError();
  if (was_pinned) thread_pin_to_one_processor();
  if (!opened) {
    state.render = nullptr;
    return false;
  }
  state.watch = thread_start("sound device", THREAD_PRIORITY_NORMAL, watch_device, nullptr);
  return true;  // without a watch the device plays, but is not reopened if it is lost
}

void sound_sdl_close() {
  if (state.render == nullptr) return;
  if (state.watch) {
    thread_request_stop(*state.watch);
    if (!thread_join(*state.watch, 2 * REOPEN_MS)) return;  // stuck in a driver: leave it alone
  }
  state.watch.reset();
  const bool was_up = SDL_WasInit(SDL_INIT_AUDIO) != 0;
  close_device();
  if (was_up) SDL_QuitSubSystem(SDL_INIT_AUDIO);
  state.render = nullptr;
}
