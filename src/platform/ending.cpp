#include "platform/ending.h"

#include <atomic>
#include <csignal>
#include <initializer_list>

namespace {

constinit std::atomic<int> requested{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler stores it");

void note(int number) {
  requested = number;
}

}  // namespace

void ending_watch() {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    const auto before = std::signal(number, note);
    if (number == SIGHUP && before == SIG_IGN) std::signal(number, SIG_IGN);
  }
  // A write to a display that is lost would end the program before its books are stored.
  std::signal(SIGPIPE, SIG_IGN);
}

int ending_requested() {
  return requested;
}
