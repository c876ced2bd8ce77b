#include "playfield/ticket_dings.h"

#include <atomic>

#include "playfield/cues.h"  // cue_play

namespace {

constexpr std::int64_t DING_MS = 125;
constexpr const char* DING_NAMES[] = {"ding08", "ding07", "ding06", "ding05", "ding04", "ding03"};

// The game thread asks, the worker counts. In order, not relaxed: the worker must see the lane and
// the count of the request that it saw.
struct Dings {
  std::atomic<int> ding_lane, ding_count, ding_played;
  std::atomic<bool> ding_retarget, ding_busy;
};
constinit Dings asked{};

struct Run {  // the worker's own
  bool started, waiting;
  int lane, count;
  std::int64_t played_at_ms;
};
constinit Run run{};

void run_take() {
  asked.ding_retarget = false;
  run.lane = asked.ding_lane;
  run.count = asked.ding_count;
  asked.ding_played = 0;
}

// True once the wait after a sound is over. A new run ends it early, and the wait that it cut
// short counts as the first of the new run.
bool wait_over(std::int64_t now_ms) {
  if (asked.ding_retarget) {
    run_take();
    return true;
  }
  return now_ms - run.played_at_ms >= DING_MS;
}

}  // namespace

void ticket_dings(int lane, int count) {
  if (!asked.ding_busy) {
    asked.ding_lane = lane;
    asked.ding_count = count;
    asked.ding_busy = true;
  } else if (asked.ding_count - asked.ding_played <= count) {
    asked.ding_lane = lane;
    asked.ding_count = count;
    asked.ding_retarget = true;
  }
}

void ticket_dings_step(std::int64_t now_ms) {
  if (!run.started) {
    // A request that came in just as a run ended starts one of its own.
    if (!asked.ding_busy && !asked.ding_retarget) return;
    asked.ding_busy = true;
    run.started = true;
    run.waiting = false;
    run_take();
  }
  if (run.waiting) {
    if (!wait_over(now_ms)) return;
    run.waiting = false;
    asked.ding_played = asked.ding_played + 1;
  }
  if (asked.ding_played >= run.count) {
    run.started = false;
    asked.ding_busy = false;
    return;
  }
  cue_play(DING_NAMES[run.lane]);
  run.played_at_ms = now_ms;
  run.waiting = true;
}

void ticket_dings_reset() {
  asked.ding_lane = 0;
  asked.ding_count = 0;
  asked.ding_played = 0;
  asked.ding_retarget = false;
  asked.ding_busy = false;
  run = {};
}
