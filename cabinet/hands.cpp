#include "cabinet/hands.h"

#include <algorithm>
#include <set>

namespace {

constexpr double PRESS_MS = 60, PRESS_SHARE = 0.3;
constexpr double PAUSE_MS = 40;  // between two presses of a sequence

void advance_burst(Burst& burst, Board& board, std::int64_t now_ms) {
  const auto now = static_cast<double>(now_ms);
  if (!burst.begun) {
    burst.begun = true;
    burst.next_ms = now;
  }
  while (burst.presses > 0 && burst.next_ms <= now) {
    burst.closed = !burst.closed;
    board_switch(board, burst.input, burst.closed, now_ms);
    if (burst.closed) {
      burst.next_ms += burst.closed_ms;
    } else {
      --burst.presses;
      burst.next_ms += burst.period_ms - burst.closed_ms;
    }
  }
}

}  // namespace

void hands_press(Hands& hands, int input, long count, double rate) {
  const double period_ms = 1000 / rate;
  const double closed_ms = std::min(PRESS_MS, period_ms * PRESS_SHARE);
  hands.bursts.push_back({input, count, period_ms, closed_ms, 0});
}

void hands_press_in_turn(Hands& hands, const std::vector<int>& inputs, double rate,
                         std::int64_t now_ms) {
  auto start_ms = static_cast<double>(now_ms);
  for (const int input : inputs) {
    hands_press(hands, input, 1, rate);
    Burst& burst = hands.bursts.back();
    burst.begun = true;
    burst.next_ms = start_ms;
    start_ms += burst.period_ms;
  }
}

void hands_hold(Hands& hands, int input, double closed_ms) {
  hands.bursts.push_back({input, 1, closed_ms + PAUSE_MS, closed_ms, 0});
}

void hands_advance(Hands& hands, Board& board, std::int64_t now_ms) {
  std::set<int> taken;
  for (Burst& burst : hands.bursts) {
    if (taken.insert(burst.input).second) advance_burst(burst, board, now_ms);
  }
  const auto done = [now_ms](const Burst& burst) {
    // The pause after the last press belongs to the burst, so that the next burst can't touch it.
    return burst.presses <= 0 && burst.next_ms <= static_cast<double>(now_ms);
  };
  hands.bursts.erase(std::remove_if(hands.bursts.begin(), hands.bursts.end(), done),
                     hands.bursts.end());
}

void hands_drop(Hands& hands, Board& board, std::int64_t now_ms) {
  for (const Burst& burst : hands.bursts) {
    if (burst.closed) board_switch(board, burst.input, false, now_ms);
  }
  hands.bursts.clear();
}
