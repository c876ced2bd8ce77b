#include "playfield/ticket_dings.h"

#include <atomic>

#include "playfield/cues.h"  // cue_play

namespace {

constexpr std::int64_t DING_MS = 125;
constexpr const char* DING_NAMES[] = {"ding08", "ding07", "ding06", "ding05", "ding04", "ding03"};

// The game thread asks, the worker counts. In order, not relaxed: the worker must see the lane and
// the count of the request that it saw.
struct Dings {
  std::atomic<int> lane, count, played;
  std::atomic<bool> retarget, busy;
};
constinit Dings ding{};

struct Run {  // the worker's own
  bool started, waiting;
  int lane, count;
  std::int64_t played_at_ms;
};
constinit Run run{};

void run_take() {
  ding.retarget = false;
  run.lane = ding.lane;
  run.count = ding.count;
  ding.played = 0;
}

// True once the wait behind a sound is over. A new run ends it early, and the wait that it cut
// short counts as the first of the new run.
bool wait_over(std::int64_t now_ms) {
  if (ding.retarget) {
    run_take();
    return true;
  }
  return now_ms - run.played_at_ms >= DING_MS;
}

}  // namespace

void ticket_dings(int lane, int count) {
  if (!ding.busy) {
    ding.lane = lane;
    ding.count = count;
    ding.busy = true;
  } else if (ding.count - ding.played <= count) {
    ding.lane = lane;
    ding.count = count;
    ding.retarget = true;
  }
}

void ticket_dings_step(std::int64_t now_ms) {
  if (!run.started) {
    // A request that came in just as a run ended starts one of its own.
    if (!ding.busy && !ding.retarget) return;
    ding.busy = true;
    run.started = true;
    run.waiting = false;
    run_take();
  }
  if (run.waiting) {
    if (!wait_over(now_ms)) return;
    run.waiting = false;
    ding.played = ding.played + 1;
  }
  if (ding.played >= run.count) {
    run.started = false;
    ding.busy = false;
    return;
  }
  cue_play(DING_NAMES[run.lane]);
  run.played_at_ms = now_ms;
  run.waiting = true;
}

void ticket_dings_reset() {
  ding.lane = 0;
  ding.count = 0;
  ding.played = 0;
  ding.retarget = false;
  ding.busy = false;
  run = {};
}
