// What frogs meet and how they end, written a second time: purses, books, board and sounds. See
// model_frogs.h.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "platform/random.h"
#include "tests/playfield/field.h"
#include "tests/playfield/model_river.h"

// The butterfly's cell in the test, in pixels; other sheets' differ, so that a mixed up one shows.
constexpr int BUTTERFLY_WIDTH = 200, BUTTERFLY_HEIGHT = 160;

constexpr const char* DINGS[] = {"ding08", "ding07", "ding06", "ding05", "ding04", "ding03"};

inline int tickets(PrefIndex row) {
  return std::clamp(pref_int(row), 0, 1'000'000);
}
inline int in_points(int tickets) {
  return pref_on(PREF_TWO_POINT_TICKETS) ? even(tickets) : tickets;
}

struct Probe {
  int cell, bug_a, bug_b, stand_a, stand_b;
};

struct AwardsModel : RiverModel {
  int award_done[SIDE_COUNT], books[AUDIT_COUNT], counted[SIDE_COUNT][HISTOGRAM_CELLS];
  std::int64_t next_vox_ms, next_gulp_ms, next_croak_ms, next_oops_ms;
  struct {
    bool busy, running, retarget;
    int lane, count, played, run_lane, run_count;
    std::int64_t played_at_ms;
  } ding;
  std::vector<std::string> told;
  std::vector<double> pitches;

  int bug_value() const { return bug_of(paytable_row) * (pref_on(PREF_TWO_POINT_TICKETS) ? 2 : 1); }
  int tier_value(int tier) const {
    return in_points(tier == 1 ? TIER1[paytable_row] : TIER2[paytable_row]);
  }
  int jackpot_value() const {
    const int value = tickets(PREF_BONUS_VALUE) * boost_factor;
    return pref_on(PREF_TWO_POINT_TICKETS) && value % 2 == 1 ? value + 5 : value;
  }

  // --- sounds ---

  void play(const char* name) {
    if (sound_enabled != 0) told.emplace_back(name);
  }
  void play_pitched(const char* name, double least) {
    play(name);
    pitches.push_back(least + 0.1 * random_unit());
  }
  static std::int64_t short_pause() { return from_now_ms(83.33333587646484, 166.6666717529297); }

  void gulp(const char* spoken, bool certain) {
    if (now_ms() <= next_gulp_ms) return;
    play_pitched("gulp", 0.9);
    if (now_ms() > next_vox_ms && (certain || random_unit() < 0.25)) {
      play(spoken);
      next_vox_ms = from_now_ms(2000, 1000);
    }
    next_gulp_ms = short_pause();
  }

  void croak(double chance) {
    if (now_ms() <= next_croak_ms) return;
    if (random_unit() < chance) play("croak");
    next_croak_ms = short_pause();
  }

  void sink_cues(const Frog& frog) {
    play_pitched("splash", 0.95);
    play_pitched("wah", 0.65);
    if (now_ms() <= next_vox_ms || now_ms() <= next_oops_ms) return;
    if (random_unit() < 0.5) play(frog.lane == 1 ? "voxalmost" : "voxoops");
    next_oops_ms = from_now_ms(5000, 5000);
    next_vox_ms = from_now_ms(2000, 1000);
  }

  void dings(int lane, int count) {
    if (ding.busy && ding.count - ding.played > count) return;
    ding.retarget = ding.busy;
    ding.busy = true;
    ding.lane = lane;
    ding.count = count;
  }

  void dings_step() {
    if (!ding.busy) return;
    if (!ding.running || ding.retarget) {
      ding.run_lane = ding.lane;
      ding.run_count = ding.count;
      ding.played = ding.running ? 1 : 0;  // a pause that is cut short counts
      ding.retarget = false;
    } else if (now_ms() - ding.played_at_ms < 125) {
      return;
    } else {
      ++ding.played;
    }
    ding.running = ding.busy = ding.played < ding.run_count;
    if (!ding.busy) return;
    play(DINGS[ding.run_lane]);
    ding.played_at_ms = now_ms();
  }

  // --- awards ---

  void add(AuditIndex left_row, int side, int count) { books[left_row + side] += count; }

  void total(int side, Frog& frog, int sum) {
    const int most = tickets(PREF_MAXIMUM_TICKETS);
    frog.total_tickets = std::min(sum, most);
    if (sum > most) add(AUDIT_CAPPED_TICKETS, side, sum - most);
  }
  void award(int side, Frog& frog, int base, AwardKind kind) {
    frog.base_tickets = base;
    frog.award_kind = kind;
    total(side, frog, base + frog.butterfly_tickets);
  }

