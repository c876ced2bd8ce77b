#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>

#include "platform/sound_backends.h"
#include "platform/thread.h"

namespace {

constexpr std::int64_t LONGEST_HOLD_UP_US = 500'000;
constexpr int JOIN_BOUND_MS = 2000;

struct SoundClock {
  SoundRender render = nullptr;
  std::unique_ptr<SoundSocket> listener;  // null: unheard
  std::shared_ptr<Thread> thread;
};

constinit SoundClock state;

std::int64_t now_us() {
  using namespace std::chrono;
  return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

void run(const Thread& self, void* /*context*/) {
  std::array<std::int16_t, SOUND_BLOCK_FRAMES * 2> block{};
  std::int64_t frame = 0;
  SoundPace pace(now_us());
  while (!thread_stop_requested(self)) {
    const std::int64_t time_us = now_us();
    if (!pace.take(time_us)) {
      std::this_thread::sleep_for(std::chrono::microseconds(pace.due_us() - time_us));
      continue;
    }
    state.render(block.data(), SOUND_BLOCK_FRAMES);
    if (state.listener) state.listener->send(frame, time_us, block.data(), SOUND_BLOCK_FRAMES);
    frame += SOUND_BLOCK_FRAMES;
  }
}

}  // namespace

std::int64_t SoundPace::due_us() const {
  return origin_us_ + blocks_ * SOUND_BLOCK_FRAMES * 1'000'000 / SOUND_RATE_HZ;
}

bool SoundPace::take(std::int64_t now_us) {
  if (now_us < due_us()) return false;
  if (now_us - due_us() > LONGEST_HOLD_UP_US) {
    origin_us_ = now_us;
    blocks_ = 0;
  }
  ++blocks_;
  return true;
}

bool sound_clock_open(SoundRender render, const std::string& socket_path) {
  state.render = render;
  if (!socket_path.empty()) state.listener = std::make_unique<SoundSocket>(socket_path);
  state.thread = thread_start("sound clock", THREAD_PRIORITY_TIME_CRITICAL, run, nullptr);
  if (!state.thread) sound_clock_close();
  return state.render != nullptr;
}

void sound_clock_close() {
  if (state.thread) {
    thread_request_stop(*state.thread);
    if (!thread_join(*state.thread, JOIN_BOUND_MS)) return;
  }
  state.thread.reset();
  state.listener.reset();
  state.render = nullptr;
}
