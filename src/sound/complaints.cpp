#include "sound/complaints.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include "platform/clock.h"
#include "platform/mutex.h"

namespace {

constexpr int LINES_PER_SECOND = 20;
constexpr int LINES_KEPT = 2 * LINES_PER_SECOND;  // for a printer that is late

struct Line {
  char text[160];
};

struct Complaints {
  Mutex mutex;  // taken under the sound lock, and never the other way
  std::array<Line, LINES_KEPT> lines GUARDED_BY(mutex);
  int count GUARDED_BY(mutex);  // number of lines kept
  std::int64_t second GUARDED_BY(mutex);
  int in_second GUARDED_BY(mutex), dropped GUARDED_BY(mutex);  // in the present second
  std::atomic<bool> waiting;
  std::atomic<bool> has_thread;
};

Complaints state{};

[[gnu::format(printf, 1, 0)]] void keep(const char* format, std::va_list arguments)
    REQUIRES(state.mutex) {
  if (state.count == LINES_KEPT) {
    ++state.dropped;
    return;
  }
  Line& line = state.lines[state.count++];
  std::vsnprintf(line.text, sizeof line.text, format, arguments);
}

[[gnu::format(printf, 1, 2)]] void keep(const char* format, ...) REQUIRES(state.mutex) {
  std::va_list arguments;
  va_start(arguments, format);
  keep(format, arguments);
  va_end(arguments);
}

// At the end of a second, the number of dropped lines is known.
void turn_second() REQUIRES(state.mutex) {
  const std::int64_t second = clock_ms() / 1000;
  if (second == state.second) return;
  state.second = second;
  state.in_second = 0;
  if (state.dropped == 0 || state.count == LINES_KEPT) return;
  keep("jps_complain(): Warning! %i more messages were dropped\n", state.dropped);
  state.dropped = 0;
}

}  // namespace

void jps_complain(const char* format, ...) {
  const MutexLock guard(state.mutex);
  turn_second();
  state.waiting = true;
  if (++state.in_second > LINES_PER_SECOND) {
    ++state.dropped;
    return;
  }
  std::va_list arguments;
  va_start(arguments, format);
  keep(format, arguments);
  va_end(arguments);
}

void jps_complaints_print() {
  if (!state.waiting) return;
  std::array<Line, LINES_KEPT> lines;
  int count = 0;
  {
    const MutexLock guard(state.mutex);
    turn_second();
    count = state.count;
    std::copy_n(state.lines.begin(), count, lines.begin());
    state.count = 0;
    state.waiting = state.dropped > 0;
  }
  for (int i = 0; i < count; ++i) std::fputs(lines[i].text, stdout);
}

void jps_complaints_lock_is_free() {
  if (!state.has_thread) jps_complaints_print();
}

void jps_complaints_reset() {
  const MutexLock guard(state.mutex);
  state.count = state.in_second = state.dropped = 0;
  state.waiting = false;
}

void jps_complaints_have_a_thread(bool have) {
  state.has_thread = have;
}
