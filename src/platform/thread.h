// Threads that can be asked to stop and are joined within a bound.
#pragma once

#include <memory>

enum ThreadPriority { THREAD_PRIORITY_NORMAL, THREAD_PRIORITY_TIME_CRITICAL };

struct Thread;  // a running thread; the body gets it to look at the stop request

// A loop's body: looks at `thread_stop_requested` at least once each pass and returns when it is
// set.
using ThreadBody = void (*)(const Thread& self, void* context);

// Starts a thread, or returns null if the machine gives none. `name` is shown by debuggers, at
// most 15 characters. Time-critical priority is asked for and done without if refused. The thread
// may run on every processor the process may use, even if the caller is pinned.
std::shared_ptr<Thread> thread_start(const char* name, ThreadPriority priority, ThreadBody body,
                                     void* context);

bool thread_stop_requested(const Thread& thread);

// Asks the thread to stop. A body that blocks must be woken by the caller.
void thread_request_stop(Thread& thread);

// Waits at most `bound_ms` for the end of a thread that was asked to stop. False if it still runs;
// it is then left behind, and its resources stay.
bool thread_join(Thread& thread, int bound_ms);

// Binds the calling thread to the lowest processor that the process may use.
void thread_pin_to_one_processor();

// Lets the calling thread run on every processor again, as it could before it was pinned: threads
// started by libraries inherit the caller's processors. Answers whether it was pinned.
bool thread_unpin();
