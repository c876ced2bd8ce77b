// Threads that can be asked to stop and are joined within a time limit.
#pragma once

#include <memory>

enum ThreadPriority { THREAD_PRIORITY_NORMAL, THREAD_PRIORITY_TIME_CRITICAL };

struct Thread;  // a running thread; its body uses it to check the stop request

// A loop's body: calls `thread_stop_requested` at least once each pass and returns when it is true.
using ThreadBody = void (*)(const Thread& self, void* context);

// Starts a thread, or returns null if the machine gives none. Debuggers show at most 15 characters
// of `name`. If time-critical priority is refused, the thread runs without it. It may run on every
// processor that the process may use, even if the caller is pinned.
std::shared_ptr<Thread> thread_start(const char* name, ThreadPriority priority, ThreadBody body,
                                     void* context);

bool thread_stop_requested(const Thread& thread);

// Asks the thread to stop. If its body blocks, the caller must wake it.
void thread_request_stop(Thread& thread);

// Waits at most `bound_ms` for the end of a thread that was asked to stop. False if it still runs;
// it is then left behind, and its resources stay.
bool thread_join(Thread& thread, int bound_ms);

// Ties the calling thread to the lowest processor that the process may use.
void thread_pin_to_one_processor();

// Lets the calling thread run on every processor again, as before it was pinned. Threads started by
// libraries inherit the caller's processors. Returns whether it was pinned.
bool thread_unpin();
