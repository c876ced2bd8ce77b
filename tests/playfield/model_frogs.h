// The rules of the field, written a second time: short, slow and on records of their own. A test
// runs them beside the real ones, on the same clock and the same chances, and compares every field.
// Settings are read from `prefs`; what only the drawing knows (where slots and riders are) is put
// in by the test.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "platform/random.h"
#include "tests/playfield/field.h"
#include "tests/playfield/model_awards.h"

constexpr int FROG_SIZE = 256, IDLE_SIZE = 240;  // of a cell of the frogs' sheets in the test

constexpr const char* NOTES[] = {"", "log07", "log06", "log05", "log04", "log03"};  // lanes 1 to 5

inline int alpha_of(float v) {
  return whole(255.0F * std::clamp(v, 0.0F, 1.0F));
}
inline int half_size(const Frog& frog) {
  return (frog.sheet == &sheets[SHEET_GFROG] ? FROG_SIZE : IDLE_SIZE) / 2;
}

struct FieldModel : AwardsModel {
  std::vector<int> line[SIDE_COUNT];  // numbers of the frogs in line, head first
  int lead_lane;

  void reset() {
    lead_lane = 12;
    for (int side = 0; side < SIDE_COUNT; ++side) {
      for (Frog& frog : stations[side].frogs) {
        frog.state = FROG_FREE;
        frog.flags = FROG_HIDDEN;
        frog.sheet = &sheets[SHEET_GFROG];
        set_all(now_ms(), frog.ring_time, frog.launch_time);
        make_new(side, frog, 0);
      }
    }
    field_reset();
    told.emplace_back("led");
  }

  void tick() {
    river_step();
    lead_lane = 12;
    for (const Station& station : stations) {
      for (const Frog& frog : station.frogs) {
        if (frog.state != FROG_HOPPING && frog.state != FROG_RESTING) continue;
        lead_lane = std::min(lead_lane, frog.lane.get());
      }
    }
    for (int lane = 0; lane < LANE_COUNT; ++lane) lane_step(lane);
    butterfly_step();
    for (int side = 0; side < SIDE_COUNT; ++side) {
      for (Frog& frog : stations[side].frogs) {
        if (frog.state != FROG_FREE) frog_step(side, frog);
      }
    }
  }

  // --- line and launch ---

  static void place(int side, Frog& frog, int number) {
    frog.x = PLACES[side][number];
    frog.y = Y[12];
    frog.lane = 12;
    frog.state_time = now_ms();
  }
  static void empty(Frog& frog) {
    set_all(0, frog.total_tickets, frog.base_tickets, frog.butterfly_tickets);
    set_all(0, frog.frame, frog.ring_frame);
    frog.award_kind = AWARD_NONE;
  }
  static void make_new(int side, Frog& frog, int number) {
    place(side, frog, number);
    empty(frog);
    set_all(255, frog.alpha, frog.pulse, frog.ring_alpha);
    frog.scale = 1.0F;
  }

  bool ready(int side) const {
    if (game_mode == MODE_OPERATOR || show_active[side] || live_frogs(side) > 0) return false;
    const auto free = [](const Frog& frog) { return frog.state == FROG_FREE; };
    return std::ranges::any_of(stations[side].frogs, free);
  }

  void enqueue(int side) {
    const auto place_number = static_cast<int>(line[side].size());
    if (place_number == QUEUE_PLACES) return;
    for (int n = 0; n < FROGS_PER_STATION; ++n) {
      Frog& frog = stations[side].frogs[n];
      if (frog.state != FROG_FREE) continue;
      frog.flags |= FROG_HIDDEN;
      make_new(side, frog, place_number);
      frog.queue_pos = place_number;
      frog.state = FROG_WAITING;
      line[side].push_back(n);
      return;
    }
  }

  void launch(int side, bool demo) {
    if (line[side].empty()) enqueue(side);
    if (line[side].empty()) return;
    award_done[side] = 0;
    Frog& frog = stations[side].frogs[line[side][0]];
    place(side, frog, 0);
    empty(frog);
    frog.state = FROG_LAUNCHING;
    frog.launch_time = now_ms();
    frog.flags &= ~(FROG_HIDDEN | FROG_DEMO | FROG_IDLE_ANIM);
    frog.sheet = &sheets[SHEET_GFROG];
    line[side].erase(line[side].begin());
    for (const int n : line[side]) stations[side].frogs[n].queue_pos -= 1;
    if (demo) {
      frog.flags |= FROG_DEMO;
      frog.pulse = 0;
      return;
    }
    play("jump");
    add(AUDIT_GAMES_PLAYED, side, 1);
    add(AUDIT_GAMES_SINCE_BOOT, side, 1);
    if (tick_timers.since_award_ms[side] < 15000) add(AUDIT_REPEAT_PLAYS, side, 1);
  }

  // --- flight ---

