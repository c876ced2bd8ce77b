#include "playfield/frog_states.h"

#include <algorithm>
#include <cstdint>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"  // now_ms, seconds_since
#include "playfield/awards.h"
#include "playfield/looks.h"

namespace {

void frog_free(int side, Frog& frog) {
  if (frog.state == FROG_SINKING) {
    frog.sink_ms = 0;
    frog.frame = 0;
  }
  frog.state = FROG_FREE;
  frog.x = static_cast<float>(QUEUE_X[side][0]);
  frog.y = lane_y[LANE_NEAR_BANK];
  frog.lane = LANE_NEAR_BANK;
  frog.flags = 0;
  frog.state_time = now_ms();
}

// --- waiting ------------------------------------------------------------------------------------

bool side_in_flight(int side) {
  return std::ranges::any_of(stations[side].frogs, [](const Frog& frog) {
    const FrogState state = frog.state;
    return state == FROG_LAUNCHING || state == FROG_HOPPING || state == FROG_RESTING;
  });
}

bool side_can_play(int side) {
  return audit_count(AUDIT_CURRENT_CREDITS, side) > 0 || pref_on(PREF_FREEPLAY);
}

void waiting_step(int side, Frog& frog, const FrogTimes& times) {
  if (frog.queue_pos == 0) {
    if (side_in_flight(side)) return;
    if (side_can_play(side)) {
      if ((frog.flags & FROG_HIDDEN) != 0) {
        frog.ring_time = now_ms();
        frog.ring_frame = 0;
      }
      frog.flags &= ~FROG_HIDDEN;
    }
  }
  frog_idle_frame(frog, times);
  frog_ring_frame(frog, times);
}

// --- in flight ----------------------------------------------------------------------------------

void queue_close_up(int side) {
  FrogQueue& queue = frog_queues[side];
  for (int place = 0; place < queue.count; ++place) {
    queue.places[place].get()->x = static_cast<float>(QUEUE_X[side][place]);
  }
}

void landing(int side, Frog& frog) {
  if (frog.state == FROG_LAUNCHING) queue_close_up(side);
  frog.lane -= 1;
  frog.state = FROG_RESTING;
  frog.state_time = now_ms();
  if (!is_demo(frog)) {
    if (frog.lane < lead_lane) frog.flags |= FROG_LEAD_CUE;
    award_landing_cue();
  }
  if (frog.lane <= LANE_FAR_BANK) {
    frog.x = static_cast<float>(QUEUE_X[side][0]);
    frog.lane = LANE_FAR_BANK;
    frog.state = FROG_WINNING;
    award_jackpot(side, frog);
  }
  frog.y = lane_y[frog.lane];
}

void hop_step(int side, Frog& frog, const FrogTimes& times) {
  const float t = times.state;
  if (t > HOP_SECONDS) {
    landing(side, frog);
  } else {
    const std::int32_t from = lane_y[frog.lane];
    const std::int32_t rise = from - lane_y[frog.lane - 1];
    frog.y = static_cast<std::int32_t>(static_cast<float>(from) -
                                       static_cast<float>(rise) * t / HOP_SECONDS);
  }
  frog_hop_frame(frog, times);
  frog_ring_frame(frog, times);
}

void resting_step(Frog& frog, const FrogTimes& times) {
  frog.y = lane_y[frog.lane];
  frog.frame = 0;
  if (times.state > HOP_SECONDS) {
    frog.flags &= ~FROG_LANDED;
    frog.state_time = now_ms();
    if (!is_demo(frog)) award_hop_cues();
    frog.state = FROG_HOPPING;
  }
  frog_ring_frame(frog, times);
}

void winning_step(int side, Frog& frog, const FrogTimes& times) {
  frog_win_frame(frog, times);
  if (times.state > WIN_SECONDS) frog_free(side, frog);
}

}  // namespace

FrogTimes frog_times(const Frog& frog) {
  return {seconds_since(frog.state_time), now_ms() - frog.ring_time, now_ms() - frog.launch_time};
}

float sinking_seconds(const Frog& frog) {
  return static_cast<float>(static_cast<double>(frog.sink_ms) / 1000.0);
}

void frog_state_step(int side, Frog& frog, const FrogTimes& times) {
  switch (frog.state) {
    case FROG_FREE:
      break;
    case FROG_WAITING:
      waiting_step(side, frog, times);
      break;
    case FROG_LAUNCHING:
    case FROG_HOPPING:
      hop_step(side, frog, times);
      break;
    case FROG_RESTING:
      resting_step(frog, times);
      break;
    case FROG_SINKING:
      frog.frame = 0;
      if (times.state > sinking_seconds(frog)) frog_free(side, frog);
      break;
    case FROG_WINNING:
      winning_step(side, frog, times);
      break;
    case FROG_FADING:
      if (times.state > FADE_SECONDS) frog_free(side, frog);
      break;
    default:
      break;
  }
}