  void butterfly_catch(int side, Frog& frog) {
    butterfly.state = BUTTERFLY_CAUGHT;
    butterfly.state_time = now_ms();
    const double v = in_points(BUTTERFLY[paytable_row]);
    butterfly.value = in_points(whole(random_unit() * v + 0.5 * v));
    frog.butterfly_tickets += butterfly.value;
    total(side, frog, frog.base_tickets + frog.butterfly_tickets);
    frog.scale = 1.5F;
    sparks.start(whole(butterfly.x + f32(BUTTERFLY_WIDTH * 0.5 - 64.0)),
                 butterfly.y + BUTTERFLY_HEIGHT / 2 - 64);
    if (is_demo(frog)) return;
    add(AUDIT_BUTTERFLIES, side, 1);
    gulp("voxyay", true);
  }

  void bug_catch(int side, Frog& frog, int lane, int cell) {
    award(side, frog, frog.base_tickets + bug_value(), AWARD_BUG);
    frog.scale = 1.5F;
    const LaneSlot& slot = lanes[lane].slots[cell];
    sparks.start(slot.x + LANES[lane].cell_size / 2 - 64, slot.y + LANES[lane].sprite_w / 2 - 64);
    if (is_demo(frog)) return;
    add(AUDIT_BUGS, side, 1);
    gulp("voxyum", false);
  }

  void gold_landing(int side, Frog& frog, const Probe& under) {
    const bool first = under.cell == CELL_TIER1;
    const int value = tier_value(first ? 1 : 2);
    if (value > frog.base_tickets) {
      award(side, frog, value, first ? AWARD_TIER1 : AWARD_TIER2);
      frog.scale = 1.5F;
      if (!is_demo(frog)) add(first ? AUDIT_BONUSES : AUDIT_DOUBLE_BONUSES, side, 1);
    }
    for (int n = 0; n < RIDER_COUNT; ++n) {
      GoldRider& rider = gold_riders[n];
      if (rider.lane != frog.lane) continue;
      if (rider.slot != under.stand_a && rider.slot != under.stand_b) continue;
      rider.sheet_index = SHEET_KISS;
      rider.scale = 1.5F;
      rider.frame = 0;
      rider.start = now_ms() - 281;
      hearts.start(rider.x + 60, rider.y).rider = n;
      break;
    }
    if (!is_demo(frog)) play("voxsmooch");
  }

  void pay(int side, int tickets, int paper) {
    add(AUDIT_TICKETS, side, tickets);
    if (tickets <= 1399) ++counted[side][tickets];
    told.push_back(outcome("add", side, paper));
    told.push_back(outcome("meter", side, paper));
  }
  void pay_fixed(int side) {
    const int fixed = tickets(PREF_FIXED_TICKETS_PER_GAME);
    add(AUDIT_FIXED_TICKETS, side, fixed);
    pay(side, fixed, fixed);
  }
  void pay_total(int side, const Frog& frog) {
    const bool points = pref_on(PREF_TWO_POINT_TICKETS);
    pay(side, frog.total_tickets, frog.total_tickets / (points ? 2 : 1));
  }

  void payout(int side, const Frog& frog) {
    award_done[side] = 1;
    if (pref_on(PREF_TICKET_USE) && pref_on(PREF_FIXED_TICKET)) {
      dings(frog.lane, tickets(PREF_FIXED_TICKETS_PER_GAME));
      pay_fixed(side);
    } else if (pref_on(PREF_TICKET_USE)) {
      dings(frog.lane, frog.total_tickets);
      const AwardKind kind = frog.award_kind;
      if (kind == AWARD_BUG) add(AUDIT_BUG_TICKETS, side, frog.base_tickets);
      if (kind == AWARD_TIER1) add(AUDIT_BONUS_TICKETS, side, frog.base_tickets);
      if (kind == AWARD_TIER2) add(AUDIT_DOUBLE_BONUS_TICKETS, side, frog.base_tickets);
      if (kind == AWARD_FREE) add(AUDIT_FREE_TICKETS, side, frog.base_tickets);
      add(AUDIT_BUTTERFLY_TICKETS, side, frog.butterfly_tickets);
      pay_total(side, frog);
    }
    told.emplace_back("store");
  }

  void jackpot(int side, Frog& frog) {
    frog.base_tickets = jackpot_value();
    total(side, frog, jackpot_value());
    frog.award_kind = AWARD_JACKPOT;
    if (is_demo(frog)) return;
    for (Frog& other : stations[side].frogs) {
      if (other.sink_ms <= 0) continue;
      other.sink_ms = std::min(other.sink_ms.get(), now_ms() - other.state_time + 2000);
    }
    add(AUDIT_JACKPOTS, side, 1);
    if (!pref_on(PREF_TICKET_USE)) {
      told.push_back(outcome("show", side, 0));
    } else if (pref_on(PREF_FIXED_TICKET)) {
      told.push_back(outcome("show", side, tickets(PREF_FIXED_TICKETS_PER_GAME)));
      pay_fixed(side);
    } else {
      add(AUDIT_JACKPOT_TICKETS, side, jackpot_value());
      told.push_back(outcome("show", side, frog.total_tickets));
      pay_total(side, frog);
    }
    told.emplace_back("store");
  }
};
