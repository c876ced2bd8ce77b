// A mutex whose use clang checks (-Wthread-safety): a word that is GUARDED_BY a mutex is touched
// only by code that holds it. To other compilers the attributes are nothing.
//
// Whoever holds it inherits the priority of a thread that waits for it. So a time-critical thread,
// as the I/O link's pump is, never waits for as long as other programs keep the holder from its
// core.
//
// A condition waits on the Mutex itself, as std::condition_variable_any does, in a loop: the check
// doesn't look into a predicate.
#pragma once

#include <pthread.h>

#ifdef __clang__
#define LOCK_ATTRIBUTE(...) __attribute__((__VA_ARGS__))
#else
#define LOCK_ATTRIBUTE(...)
#endif
#define GUARDED_BY(mutex) LOCK_ATTRIBUTE(guarded_by(mutex))
#define REQUIRES(mutex) LOCK_ATTRIBUTE(requires_capability(mutex))

class LOCK_ATTRIBUTE(capability("mutex")) Mutex {
 public:
  Mutex() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    pthread_mutex_init(&mutex_, &attributes);
    pthread_mutexattr_destroy(&attributes);
  }
  // There is nothing to release, and a thread that is late at the program's end may still lock it.
  ~Mutex() = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void lock() LOCK_ATTRIBUTE(acquire_capability()) { pthread_mutex_lock(&mutex_); }
  bool try_lock() LOCK_ATTRIBUTE(try_acquire_capability(true)) {
    return pthread_mutex_trylock(&mutex_) == 0;
  }
  void unlock() LOCK_ATTRIBUTE(release_capability()) { pthread_mutex_unlock(&mutex_); }

 private:
  pthread_mutex_t mutex_;
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