  Probe probe(const Frog& frog, int lane) const {
    if (lanes[lane].speed == 0.0F) return {CELL_EMPTY, -1, -1, -1, -1};
    const float p = lanes[lane].scroll + frog.x + f32(half_size(frog));
    const float size = f32(LANES[lane].cell_size);
    const int cell_a = (whole((p - 1.0F) / size) % 40 + 40) % 40;
    const int cell_b = (whole((p + 1.0F) / size) % 40 + 40) % 40;
    const int a = lanes[lane].cells[cell_a];
    const int b = lanes[lane].cells[cell_b];
    return {a == CELL_EMPTY ? b : a, a == CELL_BUG ? cell_a : -1, b == CELL_BUG ? cell_b : -1,
            a >= CELL_PLAIN ? cell_a : -1, b >= CELL_PLAIN ? cell_b : -1};
  }

  void frog_step(int side, Frog& frog) {
    const float t = seconds_since(frog.state_time);
    const float r = seconds_since(frog.ring_time);
    if (watched) looks(frog, t, seconds_since(frog.launch_time));
    const FrogState state = frog.state;
    if (state != FROG_SINKING && state != FROG_WINNING && state != FROG_FADING) {
      butterfly_test(side, frog);
    }
    bug_test(side, frog);
    if (river_test(side, frog) && (frog.flags & FROG_LEAD_CUE) != 0 && frog.lane < 6 &&
        (state == FROG_RESTING || state == FROG_WINNING)) {
      frog.flags &= ~FROG_LEAD_CUE;
      if (!is_demo(frog) && frog.lane > 0) play(NOTES[frog.lane]);
    }
    state_step(side, frog, t, r);
  }

  static void looks(Frog& frog, float t, float l) {
    const FrogState state = frog.state;
    const bool ends = state == FROG_SINKING || state == FROG_FADING;
    if (state == FROG_WINNING) {
      frog.scale = 1.0F + t * 0.125F + 0.25F * std::sin(t * 50.26548385620117F * 0.25F);
      frog.alpha = alpha_of((4.0F - t) * 8.0F * 0.25F);
    } else if (state == FROG_SINKING) {
      const float s = std::min(t * 0.5F, 1.0F);
      frog.scale = 1.0F + s * 0.5F + 0.25F * std::sin(4.0F * PI * t);
      frog.alpha = alpha_of(2.0F * (f32(static_cast<double>(frog.sink_ms) / 1000.0) - t));
    } else if (state == FROG_FADING) {
      frog.alpha = alpha_of((0.6F - t) / 0.6F);
    } else {
      frog.scale = std::max(frog.scale - 0.1F, 1.0F);
    }
    frog.pulse = ends && frog.pulse < 4 ? 0 : whole(255.0F * (0.5F + 0.5F * std::cos(PI + PI * l)));
    frog.ring_alpha = state == FROG_WAITING ? 255 : alpha_of(3.0F - l);
  }

  void butterfly_test(int side, Frog& frog) {
    const int cx = whole(frog.x + f32(half_size(frog)));
    const int cy = frog.y + half_size(frog);
    const int bx = whole(butterfly.x + f32(BUTTERFLY_WIDTH * 0.5));
    const int by = butterfly.y + BUTTERFLY_HEIGHT / 2;
    if (butterfly.state == BUTTERFLY_FLYING && cx - 1 < bx + 96 && cx + 1 > bx - 96 &&
        cy - 1 < by + 80 && cy + 1 > by) {
      butterfly_catch(side, frog);
    }
  }

  void bug_test(int side, Frog& frog) {
    for (int lane = 0; lane < LANE_COUNT; ++lane) {
      const bool ahead = lane == frog.lane - 1 && frog.state == FROG_HOPPING;
      if (lane != frog.lane && !ahead) continue;
      const Probe under = probe(frog, lane);
      if (under.cell != CELL_BUG) continue;
      for (const int cell : {under.bug_a, under.bug_b}) {
        if (cell < 0 || lanes[lane].eaten[cell]) continue;
        bug_catch(side, frog, lane, cell);
        lanes[lane].eaten[cell] = true;
      }
    }
  }

  bool river_test(int side, Frog& frog) {  // false if the frog ends in the water
    const Probe under = probe(frog, frog.lane);
    const bool hops = frog.state == FROG_HOPPING;
    const bool rests = frog.state == FROG_RESTING;
    if (frog.lane < 6 && (hops || (rests && under.cell >= CELL_PLAIN))) {
      frog.x -= lanes[frog.lane].speed;
    }
    const bool gold = under.cell == CELL_TIER1 || under.cell == CELL_TIER2;
    if (gold && rests && (frog.flags & FROG_LANDED) == 0) {
      gold_landing(side, frog, under);
      frog.flags |= FROG_LANDED;
    }
    const bool water = under.cell == CELL_EMPTY && rests && frog.lane < 6;
    if (water) water_end(side, frog);
    return !water;
  }

