#include "cabinet/hands.h"

#include <algorithm>
#include <set>
#include <utility>

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
                         std::function<bool(std::int64_t now_ms)> ready) {
  hands.turns.assign(inputs.begin(), inputs.end());
  hands.turn_rate = rate;
  hands.turn_ms = 0;
  hands.turn_ready = std::move(ready);
}

void hands_hold(Hands& hands, int input, double closed_ms) {
  hands.bursts.push_back({input, 1, closed_ms + PAUSE_MS, closed_ms, 0});
}

bool hands_idle(const Hands& hands) {
  return hands.bursts.empty() && hands.turn_ready == nullptr;
}

void hands_advance(Hands& hands, Board& board, std::int64_t now_ms) {
  const auto now = static_cast<double>(now_ms);
  if (hands.turn_ready != nullptr && now >= hands.turn_ms && hands.turn_ready(now_ms)) {
    if (hands.turns.empty()) {
      hands.turn_ready = nullptr;
    } else {
      hands_press(hands, hands.turns.front(), 1, hands.turn_rate);
      hands.turns.pop_front();
      hands.turn_ms = now + 1000 / hands.turn_rate;
    }
  }
  std::set<int> taken;
  for (Burst& burst : hands.bursts) {
    if (taken.insert(burst.input).second) advance_burst(burst, board, now_ms);
  }
  const auto done = [now](const Burst& burst) {
    // The pause after the last press belongs to the burst, so that the next burst can't touch it.
    return burst.presses <= 0 && burst.next_ms <= now;
  };
  hands.bursts.erase(std::remove_if(hands.bursts.begin(), hands.bursts.end(), done),
                     hands.bursts.end());
}

void hands_drop(Hands& hands, Board& board, std::int64_t now_ms) {
  for (const Burst& burst : hands.bursts) {
    if (burst.closed) board_switch(board, burst.input, false, now_ms);
  }
  hands.bursts.clear();
  hands.turns.clear();
  hands.turn_ready = nullptr;
}
