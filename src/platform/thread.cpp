#include "platform/thread.h"

#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <utility>

#include "platform/mutex.h"

struct Thread {
  ~Thread() {
    if (started && !joined) pthread_detach(handle);
  }

  ThreadBody body = nullptr;
  void* context = nullptr;
  ThreadPriority priority = THREAD_PRIORITY_NORMAL;
  char name[16] = {};
  std::atomic<bool> stop{false};
  Mutex mutex;
  std::condition_variable_any end_signal;
  bool ended GUARDED_BY(mutex) = false;
  bool started = false, joined = false;
  pthread_t handle{};
  std::shared_ptr<Thread> self;  // the running thread keeps its record alive
};

namespace {

thread_local bool pinned = false;  // the calling thread is tied to one processor

// The processors that the process was given, before any thread was pinned.
const cpu_set_t& process_processors() {
  static const cpu_set_t processors = [] {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (sched_getaffinity(0, sizeof set, &set) != 0) CPU_ZERO(&set);
    return set;
  }();
  return processors;
}

// The lowest real-time level is above all normal work and still below the kernel's own interrupt
// threads. Threads that this one starts get normal priority.
void ask_for_time_critical() {
  sched_param level{};
  level.sched_priority = sched_get_priority_min(SCHED_FIFO);
  sched_setscheduler(0, SCHED_FIFO | SCHED_RESET_ON_FORK, &level);
}

void* thread_main(void* raw) {
  const std::shared_ptr<Thread> thread = std::move(static_cast<Thread*>(raw)->self);
  pthread_setname_np(pthread_self(), thread->name);
  if (thread->priority == THREAD_PRIORITY_TIME_CRITICAL) ask_for_time_critical();
  thread->body(*thread, thread->context);

  const MutexLock lock(thread->mutex);
  thread->ended = true;
  thread->end_signal.notify_all();
  return nullptr;
}

}  // namespace

std::shared_ptr<Thread> thread_start(const char* name, ThreadPriority priority, ThreadBody body,
                                     void* context) {
  auto thread = std::make_shared<Thread>();
  thread->body = body;
  thread->context = context;
  thread->priority = priority;
  std::strncpy(thread->name, name, sizeof thread->name - 1);
  thread->self = thread;

  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  const cpu_set_t& processors = process_processors();
  if (CPU_COUNT(&processors) > 0) {
    pthread_attr_setaffinity_np(&attributes, sizeof processors, &processors);
  }
  thread->started = pthread_create(&thread->handle, &attributes, thread_main, thread.get()) == 0;
  pthread_attr_destroy(&attributes);
  if (thread->started) return thread;
  thread->self.reset();
  return nullptr;
}

bool thread_stop_requested(const Thread& thread) {
  return thread.stop.load(std::memory_order_relaxed);
}

void thread_request_stop(Thread& thread) {
  thread.stop.store(true, std::memory_order_relaxed);
}

bool thread_join(Thread& thread, int bound_ms) {
  {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(bound_ms);
    const MutexLock lock(thread.mutex);
    while (!thread.ended) {
      if (thread.end_signal.wait_until(thread.mutex, end) == std::cv_status::timeout) break;
    }
    if (!thread.ended) return false;
  }
  if (!thread.joined) pthread_join(thread.handle, nullptr);
  thread.joined = true;
  return true;
}

void thread_pin_to_one_processor() {
  const cpu_set_t& processors = process_processors();
  for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
    if (!CPU_ISSET(processor, &processors)) continue;
    cpu_set_t lowest;
    CPU_ZERO(&lowest);
    CPU_SET(processor, &lowest);
    sched_setaffinity(0, sizeof lowest, &lowest);
    pinned = true;
    return;
  }
}

bool thread_unpin() {
  const cpu_set_t& processors = process_processors();
  if (CPU_COUNT(&processors) > 0) sched_setaffinity(0, sizeof processors, &processors);
  return std::exchange(pinned, false);
}
