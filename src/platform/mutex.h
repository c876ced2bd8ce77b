// A mutex whose use clang checks (-Wthread-safety): a word that is GUARDED_BY a mutex is touched
// only by code that holds it. To other compilers the attributes are nothing.
//
// A condition waits on the Mutex itself, as std::condition_variable_any does, in a loop: the check
// doesn't look into a predicate.
#pragma once

#include <mutex>

#ifdef __clang__
#define LOCK_ATTRIBUTE(...) __attribute__((__VA_ARGS__))
#else
#define LOCK_ATTRIBUTE(...)
#endif
#define GUARDED_BY(mutex) LOCK_ATTRIBUTE(guarded_by(mutex))
#define REQUIRES(mutex) LOCK_ATTRIBUTE(requires_capability(mutex))

class LOCK_ATTRIBUTE(capability("mutex")) Mutex {
 public:
  void lock() LOCK_ATTRIBUTE(acquire_capability()) { mutex_.lock(); }
  bool try_lock() LOCK_ATTRIBUTE(try_acquire_capability(true)) { return mutex_.try_lock(); }
  void unlock() LOCK_ATTRIBUTE(release_capability()) { mutex_.unlock(); }

 private:
  std::mutex mutex_;
};

// Holds a Mutex while it lives.
class LOCK_ATTRIBUTE(scoped_lockable) MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) LOCK_ATTRIBUTE(acquire_capability(mutex)) : mutex_(mutex) {
    mutex_.lock();
  }
  ~MutexLock() LOCK_ATTRIBUTE(release_capability()) { mutex_.unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mutex_;
};
