#include "frame/game_thread.h"

#include <cstdint>
#include <memory>

#include "frame/tick.h"
#include "frame/tick_steps.h"  // periodic_reboot_refused
#include "platform/clock.h"
#include "platform/thread.h"
#include "playfield/ticket_dings.h"
#include "playfield/workers.h"
#include "presentation/win_show.h"

namespace {

constexpr int JOIN_BOUND_MS = 2000;  // a store of the books may be under way

struct GameThreads {
  std::shared_ptr<Thread> game_thread_handle, workers_thread_handle;
};
constinit GameThreads threads;

void game_thread(const Thread& self, void* /*context*/) {
  game_begin();
  bool running = true;
  while (!thread_stop_requested(self)) {
    const std::int64_t t_ms = clock_ms();
    // After an ordered reboot there is no further tick: the thread waits for the machine.
    if (!running) running = periodic_reboot_refused();
    if (running && game_tick_due(t_ms)) running = game_tick(t_ms);
    clock_sleep_ms(1);
  }
}

void workers_thread(const Thread& self, void* /*context*/) {
  while (!thread_stop_requested(self)) {
    workers_step();
    ticket_dings_step(clock_ms());  // eight to the second, which the tick is too coarse for
    win_show_step();
    clock_sleep_ms(1);
  }
}

bool stop(std::shared_ptr<Thread>& thread) {
  if (thread == nullptr) return true;
  thread_request_stop(*thread);
  if (!thread_join(*thread, JOIN_BOUND_MS)) return false;
  thread = nullptr;
  return true;
}

}  // namespace

bool game_threads_start() {
  threads.workers_thread_handle =
      thread_start("workers", THREAD_PRIORITY_NORMAL, workers_thread, nullptr);
  threads.game_thread_handle = thread_start("game", THREAD_PRIORITY_NORMAL, game_thread, nullptr);
  return threads.workers_thread_handle != nullptr && threads.game_thread_handle != nullptr;
}

bool game_threads_stop() {
  const bool game_ended = stop(threads.game_thread_handle);
  return stop(threads.workers_thread_handle) && game_ended;
}
