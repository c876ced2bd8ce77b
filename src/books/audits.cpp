#include "books/audits.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "books/book_file.h"  // book_read, book_store

namespace {

constexpr char AUDITS_MAGIC[] = "810A";
constexpr char HISTOGRAM_MAGIC[] = "500H";
constexpr const char* MAIN_FILE = R"(d:\audits)";
constexpr const char* BACKUP_FILE = R"(d:\audbak)";
constexpr const char* HISTOGRAM_FILE = R"(d:\histo)";

constexpr std::int64_t LONGEST_TICK_MS = 1000;  // a longer one is a stall and isn't counted
constexpr std::int64_t STORE_EVERY_MS = 600000;
constexpr std::int64_t STORE_RETRY_MS = 60000;

constexpr AuditRow row(std::uint32_t index, std::uint32_t flags, const char* name) {
  AuditRow made{index, flags, {}, 0, 0.0F, 0};
  for (int i = 0; name[i] != 0; ++i) made.name[i] = name[i];
  return made;
}
constexpr AuditRow count(std::uint32_t index, const char* name) {
  return row(index, 0, name);
}
constexpr AuditRow time(std::uint32_t index, const char* name) {
  return row(index, AUDIT_IS_TIME, name);
}

constexpr Audits BUILT_IN = {
    time(0, "Time Game On"),
    time(1, "Time Since Boot"),
    count(2, "Games Played Left"),
    count(3, "Games Played Right"),
    time(4, "Time Played Left"),
    time(5, "Time Played Right"),
    count(6, "Games Since Boot Left"),
    count(7, "Games Since Boot Right"),
    time(8, "Time Since Boot Left"),
    time(9, "Time Since Boot Right"),
    time(10, "Time Total Played Left"),
    time(11, "Time Total Played Right"),
    count(12, "Repeat Plays Left"),
    count(13, "Repeat Plays Right"),
    count(14, "Boot Count"),
    count(15, "Test Entry Count"),
    count(16, "Watchdog Count"),
    count(17, "Periodic Reboot Count"),
    count(18, "I/O Checksum Failures"),
    count(19, "Coin Drops Left"),
    count(20, "Coin Drops Right"),
    count(21, "Service Credits"),
    count(22, "Tickets Left"),
    count(23, "Tickets Right"),
    count(24, "Tickets Owed Left"),
    count(25, "Tickets Owed Right"),
    count(26, "Current Credits Left"),
    count(27, "Current Credits Right"),
    count(28, "Current Coins Left"),
    count(29, "Current Coins Right"),
    count(30, "Bugs Left"),
    count(31, "Bugs Right"),
    count(32, "Butterflies Left"),
    count(33, "Butterflies Right"),
    count(34, "Bonuses Left"),
    count(35, "Bonuses Right"),
    count(36, "Double Bonuses Left"),
    count(37, "Double Bonuses Right"),
    count(38, "Jackpots Left"),
    count(39, "Jackpots Right"),
    count(40, "Frees Left"),
    count(41, "Frees Right"),
    count(42, "Bug Tickets Left"),
    count(43, "Bug Tickets Right"),
    count(44, "Butterfly Tickets Left"),
    count(45, "Butterfly Tickets Right"),
    count(46, "Bonus Tickets Left"),
    count(47, "Bonus Tickets Right"),
    count(48, "Double Bonus Tickets Left"),
    count(49, "Double Bonus Tickets Right"),
    count(50, "Jackpot Tickets Left"),
    count(51, "Jackpot Tickets Right"),
    count(52, "Free Tickets Left"),
    count(53, "Free Tickets Right"),
    count(54, "Fixed Tickets Left"),
    count(55, "Fixed Tickets Right"),
    count(56, "Capped Tickets Left"),
    count(57, "Capped Tickets Right"),
};

constexpr bool rows_in_order() {
  for (std::uint32_t i = 0; i < AUDIT_COUNT; ++i) {
    if (BUILT_IN[i].index != i) return false;
  }
  return true;
}
static_assert(rows_in_order());

// Word by word where others may be reading.
void put_built_in(Audits& table) {
  for (const AuditRow& from : BUILT_IN) {
    AuditRow& to = table[from.index];
    to.index = from.index;
    to.flags = from.flags;
    std::memcpy(to.name, from.name, sizeof to.name);
    to.count = from.count.word;
    to.float_value = from.float_value.word;
    to.time_ms = from.time_ms.word;
  }
}

struct TickState {
  std::int64_t audit_last_tick;
  std::int64_t audit_last_save;
  std::uint32_t checksum_failures_seen;
};

constinit TickState tick_state{};

// A counter that has come to its end stays there.
template <typename T>
void add_held(Shared<T>& counter, T delta) {
  T sum{};
  if (__builtin_add_overflow(counter.get(), delta, &sum)) {
    sum = delta > 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
  }
  counter = sum;
}

// No file of the books is checked when it is read. A damaged one may hold money back: with fewer
// than none the next coins would buy nothing.
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
  if (!book_read(MAIN_FILE, AUDITS_MAGIC, audits, sizeof audits)) {
    book_read(BACKUP_FILE, AUDITS_MAGIC, audits, sizeof audits);
  }
  book_read(HISTOGRAM_FILE, HISTOGRAM_MAGIC, histogram, sizeof histogram);
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
  book_store(MAIN_FILE, AUDITS_MAGIC, audits, sizeof audits);
  book_store(BACKUP_FILE, AUDITS_MAGIC, audits, sizeof audits);
  book_store(HISTOGRAM_FILE, HISTOGRAM_MAGIC, histogram, sizeof histogram);
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

  // A store takes the disk for a moment, so it waits until nobody plays.
  if (tick.now_ms - tick_state.audit_last_save >= STORE_EVERY_MS) {
    if (tick.idle[SIDE_LEFT] && tick.idle[SIDE_RIGHT]) {
      audits_save();
      tick_state.audit_last_save = tick.now_ms;
    } else {
      tick_state.audit_last_save += STORE_RETRY_MS;
    }
  }
}
