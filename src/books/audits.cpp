#include "books/audits.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>

#include "books/book_list.h"
#include "books/journal.h"

namespace {

constexpr std::int64_t LONGEST_TICK_MS = 1000;  // a longer tick is a stall and isn't counted
constexpr std::int64_t STORE_EVERY_MS = 600000;
constexpr std::int64_t STORE_RETRY_MS = 60000;

constexpr const char* SIDE_NAMES[SIDE_COUNT] = {" Left", " Right"};

// Writes the row's number, kind and name; the names of a pair end in "Left" and "Right".
void name_row(AuditRow& row, const Audit& audit, int side) {
  row.index = static_cast<std::uint32_t>(audit.row + side);
  row.flags = audit.kind == KIND_TIME ? AUDIT_IS_TIME : 0U;
  std::memset(row.name, 0, sizeof row.name);
  std::snprintf(row.name, sizeof row.name, "%s%s", audit.name,
                audit.sides == SIDE_COUNT ? SIDE_NAMES[side] : "");
}

// Word by word, because other threads may be reading.
void put_built_in(Audits& table) {
  for (const Audit& audit : AUDITS) {
    for (int side = 0; side < audit.sides; ++side) {
      AuditRow& row = table[audit.row + side];
      name_row(row, audit, side);
      row.count = 0;
      row.float_value = 0.0F;
      row.time_ms = 0;
    }
  }
}

struct TickState {
  std::int64_t audit_last_tick;
  std::int64_t audit_last_save;
  std::uint32_t checksum_failures_seen;
};

constinit TickState tick_state{};

// A counter at its limit stays there.
template <typename T>
void add_held(Shared<T>& counter, T delta) {
  T sum{};
  if (__builtin_add_overflow(counter.get(), delta, &sum)) {
    sum = delta > 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
  }
  counter = sum;
}

// The files are not checked when they are read. A negative number in a damaged one would swallow
// the next coins: they would buy nothing.
void hold_money() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    for (const int row_number : {AUDIT_CURRENT_CREDITS + side, AUDIT_CURRENT_COINS + side}) {
      audits[row_number].count = std::max(audits[row_number].count.get(), 0);
    }
  }
}

void add_time(int row_number, std::int64_t ms) {
  add_held(audits[row_number].time_ms, ms);
}

void count_time(const AuditsTick& tick, std::int64_t dt) {
  add_time(AUDIT_TIME_GAME_ON, dt);
  add_time(AUDIT_TIME_SINCE_BOOT, dt);
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (!tick.idle[side]) {
      add_time(AUDIT_TIME_PLAYED + side, dt);
      add_time(AUDIT_TIME_SINCE_BOOT_SIDE + side, dt);
    }
    add_time(AUDIT_TIME_TOTAL_PLAYED + side, dt * tick.live_frogs[side]);
  }
}

}  // namespace

Audits audits;
Audits audit_defaults;
Histogram histogram;

void audits_reset() {
  put_built_in(audits);
  for (auto& side : histogram) {
    for (auto& cell : side) cell = 0;
  }
}

void audits_load() {
  put_built_in(audit_defaults);
  audits_reset();
  if (!book_load(BOOK_AUDITS, audits, sizeof audits)) {
    book_load(BOOK_AUDITS_BACKUP, audits, sizeof audits);
  }
  book_load(BOOK_HISTOGRAM, histogram, sizeof histogram);
  hold_money();

  audit_add(AUDIT_BOOT_COUNT, 1);
  audits[AUDIT_TIME_SINCE_BOOT].time_ms = 0;
  for (int side = 0; side < SIDE_COUNT; ++side) {
    audits[AUDIT_TIME_SINCE_BOOT_SIDE + side].time_ms = 0;
    audits[AUDIT_GAMES_SINCE_BOOT + side].count = 0;
  }
  audits_save();
}

void audits_save() {
  journal_flush();
  book_keep(BOOK_AUDITS, audits, sizeof audits);
  book_keep(BOOK_AUDITS_BACKUP, audits, sizeof audits);
  book_keep(BOOK_HISTOGRAM, histogram, sizeof histogram);
}

void audits_note() {
  for (int side = 0; side < SIDE_COUNT; ++side) {
    journal_put(JOURNAL_BOOKS,
                {side, audit_count(AUDIT_COIN_DROPS, side), audit_count(AUDIT_CURRENT_COINS, side),
                 audit_count(AUDIT_CURRENT_CREDITS, side), audit_count(AUDIT_GAMES_PLAYED, side),
                 audit_count(AUDIT_TICKETS, side), audit_count(AUDIT_TICKETS_OWED, side),
                 audit_count(AUDIT_SERVICE_CREDITS)});
  }
}

void audit_add(int row_number, std::int32_t delta) {
  if (row_number >= 0 && row_number < AUDIT_COUNT) add_held(audits[row_number].count, delta);
}

void histogram_count(int side, std::int32_t tickets) {
  if (tickets >= 0 && tickets < HISTOGRAM_CELLS) add_held(histogram[side][tickets], 1U);
}

void audits_tick_reset() {
  tick_state = {};
}

void audits_tick(const AuditsTick& tick) {
  const std::int64_t dt = tick.now_ms - tick_state.audit_last_tick;
  tick_state.audit_last_tick = tick.now_ms;
  if (dt < LONGEST_TICK_MS) count_time(tick, dt);

  if (tick.checksum_failures > tick_state.checksum_failures_seen) {
    audit_add(
        AUDIT_IO_CHECKSUM_FAILURES,
        static_cast<std::int32_t>(tick.checksum_failures - tick_state.checksum_failures_seen));
    tick_state.checksum_failures_seen = tick.checksum_failures;
  }

  // A store keeps the disk busy for a moment, so it waits until nobody plays.
  if (tick.now_ms - tick_state.audit_last_save >= STORE_EVERY_MS) {
    if (tick.idle[SIDE_LEFT] && tick.idle[SIDE_RIGHT]) {
      audits_save();
      tick_state.audit_last_save = tick.now_ms;
    } else {
      tick_state.audit_last_save += STORE_RETRY_MS;
    }
  }
}