  void water_end(int side, Frog& frog) {
    const bool demo = is_demo(frog);
    frog.flags |= FROG_HIDDEN;
    frog.state = FROG_SINKING;
    const int minimum = in_points(tickets(PREF_MINIMUM_TICKETS));
    if (frog.total_tickets < minimum) {
      award(side, frog, minimum, AWARD_FREE);
      if (!demo) add(AUDIT_FREES, side, 1);
    }
    frog.sink_ms = demo ? 2000 : std::max(frog.total_tickets * 500, 2000);
    if (!demo) sink_cues(frog);
    splashes.start(whole(frog.x - 128.0F), frog.y).lane = frog.lane.get();
    frog.flags &= ~FROG_LEAD_CUE;
    if (!demo) payout(side, frog);
    for (Frog& other : stations[side].frogs) {
      const bool near = std::abs(other.lane - frog.lane) <= 1;
      if (&other == &frog || other.state != FROG_SINKING || !near) continue;
      other.state = FROG_FADING;
      other.flags |= FROG_HIDDEN;
      other.state_time = now_ms();
    }
  }

  void state_step(int side, Frog& frog, float t, float r) {
    const FrogState state = frog.state;
    if (state == FROG_WAITING) {
      if (frog.queue_pos == 0 && in_flight(side)) return;
      waiting_step(side, frog, t);
    } else if (state == FROG_LAUNCHING || state == FROG_HOPPING) {
      const float rise = f32(Y[frog.lane] - Y[frog.lane - 1]);
      frog.y = whole(f32(Y[frog.lane]) - rise * t / 0.35F);
      if (t > 0.35F) landing(side, frog);
      if (watched) frog.frame = whole(t / 0.35F * 15.0F) % 15;
    } else if (state == FROG_RESTING) {
      frog.y = Y[frog.lane];
      frog.frame = 0;
      if (t > 0.35F) hop(frog);
    } else if (state == FROG_SINKING) {
      frog.frame = 0;
      if (t > f32(static_cast<double>(frog.sink_ms) / 1000.0)) end(side, frog);
    } else if (state == FROG_WINNING) {
      animate(frog, FROG_WIN_ANIM, SHEET_GFROG_WIN);
      frog.frame = whole(t * 0.25F * 88.0F) % 88;
      if (t > 4.0F) end(side, frog);
    } else if (state == FROG_FADING && t > 0.6F) {
      end(side, frog);
    }
    if (watched && state <= FROG_RESTING) frog.ring_frame = whole(30.0F * r) % 30;
  }

  bool in_flight(int side) const {
    return std::ranges::any_of(stations[side].frogs, [](const Frog& frog) {
      return frog.state >= FROG_LAUNCHING && frog.state <= FROG_RESTING;
    });
  }

  void waiting_step(int side, Frog& frog, float t) {
    const bool playable = books[AUDIT_CURRENT_CREDITS + side] > 0 || pref_on(PREF_FREEPLAY);
    if (frog.queue_pos == 0 && playable) {
      if ((frog.flags & FROG_HIDDEN) != 0) {
        frog.ring_time = now_ms();
        frog.ring_frame = 0;
      }
      frog.flags &= ~FROG_HIDDEN;
    }
    animate(frog, FROG_IDLE_ANIM, SHEET_GFROG_IDLE1);
    frog.frame = whole(t / 2.5F * 59.0F);
    if (frog.frame < 60) return;
    const int n = frog.sheet == &sheets[SHEET_GFROG_IDLE1] ? whole(random_unit() * 5.0) : 0;
    frog.sheet = &sheets[n < 2    ? SHEET_GFROG_IDLE1
                         : n == 2 ? SHEET_GFROG_IDLE2
                                  : SHEET_GFROG_IDLE3];
    frog.state_time = now_ms();
    frog.frame = 0;
  }

  void hop(Frog& frog) {
    frog.flags &= ~FROG_LANDED;
    frog.state_time = now_ms();
    frog.state = FROG_HOPPING;
    if (is_demo(frog)) return;
    play("jump");
    croak(0.125);
  }

  void landing(int side, Frog& frog) {
    if (frog.state == FROG_LAUNCHING) {
      int number = 0;
      for (const int n : line[side]) stations[side].frogs[n].x = PLACES[side][number++];
    }
    frog.lane -= 1;
    frog.y = Y[frog.lane];
    frog.state = FROG_RESTING;
    frog.state_time = now_ms();
    if (!is_demo(frog)) {
      if (frog.lane < lead_lane) frog.flags |= FROG_LEAD_CUE;
      croak(0.25);
    }
    if (frog.lane > 0) return;
    frog.x = PLACES[side][0];
    frog.state = FROG_WINNING;
    jackpot(side, frog);
  }

  static void animate(Frog& frog, FrogFlags started, SheetIndex sheet) {
    if ((frog.flags & started) != 0) return;
    frog.flags |= started;
    frog.sheet = &sheets[sheet];
    frog.state_time = now_ms();
  }

  static void end(int side, Frog& frog) {
    if (frog.state == FROG_SINKING) set_all(0, frog.sink_ms, frog.frame);
    frog.state = FROG_FREE;
    frog.flags = 0;
    place(side, frog, 0);
  }
};
